// Data handed to netCDF-C as a block must be what netCDF-C will read it as.
#pragma once

#include "gateway/errors.hpp"
#include "qvhost/array.hpp"

// A block of another class would be read past its end or misread; complex data would
// lose its imaginary part. Both are refused.
inline void requireDataClass(const qvArray* data, qvClassID expected,
                             const char* argName = "data") {
  if (qvGetClassID(data) != expected || qvIsComplex(data)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::argumentHasBadDatatype(argName));
  }
}
