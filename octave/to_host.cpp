#include "to_host.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "gateway/row_meaning.hpp"
#include "octave_blocks.hpp"
#include "octave_types.hpp"
#include "qvhost/storage.hpp"
#include "qvhost/strings.hpp"
#include "text_codec.hpp"

namespace octbridge {
namespace {

std::string_view bytesOf(const charNDArray& chars) {
  return {chars.data(), static_cast<std::size_t>(chars.numel())};
}

bool isCharRow(const octave_value& v) {
  if (!v.is_string()) return false;
  const dim_vector dv = v.dims();
  return (dv.ndims() == 2 && dv(0) == 1) || dv.numel() == 0;
}

qvArrayPtr lend(const octave_value& v, qvClassID cls) {
  qvArrayPtr out;
  withArrayType(cls, [&](auto kind) {
    using A = typename decltype(kind)::Array;
    const A array = octave_value_extract<A>(v);
    const auto dims = hostDims(array.dims());
    out = qvWrapExternal(cls, dims, ArrayBlock<A>::lend(cls, array));
  });
  return out;
}

// One unit per byte, in the form the library narrows back to the same byte.
qvArrayPtr rawBytesToHost(const charNDArray& chars) {
  auto out = matrix::detail::do_create_uninitnumeric(hostDims(chars.dims()), qvCHAR_CLASS, qvREAL);
  std::ranges::transform(bytesOf(chars), static_cast<char16_t*>(qvGetData(out.get())),
                         [](char b) { return byteToUnit(static_cast<unsigned char>(b)); });
  return out;
}

qvArrayPtr charToHost(const octave_value& v) {
  const charNDArray chars = v.char_array_value();
  const std::string_view bytes = bytesOf(chars);
  if (isCharRow(v) && isValidUtf8(bytes)) {
    if (bytes.empty()) {
      return matrix::detail::do_create_uninitnumeric(hostDims(chars.dims()), qvCHAR_CLASS, qvREAL);
    }
    const std::u16string units = decodeUtf8(bytes);
    return matrix::create(units.data(), units.size());
  }
  return rawBytesToHost(chars);
}

template <class ComplexArray>
qvArrayPtr complexToHost(const ComplexArray& values, qvClassID cls) {
  auto out = matrix::detail::do_create_uninitnumeric(hostDims(values.dims()), cls, qvCOMPLEX);
  using Real = typename ComplexArray::element_type::value_type;
  auto* re = static_cast<Real*>(qvGetData(out.get()));
  auto* im = static_cast<Real*>(qvGetImagData(out.get()));
  const auto* in = values.data();
  for (octave_idx_type i = 0; i < values.numel(); ++i) {
    re[i] = in[i].real();
    im[i] = in[i].imag();
  }
  return out;
}

// Values the library has no use for keep their class and shape only.
qvArrayPtr opaqueToHost(const octave_value& v) {
  qvClassID cls = qvOBJECT_CLASS;
  if (v.isstruct()) {
    cls = qvSTRUCT_CLASS;
  } else if (v.is_function_handle()) {
    cls = qvFUNCTION_CLASS;
  }
  return qvCreateOpaque(hostDims(v.dims()), cls);
}

template <class ElementMap>
qvArrayPtr cellToHost(const Cell& cell, ElementMap&& mapElement) {
  auto out = matrix::detail::do_create_cell(hostDims(cell.dims()));
  for (octave_idx_type i = 0; i < cell.numel(); ++i) {
    qvSetCell(out.get(), static_cast<std::size_t>(i), mapElement(cell(i)));
  }
  return out;
}

bool isCharRowList(const octave_value& v) {
  if (!v.iscell()) return false;
  const Cell cell = v.cell_value();
  for (octave_idx_type i = 0; i < cell.numel(); ++i) {
    if (!isCharRow(cell(i))) return false;
  }
  return true;
}

std::u16string unitsOfRow(const octave_value& row) {
  const charNDArray chars = row.char_array_value();
  return bytesToUnits(bytesOf(chars));
}

// Vlen data: a cell whose elements are element data; nested cells are nested Vlen data,
// except that a non-empty cell of char rows is the string list of an NC_STRING base.
qvArrayPtr vlenToHost(const octave_value& v) {
  if (!v.iscell()) return toHost(v);
  return cellToHost(v.cell_value(), [](const octave_value& element) {
    if (element.numel() > 0 && isCharRowList(element)) return toHostStrings(element);
    return vlenToHost(element);
  });
}

// An operation's data, its last input, in the form its row expects. NC_CHAR data is
// bytes, not text: each Octave char is one byte of the variable, as reads return them,
// so that UTF-8 text round-trips and its length is its byte count.
qvArrayPtr dataToHost(const octave_value& v, DataInput form) {
  if (form == DataInput::OwnType) {
    if (v.is_string()) form = DataInput::Bytes;
    else if (v.numel() > 0 && isCharRowList(v)) form = DataInput::Strings;
    else if (v.iscell()) form = DataInput::Vlen;
  }
  switch (form) {
    case DataInput::Bytes:
      return v.is_string() ? rawBytesToHost(v.char_array_value()) : toHost(v);
    case DataInput::Strings:
      return toHostStrings(v);
    case DataInput::Vlen:
      return vlenToHost(v);
    default:
      return toHost(v);
  }
}

}  // namespace

qvArrayPtr toHost(const octave_value& v) {
  if (v.is_string()) return charToHost(v);
  if (v.iscell())
    return cellToHost(v.cell_value(), [](const octave_value& e) { return toHost(e); });
  if (const qvClassID cls = plainClassOf(v); cls != qvUNKNOWN_CLASS) return lend(v, cls);
  if (v.iscomplex() && !v.issparse()) {
    if (v.is_double_type()) return complexToHost(v.complex_array_value(), qvDOUBLE_CLASS);
    if (v.is_single_type()) return complexToHost(v.float_complex_array_value(), qvSINGLE_CLASS);
  }
  return opaqueToHost(v);
}

qvArrayPtr toHostStrings(const octave_value& v) {
  if (isCharRow(v)) return createStringArray(unitsOfRow(v));
  if (!isCharRowList(v)) return toHost(v);
  const Cell cell = v.cell_value();
  const auto dims = hostDims(cell.dims());
  auto out = createStringArray(dims.size(), dims.data());
  for (octave_idx_type i = 0; i < cell.numel(); ++i) {
    setStringElement(out.get(), static_cast<std::size_t>(i), unitsOfRow(cell(i)));
  }
  return out;
}

std::vector<qvArrayPtr> argumentsToHost(const octave_value_list& args) {
  const octave_idx_type n = args.length();
  const DataInput form =
      n > 1 && isCharRow(args(0)) ? meaningOf(args(0).string_value()).data : DataInput::Plain;
  std::vector<qvArrayPtr> out;
  out.reserve(static_cast<std::size_t>(n));
  for (octave_idx_type k = 0; k < n; ++k) {
    out.push_back(k == n - 1 && k > 0 ? dataToHost(args(k), form) : toHost(args(k)));
  }
  return out;
}

}  // namespace octbridge
