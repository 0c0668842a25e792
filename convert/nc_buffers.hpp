// Owners of what netCDF-C allocates inside buffers we hand it: the strings of an
// NC_STRING read and the nested data of a variable-length read. free() returns the
// status of the netCDF-C release so that callers can check it; the destructor releases
// on error paths and ignores the status there.
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <memory>

template <class Element, int (*release)(int ncid, nc_type type, Element* data, std::size_t n)>
class NetcdfBuffer {
 public:
  explicit NetcdfBuffer(std::size_t n, int ncid = 0, nc_type type = NC_NAT)
      : n_(n), ncid_(ncid), type_(type), data_(new Element[n]()) {}
  ~NetcdfBuffer() {
    if (filled_) release(ncid_, type_, data_.get(), n_);
  }
  NetcdfBuffer(const NetcdfBuffer&) = delete;
  NetcdfBuffer& operator=(const NetcdfBuffer&) = delete;

  Element* data() noexcept { return data_.get(); }
  std::size_t size() const noexcept { return n_; }
  // netCDF-C has filled the buffer and owns what it points to.
  void markFilled() noexcept { filled_ = true; }
  int free() noexcept {
    filled_ = false;
    return release(ncid_, type_, data_.get(), n_);
  }

 private:
  std::size_t n_;
  int ncid_;
  nc_type type_;
  std::unique_ptr<Element[]> data_;
  bool filled_ = false;
};

inline int freeNetcdfStrings(int, nc_type, char** strings, std::size_t n) {
  return nc_free_string(n, strings);
}
// Reclaimed by type through netCDF-C, because nc_free_vlens frees only the first level
// and would leave nested levels and the strings of NC_STRING bases behind.
inline int reclaimNetcdfVlens(int ncid, nc_type type, nc_vlen_t* records, std::size_t n) {
  return nc_reclaim_data(ncid, type, records, n);
}

using NetcdfStringBuffer = NetcdfBuffer<char*, freeNetcdfStrings>;
// n records of the vlen type of ncid.
using NetcdfVlenBuffer = NetcdfBuffer<nc_vlen_t, reclaimNetcdfVlens>;
