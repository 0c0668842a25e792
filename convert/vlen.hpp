// Variable-length data both ways: netCDF-C records to nested host cells, and host cells
// to records that netCDF-C writes.
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

// A cell array of dims whose first m elements are built from the records by base type.
// Numeric bases give columns (0-by-0 when empty), NC_CHAR a char row, NC_STRING a string
// column, a nested vlen type a nested cell column.
qvArrayPtr vlenToCells(int ncid, nc_type base, const nc_vlen_t* records, std::size_t m,
                       const DimList& dims);

// The base type of a vlen type; unrecognizedVarDatatype(type) for any other type, whose
// values netCDF-C would write into records that nothing could then safely release.
nc_type vlenBaseType(int ncid, nc_type type);

// Records for writing the elements of a cell array as values of a vlen type whose base
// is base. Numeric data is not copied: records point into the cells' data blocks, which
// must outlive this object. Converted texts and every nested record level are owned here
// and released with it, on every path.
class VlenRecords {
 public:
  // argName names the cells in errors.
  VlenRecords(int ncid, nc_type base, const qvArray* cells, std::string argName = "data");
  VlenRecords(const VlenRecords&) = delete;
  VlenRecords& operator=(const VlenRecords&) = delete;

  nc_vlen_t* data() noexcept { return top_; }
  std::size_t size() const noexcept { return count_; }

 private:
  nc_vlen_t* newLevel(std::size_t n);
  void fill(nc_vlen_t* out, nc_type base, const qvArray* cells);
  nc_vlen_t recordOf(nc_type base, nc_type nestedBase, const qvArray* element);

  int ncid_;
  std::string argName_;
  std::vector<std::unique_ptr<nc_vlen_t[]>> levels_;
  // Stable addresses: records point into these.
  std::deque<std::vector<char>> charData_;
  std::deque<Utf8StringList> stringLists_;
  nc_vlen_t* top_ = nullptr;
  std::size_t count_ = 0;
};
