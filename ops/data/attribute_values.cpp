// "getAtt<Type>" and "putAtt<Type>": attribute values of every type, on a variable or
// globally (varid -1). Unlike variable text, attribute text is UTF-8 both ways.
#include <netcdf.h>

#include <memory>
#include <string>

#include "convert/data_block.hpp"
#include "convert/read_outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "convert/types.hpp"
#include "convert/vlen.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/data/data.hpp"
#include "ops/data/typed_reads.hpp"
#include "qvhost/text.hpp"

namespace {
// netCDF-C refuses a null block even for an empty attribute.
template <class T>
const T* blockOrDummy(const qvArray* data) {
  static const T dummy{};
  const void* block = qvGetData(data);
  return block != nullptr ? static_cast<const T*>(block) : &dummy;
}
}  // namespace

void handleGetAttribute(int, qvArrayPtr* plhs, int, const qvArray* const* inputs,
                        const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const std::string name = getName(inputs[2], "attribute");
  nc_type xtype = NC_NAT;
  std::size_t len = 0;
  checkStatus(nc_inq_att(ncid, varid, name.c_str(), &xtype, &len), row);
  const DimList dims = attributeShape(len);

  const DataKind kind = *row.meaning.kind;
  switch (kind) {
    case DataKind::Text: {
      // Decoding stops at the first zero byte, also when the text is empty.
      const auto bytes = zeroedText(len, 2);
      checkStatus(nc_get_att_text(ncid, varid, name.c_str(), bytes.get()), row);
      plhs[0] = makeNameResult(bytes.get());
      return;
    }
    case DataKind::String:
      plhs[0] = readStrings(
          dims, len,
          [&](char** buffer) { return nc_get_att_string(ncid, varid, name.c_str(), buffer); }, row);
      return;
    case DataKind::Vlen:
      plhs[0] = readVlens(
          ncid, xtype, dims, len,
          [&](nc_vlen_t* buffer) { return nc_get_att(ncid, varid, name.c_str(), buffer); }, row);
      return;
    default:
      readNumeric(
          kind, dims, plhs[0],
          [&](auto traits, auto* buffer) {
            return decltype(traits)::getAtt(ncid, varid, name.c_str(), buffer);
          },
          row);
  }
}

void handlePutAttribute(int, qvArrayPtr*, int, const qvArray* const* inputs,
                        const OperationRow& row) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int varid = getScalar<int>(inputs[1], "varid");
  const std::string name = getName(inputs[2], "attribute");
  const int xtype = getScalar<int>(inputs[3], "xtype");
  const qvArray* data = inputs[4];
  const std::size_t n = qvGetNumberOfElements(data);

  const DataKind kind = *row.meaning.kind;
  switch (kind) {
    case DataKind::Text: {
      requireDataClass(data, qvCHAR_CLASS);
      // The stored length is in UTF-8 bytes, not characters; xtype is not needed.
      const std::string bytes = getAttributeText(data);
      checkStatus(nc_put_att_text(ncid, varid, name.c_str(), bytes.size(), bytes.data()), row);
      return;
    }
    case DataKind::String: {
      requireDataClass(data, qvSTRING_CLASS);
      Utf8StringList strings(data);
      checkStatus(nc_put_att_string(ncid, varid, name.c_str(), strings.size(), strings.pointers()),
                  row);
      return;
    }
    case DataKind::Vlen: {
      requireDataClass(data, qvCELL_CLASS);
      VlenRecords records(ncid, vlenBaseType(ncid, xtype), data);
      checkStatus(nc_put_att(ncid, varid, name.c_str(), xtype, records.size(), records.data()),
                  row);
      return;
    }
    default:
      // Numbers convert to atomic types only. netCDF-C 4.9.0 reads numeric data given for
      // a vlen of vlens as vlen records and crashes; for other user-defined types it
      // returns a status that does not name the fault.
      if (xtype > NC_MAX_ATOMIC_TYPE &&
          nc_inq_user_type(ncid, xtype, nullptr, nullptr, nullptr, nullptr, nullptr) == NC_NOERR) {
        checkStatus(NC_EBADTYPE, row);
      }
      visitNumericKind(kind, [&](auto traits) {
        using Traits = decltype(traits);
        requireDataClass(data, Traits::hostClass);
        const auto* buffer = blockOrDummy<typename Traits::Element>(data);
        checkStatus(Traits::putAtt(ncid, varid, name.c_str(), xtype, n, buffer), row);
      });
  }
}
