// Reads shared by variables and attributes. read(buffer) makes the netCDF-C call into the
// buffer given; its status, and that of releasing what netCDF-C allocated, are checked.
#pragma once

#include <netcdf.h>

#include <memory>

#include "convert/nc_buffers.hpp"
#include "convert/read_outputs.hpp"
#include "convert/types.hpp"
#include "convert/vlen.hpp"
#include "gateway/status.hpp"

struct HostFree {
  void operator()(void* p) const noexcept { qvFree(p); }
};
// Zeroed host memory for text that netCDF-C writes: a byte more than the text, so that
// it always ends within the buffer.
inline std::unique_ptr<char, HostFree> zeroedText(std::size_t n, std::size_t width) {
  return std::unique_ptr<char, HostFree>(static_cast<char*>(qvCalloc(n + 1, width)));
}

// Numeric data of kind lands straight in the result, which is placed in its slot first;
// read(traits, buffer) reads with the kind's TypeTraits.
template <class Read>
void readNumeric(DataKind kind, const DimList& dims, qvArrayPtr& slot, Read read,
                 const OperationRow& row) {
  visitNumericKind(kind, [&](auto traits) {
    using Traits = decltype(traits);
    qvArrayPtr out = makeNumericOutput(Traits::hostClass, dims);
    auto* buffer = static_cast<typename Traits::Element*>(qvGetData(out.get()));
    slot = std::move(out);
    checkStatus(read(traits, buffer), row);
  });
}

template <class Read>
qvArrayPtr readStrings(const DimList& dims, std::size_t n, Read read, const OperationRow& row) {
  NetcdfStringBuffer strings(n);
  checkStatus(read(strings.data()), row);
  strings.markFilled();
  qvArrayPtr out = makeStringOutput(dims, strings.data(), n);
  checkStatus(strings.free(), row);
  return out;
}

template <class Read>
qvArrayPtr readVlens(int ncid, nc_type vlenType, const DimList& dims, std::size_t n, Read read,
                     const OperationRow& row) {
  const nc_type base = vlenBaseType(ncid, vlenType);
  NetcdfVlenBuffer records(n, ncid, vlenType);
  checkStatus(read(records.data()), row);
  records.markFilled();
  qvArrayPtr out = vlenToCells(ncid, base, records.data(), n, dims);
  checkStatus(records.free(), row);
  return out;
}
