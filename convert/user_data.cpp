#include "convert/user_data.hpp"

#include <algorithm>
#include <cstring>
#include <new>

#include "convert/text.hpp"
#include "convert/types.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "qvhost/strings.hpp"
#include "qvhost/text.hpp"

namespace {

using Kind = TypeNode::Kind;

std::size_t checkedBytes(std::size_t n, std::size_t size) {
  std::size_t bytes = 0;
  if (__builtin_mul_overflow(n, size, &bytes)) throw std::bad_alloc();
  return bytes;
}

DimList columnOrEmpty(std::size_t len) {
  if (len == 0) return {0, 0};
  return {len, 1};
}

// Extents in front of a shape: an array field's dimensions (host order) or an opaque size.
DimList withLeading(std::span<const std::size_t> netcdfDims, const DimList& dims) {
  DimList out(netcdfDims.rbegin(), netcdfDims.rend());
  out.insert(out.end(), dims.begin(), dims.end());
  return out;
}

const char* className(qvClassID cls) {
  switch (cls) {
    case qvDOUBLE_CLASS: return "double";
    case qvSINGLE_CLASS: return "single";
    case qvINT8_CLASS: return "int8";
    case qvUINT8_CLASS: return "uint8";
    case qvINT16_CLASS: return "int16";
    case qvUINT16_CLASS: return "uint16";
    case qvINT32_CLASS: return "int32";
    case qvUINT32_CLASS: return "uint32";
    case qvINT64_CLASS: return "int64";
    case qvUINT64_CLASS: return "uint64";
    case qvCHAR_CLASS: return "char";
    case qvCELL_CLASS: return "cell";
    case qvSTRUCT_CLASS: return "struct";
    case qvSTRING_CLASS: return "string";
    default: return "unknown";
  }
}

// The class host data of t has.
qvClassID formClass(const TypeNode& t) {
  switch (t.kind) {
    case Kind::Char: return qvCHAR_CLASS;
    case Kind::String: return qvSTRING_CLASS;
    case Kind::Vlen: return qvCELL_CLASS;
    case Kind::Compound: return qvSTRUCT_CLASS;
    default: return t.hostClass;
  }
}

// An empty (null) field or cell element counts as empty data of any class.
std::size_t countOf(const qvArray* a) { return a == nullptr ? 0 : qvGetNumberOfElements(a); }

qvArrayPtr makeFieldArray(const TypeNode& t, std::size_t n, const DimList& dims);
void checkFields(const TypeNode& t, const qvArray* a, const std::string& where);

qvArrayPtr makeStructSkeleton(const TypeNode& t, std::size_t n, const DimList& dims) {
  std::vector<std::string> names;
  names.reserve(t.fields.size());
  for (const auto& f : t.fields) names.push_back(f.name);
  qvArrayPtr s = qvCreateStruct(std::vector<std::uint64_t>{1, 1}, std::move(names));
  for (std::size_t k = 0; k < t.fields.size(); ++k) {
    const auto& f = t.fields[k];
    qvSetFieldByNumber(s.get(), 0, k,
                       makeFieldArray(*f.type, n * f.count, withLeading(f.dims, dims)));
  }
  return s;
}

// An array for n values of t shaped dims, to be filled by a scatter plan.
qvArrayPtr makeFieldArray(const TypeNode& t, std::size_t n, const DimList& dims) {
  switch (t.kind) {
    case Kind::Char:
      return matrix::detail::do_create_numeric(spanOf(dims), qvCHAR_CLASS, qvREAL);
    case Kind::String:
      return createStringArray(dims.size(), dims.data());
    case Kind::Vlen:
      return matrix::detail::do_create_cell(spanOf(dims));
    case Kind::Compound:
      return makeStructSkeleton(t, n, dims);
    case Kind::Opaque: {
      const std::size_t size[] = {t.size};
      return makeNumericOutput(qvUINT8_CLASS, withLeading(size, dims));
    }
    default:
      return makeNumericOutput(t.hostClass, dims);
  }
}

// One field of a compound, reached through nested compounds, as the records move it:
// record i's count values at srcOffset go to (or come from) values
// i * stride + first ... + count - 1 of the field's array.
struct Leaf {
  const TypeNode* type;
  qvArray* array;
  std::size_t srcOffset;
  std::size_t first;
  std::size_t stride;
  std::size_t count;
  std::string path;  // names the field in errors
};

// prefix/mult: position among and number of the copies of t inside one top-level record
// (arrays of nested compounds).
void buildPlan(const TypeNode& t, const qvArray* s, std::size_t srcOffset, std::size_t prefix,
               std::size_t mult, const std::string& path, std::vector<Leaf>& plan) {
  for (std::size_t k = 0; k < t.fields.size(); ++k) {
    const auto& f = t.fields[k];
    auto* array = const_cast<qvArray*>(qvGetFieldByNumber(s, 0, k));
    if (f.type->kind == Kind::Compound) {
      for (std::size_t j = 0; j < f.count; ++j) {
        buildPlan(*f.type, array, srcOffset + f.offset + j * f.type->size, prefix * f.count + j,
                  mult * f.count, path + "." + f.name, plan);
      }
    } else {
      plan.push_back({f.type.get(), array, srcOffset + f.offset, prefix * f.count,
                      mult * f.count, f.count, path + "." + f.name});
    }
  }
}

template <std::size_t N>
void copyRecords(std::byte* dst, std::size_t dstStep, const std::byte* src, std::size_t srcStep,
                 std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) std::memcpy(dst + i * dstStep, src + i * srcStep, N);
}

qvArrayPtr vlenElementToHost(const TypeNode& base, const nc_vlen_t& rec) {
  const auto* p = static_cast<const std::byte*>(rec.p);
  if (base.kind == Kind::Char) return matrix::create(reinterpret_cast<const char*>(p), rec.len);
  return nativeToHost(base, p, rec.len, columnOrEmpty(rec.len));
}

// Values of a leaf that are not plain bytes, one at a time.
void scatterValue(const Leaf& leaf, std::size_t index, const std::byte* src) {
  switch (leaf.type->kind) {
    case Kind::Char:
      widenCharData(reinterpret_cast<const char*>(src), 1,
                    static_cast<char16_t*>(qvGetData(leaf.array)) + index);
      return;
    case Kind::String: {
      const char* text = nullptr;
      std::memcpy(&text, src, sizeof text);
      setStringElement(leaf.array, index, text ? utf8_to_ustring(text) : std::u16string());
      return;
    }
    default: {
      nc_vlen_t rec;
      std::memcpy(&rec, src, sizeof rec);
      qvSetCell(leaf.array, index, vlenElementToHost(*leaf.type->base, rec));
    }
  }
}

bool movesBytes(const TypeNode& t) {
  return t.kind == Kind::Numeric || t.kind == Kind::Enum || t.kind == Kind::Opaque;
}

// One pass over the records, each field's values copied as one block per record; the
// records become elements first ... first + n - 1.
void scatterCompound(const TypeNode& t, const std::byte* src, std::size_t n, qvArray* s,
                     std::size_t first) {
  std::vector<Leaf> plan;
  buildPlan(t, s, 0, 0, 1, "", plan);
  const std::size_t recSize = t.size;
  // Common field widths get copies the compiler can inline.
  const bool allBytes =
      std::all_of(plan.begin(), plan.end(), [](const Leaf& l) { return movesBytes(*l.type); });
  if (allBytes && plan.size() <= 8) {
    struct Fast {
      std::byte* dst;
      std::size_t step, srcOffset, bytes;
    };
    Fast fast[8];
    for (std::size_t k = 0; k < plan.size(); ++k) {
      const Leaf& l = plan[k];
      const std::size_t w = l.type->size;
      fast[k] = {static_cast<std::byte*>(qvGetData(l.array)) + l.first * w, l.stride * w,
                 l.srcOffset, l.count * w};
    }
    for (std::size_t i = 0; i < n; ++i) {
      const std::byte* rec = src + i * recSize;
      for (std::size_t k = 0; k < plan.size(); ++k) {
        const Fast& f = fast[k];
        std::byte* d = f.dst + (first + i) * f.step;
        const std::byte* r = rec + f.srcOffset;
        switch (f.bytes) {
          case 1: std::memcpy(d, r, 1); break;
          case 2: std::memcpy(d, r, 2); break;
          case 4: std::memcpy(d, r, 4); break;
          case 8: std::memcpy(d, r, 8); break;
          case 16: std::memcpy(d, r, 16); break;
          default: std::memcpy(d, r, f.bytes);
        }
      }
    }
    return;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const std::byte* rec = src + i * recSize;
    for (const Leaf& l : plan) {
      const std::size_t w = l.type->size;
      const std::size_t index = (first + i) * l.stride + l.first;
      if (movesBytes(*l.type)) {
        std::memcpy(static_cast<std::byte*>(qvGetData(l.array)) + index * w, rec + l.srcOffset,
                    l.count * w);
        continue;
      }
      for (std::size_t j = 0; j < l.count; ++j) {
        scatterValue(l, index + j, rec + l.srcOffset + j * w);
      }
    }
  }
}

}  // namespace

bool TypeNode::isPlainVlen() const noexcept {
  if (kind != Kind::Vlen) return false;
  return base->isAtomic() || base->isPlainVlen();
}

std::unique_ptr<TypeNode> describeType(int ncid, nc_type xtype, const OperationRow& row,
                                       int depth) {
  // Types nest only so deep in files; deeper is a cycle netCDF-C let through.
  if (depth > NC_MAX_VAR_DIMS) checkStatus(NC_EBADTYPE, row);
  auto t = std::make_unique<TypeNode>();
  t->xtype = xtype;
  if (isAtomicType(xtype)) {
    if (xtype == NC_CHAR) {
      t->kind = Kind::Char;
      t->size = 1;
    } else if (xtype == NC_STRING) {
      t->kind = Kind::String;
      t->size = sizeof(char*);
      t->fixedSize = false;
    } else {
      t->size = atomicElementSize(xtype);
      t->hostClass = *hostClassOf(xtype);
    }
    return t;
  }
  char name[NC_MAX_NAME + 1] = {};
  nc_type base = NC_NAT;
  std::size_t nfields = 0;
  int typeClass = 0;
  checkStatus(nc_inq_user_type(ncid, xtype, name, &t->size, &base, &nfields, &typeClass), row);
  t->name = name;
  switch (typeClass) {
    case NC_ENUM:
      t->kind = Kind::Enum;
      t->hostClass = *hostClassOf(base);
      break;
    case NC_OPAQUE:
      t->kind = Kind::Opaque;
      t->hostClass = qvUINT8_CLASS;
      break;
    case NC_VLEN:
      t->kind = Kind::Vlen;
      t->size = sizeof(nc_vlen_t);
      t->base = describeType(ncid, base, row, depth + 1);
      t->fixedSize = false;
      break;
    case NC_COMPOUND:
      t->kind = Kind::Compound;
      t->fields.resize(nfields);
      for (std::size_t k = 0; k < nfields; ++k) {
        auto& f = t->fields[k];
        char fieldName[NC_MAX_NAME + 1] = {};
        nc_type fieldType = NC_NAT;
        int ndims = 0;
        const int index = static_cast<int>(k);
        checkStatus(nc_inq_compound_field(ncid, xtype, index, fieldName, &f.offset, &fieldType,
                                          &ndims, nullptr),
                    row);
        std::vector<int> sizes(static_cast<std::size_t>(std::max(ndims, 0)), 0);
        if (ndims > 0) {
          checkStatus(nc_inq_compound_fielddim_sizes(ncid, xtype, index, sizes.data()), row);
        }
        f.name = fieldName;
        for (const int d : sizes) {
          f.dims.push_back(static_cast<std::size_t>(d));
          f.count *= static_cast<std::size_t>(d);
        }
        f.type = describeType(ncid, fieldType, row, depth + 1);
        // Records are read and written within the type's size only.
        if (f.offset > t->size || f.count * f.type->size > t->size - f.offset) {
          checkStatus(NC_EBADTYPE, row);
        }
        t->fixedSize = t->fixedSize && f.type->fixedSize;
      }
      break;
    default:
      qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedVarDatatype(xtype));
  }
  return t;
}

qvArrayPtr makeHostData(const TypeNode& t, std::size_t n, const DimList& dims) {
  return makeFieldArray(t, n, dims);
}

void scatterInto(const TypeNode& t, qvArray* host, std::size_t first, const std::byte* src,
                 std::size_t n) {
  switch (t.kind) {
    case Kind::Compound:
      scatterCompound(t, src, n, host, first);
      return;
    case Kind::Vlen:
      for (std::size_t i = 0; i < n; ++i) {
        nc_vlen_t rec;
        std::memcpy(&rec, src + i * sizeof rec, sizeof rec);
        qvSetCell(host, first + i, vlenElementToHost(*t.base, rec));
      }
      return;
    case Kind::Char:
      widenCharData(reinterpret_cast<const char*>(src), n,
                    static_cast<char16_t*>(qvGetData(host)) + first);
      return;
    case Kind::String:
      for (std::size_t i = 0; i < n; ++i) {
        const char* text = nullptr;
        std::memcpy(&text, src + i * sizeof text, sizeof text);
        setStringElement(host, first + i, text ? utf8_to_ustring(text) : std::u16string());
      }
      return;
    default:
      if (n != 0) {
        std::memcpy(static_cast<std::byte*>(qvGetData(host)) + first * t.size, src, n * t.size);
      }
  }
}

qvArrayPtr nativeToHost(const TypeNode& t, const std::byte* src, std::size_t n,
                        const DimList& dims) {
  qvArrayPtr out = makeHostData(t, n, dims);
  scatterInto(t, out.get(), 0, src, n);
  return out;
}

std::size_t hostElementCount(const TypeNode& t, const qvArray* data, const std::string& where) {
  const std::size_t n = countOf(data);
  if (t.kind == Kind::Opaque) return t.size == 0 ? 0 : n / t.size;
  if (t.kind != Kind::Compound || n == 0 || qvGetClassID(data) != qvSTRUCT_CLASS) return n;
  // The records are counted in the first field, which must be the type's.
  checkFields(t, data, where);
  if (t.fields.empty()) return 0;
  const auto& f = t.fields[0];
  const std::string inner = where + "." + f.name;
  if (f.count == 0) return 0;
  return hostElementCount(*f.type, qvGetFieldByNumber(data, 0, 0), inner) / f.count;
}

// ---- writes -----------------------------------------------------------------

namespace {
// Refuses data that is not n values of t, naming where.
void checkData(const TypeNode& t, const qvArray* a, std::size_t n, const std::string& where) {
  const qvClassID expected = formClass(t);
  const std::size_t have = countOf(a);
  if (have == 0 && n == 0) return;
  const qvClassID cls = a == nullptr ? qvUNKNOWN_CLASS : qvGetClassID(a);
  // Hosts give lists of text as cells too, and may have no empty string arrays.
  const bool textCells = cls == qvCELL_CLASS && (t.kind == Kind::String || have == 0);
  if ((cls != expected && !textCells) || qvIsComplex(a)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::dataHasBadClass(where, className(expected)));
  }
  if (t.kind == Kind::Compound) {
    checkFields(t, a, where);
    for (std::size_t k = 0; k < t.fields.size(); ++k) {
      const auto& f = t.fields[k];
      checkData(*f.type, qvGetFieldByNumber(a, 0, k), n * f.count, where + "." + f.name);
    }
    return;
  }
  if (textCells && have != 0) stringsFromCells(a, where);
  const std::size_t want = t.kind == Kind::Opaque ? n * t.size : n;
  if (have != want) {
    qvErrMsgId(QUARNA::imagesci::netcdf::dataElementCountMismatch(where, want, have));
  }
}

void checkFields(const TypeNode& t, const qvArray* a, const std::string& where) {
  bool same = qvGetNumberOfElements(a) == 1 && qvGetNumberOfFields(a) == t.fields.size();
  for (std::size_t k = 0; same && k < t.fields.size(); ++k) {
    same = t.fields[k].name == qvGetFieldNameByNumber(a, k);
  }
  if (same) return;
  std::string names;
  for (const auto& f : t.fields) names += (names.empty() ? "" : ", ") + f.name;
  qvErrMsgId(QUARNA::imagesci::netcdf::dataFieldsMismatch(where, t.name, names));
}

}  // namespace

struct Gatherer {
  NativeData& out;

  // dst receives n values of t from a, which check has accepted.
  void gather(const TypeNode& t, const qvArray* a, std::size_t n, std::byte* dst,
              const std::string& where) {
    if (n == 0) return;
    switch (t.kind) {
      case Kind::Compound: {
        std::vector<Leaf> plan;
        buildPlan(t, a, 0, 0, 1, where, plan);
        std::vector<const char**> strings(plan.size(), nullptr);
        for (std::size_t k = 0; k < plan.size(); ++k) {
          if (plan[k].type->kind == Kind::String) strings[k] = stringTable(plan[k].array);
        }
        for (std::size_t i = 0; i < n; ++i) {
          std::byte* rec = dst + i * t.size;
          for (std::size_t k = 0; k < plan.size(); ++k) {
            const Leaf& l = plan[k];
            gatherLeaf(l, l.first + i * l.stride, rec + l.srcOffset, strings[k]);
          }
        }
        return;
      }
      case Kind::Vlen:
        for (std::size_t i = 0; i < n; ++i) {
          const nc_vlen_t rec = vlenRecord(*t.base, qvGetCell(a, i), where);
          std::memcpy(dst + i * sizeof rec, &rec, sizeof rec);
        }
        return;
      case Kind::String: {
        const char** texts = stringTable(a);
        std::memcpy(dst, texts, n * sizeof(char*));
        return;
      }
      case Kind::Char: {
        const auto* units = static_cast<const char16_t*>(qvGetData(a));
        for (std::size_t i = 0; i < n; ++i) dst[i] = static_cast<std::byte>(units[i] & 0xFF);
        return;
      }
      default:
        std::memcpy(dst, qvGetData(a), n * t.size);
    }
  }

  void gatherLeaf(const Leaf& l, std::size_t index, std::byte* dst, const char** strings) {
    const std::size_t w = l.type->size;
    if (movesBytes(*l.type)) {
      std::memcpy(dst, static_cast<const std::byte*>(qvGetData(l.array)) + index * w,
                  l.count * w);
      return;
    }
    for (std::size_t j = 0; j < l.count; ++j) {
      switch (l.type->kind) {
        case Kind::Char:
          dst[j] = static_cast<std::byte>(static_cast<const char16_t*>(qvGetData(l.array))[index + j] & 0xFF);
          break;
        case Kind::String:
          std::memcpy(dst + j * w, &strings[index + j], w);
          break;
        default: {
          const nc_vlen_t rec = vlenRecord(*l.type->base, qvGetCell(l.array, index + j), l.path);
          std::memcpy(dst + j * w, &rec, w);
        }
      }
    }
  }

  // UTF-8 copies of a string array's elements, owned by out; an empty cell has none.
  const char** stringTable(const qvArray* a) {
    if (countOf(a) == 0) return nullptr;
    if (qvGetClassID(a) == qvCELL_CLASS) {
      return out.texts_.emplace_back(stringsFromCells(a, "").get()).pointers();
    }
    return out.texts_.emplace_back(a).pointers();
  }

  nc_vlen_t vlenRecord(const TypeNode& base, const qvArray* element, const std::string& where) {
    const std::string inner = where + "{}";
    if (countOf(element) == 0) return {0, nullptr};
    const std::size_t m = hostElementCount(base, element, inner);
    checkData(base, element, m, inner);
    std::byte* block = out.allocate(m * base.size);
    gather(base, element, m, block, inner);
    return {m, block};
  }
};

qvArrayPtr stringsFromCells(const qvArray* cells, const std::string& where) {
  const std::size_t n = qvGetNumberOfElements(cells);
  qvArrayPtr out = createStringArray(qvGetNumberOfDimensions(cells), qvGetDimensions(cells));
  for (std::size_t i = 0; i < n; ++i) {
    const qvArray* text = qvGetCell(cells, i);
    if (countOf(text) == 0) continue;
    if (qvGetClassID(text) != qvCHAR_CLASS) {
      qvErrMsgId(QUARNA::imagesci::netcdf::dataHasBadClass(where + "{}", "char"));
    }
    setStringElement(out.get(), i, matrix::get_ustring(text));
  }
  return out;
}

void checkHostData(const TypeNode& t, const qvArray* data, std::size_t n,
                   const std::string& where) {
  checkData(t, data, n, where);
}

NativeData::NativeData(const TypeNode& t, const qvArray* data, std::size_t n,
                       const std::string& where) {
  Gatherer g{*this};
  checkData(t, data, n, where);
  top_ = allocate(checkedBytes(n, t.size));
  g.gather(t, data, n, top_, where);
}

std::byte* NativeData::allocate(std::size_t bytes) {
  // Zeroed: padding between fields is written to the file as it is.
  blocks_.push_back(std::make_unique<std::byte[]>(std::max<std::size_t>(bytes, 1)));
  return blocks_.back().get();
}

// ---- reads ------------------------------------------------------------------

NativeBuffer::NativeBuffer(int ncid, const TypeNode& t, std::size_t n)
    : ncid_(ncid), type_(t) {
  const std::size_t bytes = std::max<std::size_t>(checkedBytes(n, t.size), 1);
  // Records netCDF-C fills with pointers start zeroed, so that no path sees garbage.
  bytes_.reset(t.fixedSize ? new std::byte[bytes] : new std::byte[bytes]());
}

NativeBuffer::~NativeBuffer() { reclaim(); }

int NativeBuffer::reclaim() noexcept {
  const std::size_t n = filled_;
  filled_ = 0;
  if (n == 0 || type_.fixedSize) return NC_NOERR;
  return nc_reclaim_data(ncid_, type_.xtype, bytes_.get(), n);
}
