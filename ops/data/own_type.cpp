// Data rows without a kind ("getVar", "putVar1", "getAtt", ...): data in the variable's or
// attribute's own type, whatever it is. Atomic types and vlens of them move exactly as
// the typed rows move them; enum and opaque data go straight between netCDF-C and the
// host array; compound data and vlens of user types pass through a native buffer.
#include <netcdf.h>

#include <algorithm>
#include <memory>
#include <string>

#include "convert/data_block.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "convert/user_data.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/own_type.hpp"
#include "ops/data/subset.hpp"
#include "ops/remote/remote_files.hpp"

using Kind = TypeNode::Kind;

std::optional<DataKind> typedKindOf(const TypeNode& t) {
  if (t.kind == Kind::Char) return DataKind::Text;
  if (t.kind == Kind::String) return DataKind::String;
  if (t.isPlainVlen()) return DataKind::Vlen;
  if (t.isAtomic()) return numericKindOf(t.xtype);
  return std::nullopt;
}

qvArrayPtr stringsIfCells(const TypeNode& t, const qvArray* data) {
  if (t.kind != Kind::String || qvGetClassID(data) != qvCELL_CLASS) return nullptr;
  return stringsFromCells(data, "data");
}

namespace {
// Enum and opaque values are the host array's own bytes.
bool movesInPlace(const TypeNode& t) { return t.kind == Kind::Enum || t.kind == Kind::Opaque; }

std::unique_ptr<TypeNode> variableType(int ncid, int varid, const OperationRow& row) {
  nc_type xtype = NC_NAT;
  checkStatus(nc_inq_vartype(ncid, varid, &xtype), row);
  return describeType(ncid, xtype, row);
}

// read(buffer) fills n elements of t; the result, shaped dims, goes to slot.
template <class Read>
void readUserData(int ncid, const TypeNode& t, std::size_t n, const DimList& dims,
                  qvArrayPtr& slot, Read read, const OperationRow& row) {
  if (movesInPlace(t)) {
    qvArrayPtr out = nativeToHost(t, nullptr, 0, dims);
    void* block = qvGetData(out.get());
    slot = std::move(out);
    checkStatus(read(block), row);
    return;
  }
  NativeBuffer buffer(ncid, t, n);
  checkStatus(read(buffer.data()), row);
  buffer.markFilled(n);
  qvArrayPtr out = nativeToHost(t, buffer.bytes(), n, dims);
  checkStatus(buffer.reclaim(), row);
  slot = std::move(out);
}

// write(buffer) writes n elements of t from the native buffer given.
template <class Write>
void writeUserData(const TypeNode& t, const qvArray* data, std::size_t n, Write write,
                   const OperationRow& row) {
  if (movesInPlace(t)) {
    checkHostData(t, data, n, "data");
    static const double dummy = 0;  // netCDF-C refuses a null block even for no values
    const void* block = qvGetData(data);
    checkStatus(write(block != nullptr ? block : &dummy), row);
    return;
  }
  const NativeData native(t, data, n, "data");
  checkStatus(write(native.data()), row);
}

// Records pass through a buffer of about this size, a block of the slowest dimension at a
// time: the buffer stays in cache while it is split into the fields, and a read needs
// little more memory than its result.
constexpr std::size_t kBlockBytes = std::size_t{4} << 20;

// The selection of a whole variable spelled out, so that it can be read in blocks.
Selection spelledOut(int ncid, int varid, const OperationRow& row) {
  int ndims = 0;
  int dimids[NC_MAX_VAR_DIMS] = {};
  checkStatus(nc_inq_var(ncid, varid, nullptr, nullptr, &ndims, dimids, nullptr), row);
  Selection where;
  where.whole = false;
  for (int d = 0; d < ndims; ++d) {
    std::size_t length = 0;
    checkStatus(nc_inq_dimlen(ncid, dimids[d], &length), row);
    where.start.push_back(0);
    where.count.push_back(length);
    where.stride.push_back(1);
  }
  return where;
}

// Compound data and vlens of user types, block by block of the selection's slowest
// dimension. A selection without elements is still passed to netCDF-C once, for its checks.
void readRecords(int ncid, int varid, const TypeNode& t, const ReadPlan& plan, qvArrayPtr& slot,
                 const OperationRow& row) {
  Selection where = plan.where.whole ? spelledOut(ncid, varid, row) : plan.where;
  const std::size_t total = elementCount(plan.dims);
  if (where.count.empty() || total == 0) {
    readUserData(ncid, t, total, plan.dims, slot, [&](void* buffer) {
      if (plan.where.whole) return nc_get_var(ncid, varid, buffer);
      return nc_get_vars(ncid, varid, where.start.data(), where.count.data(),
                         where.stride.data(), buffer);
    }, row);
    return;
  }
  const std::size_t rows = where.count[0], perRow = total / rows;
  const std::size_t blockRows = std::max<std::size_t>(1, kBlockBytes / (perRow * t.size));
  qvArrayPtr out = makeHostData(t, total, plan.dims);
  NativeBuffer buffer(ncid, t, std::min(rows, blockRows) * perRow);
  const std::size_t start = where.start[0];
  for (std::size_t first = 0; first < rows; first += blockRows) {
    where.count[0] = std::min(blockRows, rows - first);
    where.start[0] = start + first * static_cast<std::size_t>(where.stride[0]);
    checkStatus(nc_get_vars(ncid, varid, where.start.data(), where.count.data(),
                            where.stride.data(), buffer.data()),
                row);
    buffer.markFilled(where.count[0] * perRow);
    scatterInto(t, out.get(), first * perRow, buffer.bytes(), where.count[0] * perRow);
    checkStatus(buffer.reclaim(), row);
  }
  slot = std::move(out);
}

}  // namespace

void readOwnTypeVariable(int ncid, int varid, const qvArray* const* inputs, qvArrayPtr* plhs,
                         const OperationRow& row) {
  const auto t = variableType(ncid, varid, row);
  const ReadPlan plan = row.meaning.form == Form::Whole
                            ? prepareWholeRead(ncid, varid, row)
                            : prepareSubsetRead(ncid, varid, inputs, row);
  if (const auto kind = typedKindOf(*t)) {
    readVariableData(*kind, ncid, varid, plan.xtype, plan.where, plan.dims, plhs, row);
    return;
  }
  const Dap4DebugFilter quiet(isDap4(ncid));
  if (movesInPlace(*t)) {
    const Selection& where = plan.where;
    readUserData(ncid, *t, elementCount(plan.dims), plan.dims, plhs[0], [&](void* buffer) {
      if (where.whole) return nc_get_var(ncid, varid, buffer);
      return nc_get_vars(ncid, varid, where.start.data(), where.count.data(),
                         where.stride.data(), buffer);
    }, row);
    return;
  }
  readRecords(ncid, varid, *t, plan, plhs[0], row);
}

void writeOwnTypeVariable(int ncid, int varid, int nInputs, const qvArray* const* inputs,
                          const OperationRow& row) {
  const auto t = variableType(ncid, varid, row);
  const qvArrayPtr strings = stringsIfCells(*t, inputs[nInputs - 1]);
  const qvArray* data = strings ? strings.get() : inputs[nInputs - 1];
  const std::size_t count = hostElementCount(*t, data, "data");
  const Selection where = row.meaning.form == Form::Whole
                              ? prepareWholeWrite(ncid, varid, count, row)
                              : prepareSubsetWrite(inputs, count, ncid, varid, row);
  if (const auto kind = typedKindOf(*t)) {
    writeVariableData(*kind, ncid, varid, where, data, row);
    return;
  }
  writeUserData(*t, data, count, [&](const void* buffer) {
    if (where.whole) return nc_put_var(ncid, varid, buffer);
    return nc_put_vars(ncid, varid, where.start.data(), where.count.data(), where.stride.data(),
                       buffer);
  }, row);
}

void readUserAttribute(int ncid, int varid, const std::string& name, const TypeNode& t,
                       std::size_t len, qvArrayPtr& slot, const OperationRow& row) {
  readUserData(ncid, t, len, attributeShape(len), slot, [&](void* buffer) {
    return nc_get_att(ncid, varid, name.c_str(), buffer);
  }, row);
}

void writeUserAttribute(int ncid, int varid, const std::string& name, nc_type xtype,
                        const TypeNode& t, const qvArray* data, const OperationRow& row) {
  const std::size_t n = hostElementCount(t, data, "data");
  writeUserData(t, data, n, [&](const void* buffer) {
    return nc_put_att(ncid, varid, name.c_str(), xtype, n, buffer);
  }, row);
}
