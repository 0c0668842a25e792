// Fill mode, default format, and the file-level inquiries.
#include <netcdf.h>

#include <string_view>

#include "convert/outputs.hpp"
#include "convert/scalars.hpp"
#include "convert/text.hpp"
#include "gateway/errors.hpp"
#include "gateway/status.hpp"
#include "ops/files/files.hpp"

namespace {

std::string_view formatName(int format) {
  switch (format) {
    case NC_FORMAT_CLASSIC:
      return "FORMAT_CLASSIC";
    case NC_FORMAT_64BIT_OFFSET:
      return "FORMAT_64BIT";
    case NC_FORMAT_NETCDF4:
      return "FORMAT_NETCDF4";
    case NC_FORMAT_NETCDF4_CLASSIC:
      return "FORMAT_NETCDF4_CLASSIC";
    default:
      qvErrMsgId(QUARNA::imagesci::netcdf::unknownNetCDFFormat(format));
  }
}

// The version number alone: nc_inq_libvers() also names the build date after a blank.
std::string_view firstWord(std::string_view text) {
  const auto begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return {};
  text.remove_prefix(begin);
  return text.substr(0, text.find(' '));
}
}  // namespace

NETCDFLIB_HANDLER(handleSetFill) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  const int newMode = getScalar<int>(inputs[1], "new_fill_mode");
  int oldMode = 0;
  checkStatus(nc_set_fill(ncid, newMode, &oldMode), row);
  plhs[0] = makeDoubleScalar(oldMode);
}

NETCDFLIB_HANDLER(handleSetDefaultFormat) {
  const int format = getScalar<int>(inputs[0], "new default format");
  int oldFormat = 0;
  checkStatus(nc_set_default_format(format, &oldFormat), row);
  plhs[0] = makeDoubleScalar(oldFormat);
}

NETCDFLIB_HANDLER(handleInqFormat) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  int format = 0;
  checkStatus(nc_inq_format(ncid, &format), row);
  plhs[0] = makeAsciiText(formatName(format));
}

NETCDFLIB_HANDLER(handleInqLibVers) {
  plhs[0] = makeAsciiText(firstWord(nc_inq_libvers()));
}

NETCDFLIB_HANDLER(handleInq) {
  const int ncid = getScalar<int>(inputs[0], "ncid");
  int ndims = 0, nvars = 0, ngatts = 0, unlimdimid = -1;
  checkStatus(nc_inq(ncid, &ndims, &nvars, &ngatts, &unlimdimid), row);
  plhs[0] = makeDoubleScalar(ndims);
  plhs[1] = makeDoubleScalar(nvars);
  plhs[2] = makeDoubleScalar(ngatts);
  plhs[3] = makeDoubleScalar(unlimdimid);
}
