#include "from_host.hpp"

#include <cstring>
#include <stdexcept>
#include <string>

#include "octave_blocks.hpp"
#include "octave_types.hpp"
#include "qvhost/strings.hpp"
#include "text_codec.hpp"

namespace octbridge {
namespace {

dim_vector dimsOf(const qvArray* a) {
  return octaveDims({qvGetDimensions(a), qvGetNumberOfDimensions(a)});
}

bool isRow(const dim_vector& dv) { return dv.ndims() == 2 && dv(0) == 1; }

octave_value charRow(const std::string& bytes) {
  charNDArray row(dim_vector(1, static_cast<octave_idx_type>(bytes.size())));
  if (!bytes.empty()) std::memcpy(row.fortran_vec(), bytes.data(), bytes.size());
  return octave_value(row, '\'');
}

octave_value charFromHost(const qvArray* a) {
  const dim_vector dv = dimsOf(a);
  const auto* units = static_cast<const char16_t*>(qvGetData(a));
  const std::size_t n = qvGetNumberOfElements(a);
  if (isRow(dv)) return charRow(encodeUnits({units, n}));
  charNDArray chars(dv);
  char* out = chars.fortran_vec();
  for (std::size_t i = 0; i < n; ++i) out[i] = unitToByte(units[i]);
  return octave_value(chars, '\'');
}

template <class A>
octave_value copyReal(const qvArray* a, const dim_vector& dv) {
  A array(dv);
  const std::size_t bytes = qvGetNumberOfElements(a) * sizeof(typename A::element_type);
  if (bytes != 0) std::memcpy(array.fortran_vec(), qvGetData(a), bytes);
  return octave_value(array);
}

template <class ComplexArray>
octave_value copyComplex(const qvArray* a, const dim_vector& dv) {
  using Real = typename ComplexArray::element_type::value_type;
  ComplexArray array(dv);
  const auto* re = static_cast<const Real*>(qvGetData(a));
  const auto* im = static_cast<const Real*>(qvGetImagData(a));
  auto* out = array.fortran_vec();
  for (octave_idx_type i = 0; i < array.numel(); ++i) out[i] = {re[i], im[i]};
  return octave_value(array);
}

octave_value numericFromHost(const qvArray* a, qvClassID cls) {
  const dim_vector dv = dimsOf(a);
  const OctaveBlock* block = octaveBlockOf(a);
  if (block != nullptr && !qvIsComplex(a) && block->hostClass() == cls) {
    const octave_value v = block->value();
    return block->dims() == dv ? v : v.reshape(dv);
  }
  if (qvIsComplex(a)) {
    if (cls == qvDOUBLE_CLASS) return copyComplex<ComplexNDArray>(a, dv);
    if (cls == qvSINGLE_CLASS) return copyComplex<FloatComplexNDArray>(a, dv);
    throw std::invalid_argument(std::string("Octave has no complex ") + hostClassName(cls));
  }
  octave_value out;
  withArrayType(cls, [&](auto kind) { out = copyReal<typename decltype(kind)::Array>(a, dv); });
  return out;
}

octave_value cellFromHost(const qvArray* a) {
  Cell cell(dimsOf(a));
  for (octave_idx_type i = 0; i < cell.numel(); ++i) {
    cell(i) = fromHost(qvGetCell(a, static_cast<std::size_t>(i)));
  }
  return octave_value(cell);
}

// Octave has no missing text: a missing element becomes [], as an empty cell element does.
octave_value stringsFromHost(const qvArray* a) {
  const StringArrayView view = getString(a);
  Cell cell(dimsOf(a));
  for (std::size_t i = 0; i < view.count; ++i) {
    cell(static_cast<octave_idx_type>(i)) =
        view.isMissing(i) ? octave_value(Matrix()) : charRow(encodeUnits(view.at(i)));
  }
  return octave_value(cell);
}

octave_value structFromHost(const qvArray* a) {
  const dim_vector dv = dimsOf(a);
  octave_map map(dv);
  const std::size_t nfields = qvGetNumberOfFields(a);
  for (std::size_t k = 0; k < nfields; ++k) {
    Cell values(dv);
    for (octave_idx_type i = 0; i < values.numel(); ++i) {
      values(i) = fromHost(qvGetFieldByNumber(a, static_cast<std::size_t>(i), k));
    }
    map.assign(qvGetFieldNameByNumber(a, k), values);
  }
  return octave_value(map);
}

}  // namespace

octave_value fromHost(const qvArray* a) {
  if (a == nullptr) return octave_value(Matrix());
  const qvClassID cls = qvGetClassID(a);
  if (qvIsNumericClassID(cls) || cls == qvLOGICAL_CLASS) return numericFromHost(a, cls);
  switch (cls) {
    case qvCHAR_CLASS:
      return charFromHost(a);
    case qvCELL_CLASS:
      return cellFromHost(a);
    case qvSTRING_CLASS:
      return stringsFromHost(a);
    case qvSTRUCT_CLASS:
      return structFromHost(a);
    default:
      throw std::invalid_argument(std::string("a host ") + hostClassName(cls) +
                                  " array has no Octave counterpart");
  }
}

}  // namespace octbridge
