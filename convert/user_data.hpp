// Data in a type's own form, for every netCDF type at any nesting: enum data as its base
// integers, opaque data as uint8 columns, compound data as a 1-by-1 struct of field arrays,
// variable-length data as cells. Native buffers are laid out as netCDF-C reads and writes
// them (the type's size and field offsets).
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "convert/read_outputs.hpp"
#include "convert/text.hpp"
#include "qvhost/array.hpp"

struct OperationRow;

// What a netCDF type is, down to its atomic leaves.
struct TypeNode {
  enum class Kind { Numeric, Char, String, Enum, Opaque, Vlen, Compound };
  struct Field {
    std::string name;
    std::size_t offset = 0;
    std::vector<std::size_t> dims;  // netCDF order; empty for a scalar field
    std::size_t count = 1;          // product of dims
    std::unique_ptr<TypeNode> type;
  };

  Kind kind = Kind::Numeric;
  nc_type xtype = NC_NAT;
  std::string name;
  std::size_t size = 0;  // bytes of one native element
  qvClassID hostClass = qvUNKNOWN_CLASS;  // Numeric, Enum, Opaque: the class of its values
  std::unique_ptr<TypeNode> base;         // Vlen
  std::vector<Field> fields;              // Compound
  bool fixedSize = true;                  // nothing inside that netCDF-C allocates

  bool isAtomic() const noexcept { return xtype <= NC_STRING; }
  // True for vlens whose bases down to the leaves are vlens or atomic types.
  bool isPlainVlen() const noexcept;
};

// Asks netCDF-C what type xtype of ncid is; every status is checked against row.
std::unique_ptr<TypeNode> describeType(int ncid, nc_type xtype, const OperationRow& row,
                                       int depth = 0);

// Host data of n elements of type t laid out natively at src, shaped dims (numeric data's
// shape; opaque data and array fields add extents in front).
qvArrayPtr nativeToHost(const TypeNode& t, const std::byte* src, std::size_t n,
                        const DimList& dims);
// The same made first and filled in parts: scatterInto sets elements first ...
// first + n - 1 of host data makeHostData made from n native elements at src.
qvArrayPtr makeHostData(const TypeNode& t, std::size_t n, const DimList& dims);
void scatterInto(const TypeNode& t, qvArray* host, std::size_t first, const std::byte* src,
                 std::size_t n);

// A string array of a cell of char arrays, the other form hosts give lists of text in;
// dataHasBadClass(where + "{}") for other elements.
qvArrayPtr stringsFromCells(const qvArray* cells, const std::string& where);

// Refuses host data that is not n elements of t, naming where ("data") and the field.
void checkHostData(const TypeNode& t, const qvArray* data, std::size_t n,
                   const std::string& where);

// The number of elements host data holds in t's form: uint8 bytes over the opaque size,
// the records of a compound's struct (whose fields must be the type's: dataFieldsMismatch
// naming where), elements otherwise.
std::size_t hostElementCount(const TypeNode& t, const qvArray* data, const std::string& where);

// Native data to write, gathered from host data of n elements in t's form after checking
// its classes, fields and element counts. Everything the records point to (strings,
// nested vlen levels) is owned here. where names the data in errors ("data",
// "data.field", "data.field{}" for the elements of a vlen field).
class NativeData {
 public:
  NativeData(const TypeNode& t, const qvArray* data, std::size_t n, const std::string& where);
  NativeData(const NativeData&) = delete;
  NativeData& operator=(const NativeData&) = delete;
  const void* data() const noexcept { return top_; }

 private:
  friend struct Gatherer;
  std::byte* allocate(std::size_t bytes);

  std::deque<std::unique_ptr<std::byte[]>> blocks_;
  std::deque<Utf8StringList> texts_;
  std::byte* top_ = nullptr;
};

// A native buffer of n elements that netCDF-C fills, released with what netCDF-C allocated
// inside it (nc_reclaim_data) on every path; it may be filled again after reclaim().
class NativeBuffer {
 public:
  NativeBuffer(int ncid, const TypeNode& t, std::size_t n);
  ~NativeBuffer();
  NativeBuffer(const NativeBuffer&) = delete;
  NativeBuffer& operator=(const NativeBuffer&) = delete;

  void* data() noexcept { return bytes_.get(); }
  const std::byte* bytes() const noexcept { return bytes_.get(); }
  // netCDF-C has filled the first n elements.
  void markFilled(std::size_t n) noexcept { filled_ = n; }
  // Releases the contents now and returns netCDF-C's status.
  int reclaim() noexcept;

 private:
  int ncid_;
  const TypeNode& type_;
  std::unique_ptr<std::byte[]> bytes_;
  std::size_t filled_ = 0;
};
