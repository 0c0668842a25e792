// Owners of what netCDF-C allocates inside buffers we hand it: the strings of an
// NC_STRING read and the nested data of a variable-length read. free() returns the
// status of the netCDF-C release so that callers can check it; the destructor releases
// on error paths and ignores the status there.
#pragma once

#include <netcdf.h>

#include <cstddef>
#include <memory>

class NetcdfStringBuffer {
 public:
  explicit NetcdfStringBuffer(std::size_t n) : n_(n), ptrs_(new char*[n]()) {}
  ~NetcdfStringBuffer() {
    if (filled_) nc_free_string(n_, ptrs_.get());
  }
  NetcdfStringBuffer(const NetcdfStringBuffer&) = delete;
  NetcdfStringBuffer& operator=(const NetcdfStringBuffer&) = delete;

  char** data() noexcept { return ptrs_.get(); }
  std::size_t size() const noexcept { return n_; }
  // netCDF-C has filled the buffer and owns the strings in it.
  void markFilled() noexcept { filled_ = true; }
  int free() noexcept {
    filled_ = false;
    return nc_free_string(n_, ptrs_.get());
  }

 private:
  std::size_t n_;
  std::unique_ptr<char*[]> ptrs_;
  bool filled_ = false;
};

// Reclaimed by type through netCDF-C, because nc_free_vlens frees only the first level
// and would leave nested levels and the strings of NC_STRING bases behind.
class NetcdfVlenBuffer {
 public:
  NetcdfVlenBuffer(std::size_t n, int ncid, nc_type vlenType)
      : n_(n), ncid_(ncid), type_(vlenType), recs_(new nc_vlen_t[n]()) {}
  ~NetcdfVlenBuffer() {
    if (filled_) nc_reclaim_data(ncid_, type_, recs_.get(), n_);
  }
  NetcdfVlenBuffer(const NetcdfVlenBuffer&) = delete;
  NetcdfVlenBuffer& operator=(const NetcdfVlenBuffer&) = delete;

  nc_vlen_t* data() noexcept { return recs_.get(); }
  std::size_t size() const noexcept { return n_; }
  void markFilled() noexcept { filled_ = true; }
  int free() noexcept {
    filled_ = false;
    return nc_reclaim_data(ncid_, type_, recs_.get(), n_);
  }

 private:
  std::size_t n_;
  int ncid_;
  nc_type type_;
  std::unique_ptr<nc_vlen_t[]> recs_;
  bool filled_ = false;
};
