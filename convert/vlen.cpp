#include "convert/vlen.hpp"

#include <cstring>

#include "convert/text.hpp"
#include "convert/types.hpp"
#include "gateway/errors.hpp"
#include "qvhost/msgid.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {

// The base of a nested vlen type, raising for user types of any other class.
nc_type nestedVlenBase(int ncid, nc_type type) {
  int typeClass = 0;
  nc_type nestedBase = NC_NAT;
  // Unchecked on purpose: an unknown type leaves typeClass 0 and is refused below.
  if (type > NC_STRING)
    nc_inq_user_type(ncid, type, nullptr, nullptr, nullptr, nullptr, &typeClass);
  if (typeClass != NC_VLEN) qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedVarDatatype(type));
  nc_inq_vlen(ncid, type, nullptr, nullptr, &nestedBase);
  return nestedBase;
}

DimList columnOrEmpty(std::size_t len) {
  if (len == 0) return {0, 0};
  return {len, 1};
}

qvArrayPtr elementFromRecord(int ncid, nc_type base, nc_type nestedBase, const nc_vlen_t& rec) {
  if (base == NC_CHAR) return matrix::create(static_cast<const char*>(rec.p), rec.len);
  if (base == NC_STRING) {
    return makeStringOutput(columnOrEmpty(rec.len), static_cast<const char* const*>(rec.p),
                            rec.len);
  }
  if (const std::size_t width = atomicElementSize(base); width != 0) {
    qvArrayPtr out = makeNumericOutput(*hostClassOf(base), columnOrEmpty(rec.len));
    if (rec.len != 0) std::memcpy(qvGetData(out.get()), rec.p, rec.len * width);
    return out;
  }
  return vlenToCells(ncid, nestedBase, static_cast<const nc_vlen_t*>(rec.p), rec.len,
                     columnOrEmpty(rec.len));
}

}  // namespace

qvArrayPtr vlenToCells(int ncid, nc_type base, const nc_vlen_t* records, std::size_t m,
                       const DimList& dims) {
  qvArrayPtr cells = matrix::detail::do_create_cell(spanOf(dims));
  if (m == 0) return cells;
  const nc_type nestedBase = isAtomicType(base) ? NC_NAT : nestedVlenBase(ncid, base);
  for (std::size_t i = 0; i < m; ++i) {
    qvReplaceCell(cells.get(), i, elementFromRecord(ncid, base, nestedBase, records[i]));
  }
  return cells;
}

nc_type vlenBaseType(int ncid, nc_type type) {
  nc_type base = NC_NAT;
  int typeClass = 0;
  if (type <= NC_STRING ||
      nc_inq_user_type(ncid, type, nullptr, nullptr, &base, nullptr, &typeClass) != NC_NOERR ||
      typeClass != NC_VLEN) {
    qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedVarDatatype(type));
  }
  return base;
}

VlenRecords::VlenRecords(int ncid, nc_type base, const qvArray* cells, std::string argName)
    : ncid_(ncid), argName_(std::move(argName)) {
  count_ = qvGetNumberOfElements(cells);
  top_ = newLevel(count_);
  fill(top_, base, cells);
}

nc_vlen_t* VlenRecords::newLevel(std::size_t n) {
  levels_.push_back(std::make_unique<nc_vlen_t[]>(n));
  return levels_.back().get();
}

void VlenRecords::fill(nc_vlen_t* out, nc_type base, const qvArray* cells) {
  const std::size_t m = qvGetNumberOfElements(cells);
  if (m == 0) return;
  if (qvGetClassID(cells) != qvCELL_CLASS) {
    qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(argName_));
  }
  const nc_type nestedBase = isAtomicType(base) ? NC_NAT : nestedVlenBase(ncid_, base);
  for (std::size_t i = 0; i < m; ++i) out[i] = recordOf(base, nestedBase, qvGetCell(cells, i));
}

nc_vlen_t VlenRecords::recordOf(nc_type base, nc_type nestedBase, const qvArray* element) {
  const std::size_t n = element == nullptr ? 0 : qvGetNumberOfElements(element);
  // Nothing is read from an empty element, so its class does not matter: hosts without
  // empty string arrays give an empty list of strings as an empty cell.
  if (n == 0) return {0, nullptr};
  if (base == NC_CHAR) {
    // Memory safety: the text is read as UTF-16 units.
    if (qvGetClassID(element) != qvCHAR_CLASS) {
      qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(argName_));
    }
    std::vector<char>& bytes = charData_.emplace_back(narrowCharData(element));
    return {bytes.size(), bytes.data()};
  }
  if (base == NC_STRING) {
    if (!isString(element)) qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(argName_));
    Utf8StringList& list = stringLists_.emplace_back(element);
    return {list.size(), list.pointers()};
  }
  if (const std::size_t width = atomicElementSize(base); width != 0) {
    // Memory safety: netCDF-C reads n elements of the base type from the block.
    if (!qvIsNumericClassID(qvGetClassID(element)) ||
        qvElementSize(qvGetClassID(element)) != width) {
      qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(argName_));
    }
    return {n, qvGetData(element)};
  }
  nc_vlen_t* nested = newLevel(n);
  fill(nested, nestedBase, element);
  return {n, nested};
}
