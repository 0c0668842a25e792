#include "gateway/status.hpp"

#include <netcdf.h>

#include <map>
#include <string_view>

#include "gateway/constants.hpp"
#include "gateway/errors.hpp"
#include "gateway/operation.hpp"

namespace {

// Codes netCDF-C has that the published constants leave out.
const std::map<int, std::string_view> kUnpublishedErrors = {
    {NC_EAXISTYPE, "NC_EAXISTYPE"}, {NC_EDAP, "NC_EDAP"},
    {NC_ECURL, "NC_ECURL"},         {NC_EIO, "NC_EIO"},
    {NC_ENODATA, "NC_ENODATA"},     {NC_EDAPSVC, "NC_EDAPSVC"},
    {NC_EDAS, "NC_EDAS"},           {NC_EDDS, "NC_EDDS"},
    {NC_EDATADDS, "NC_EDATADDS"},   {NC_EDAPURL, "NC_EDAPURL"},
    {NC_EDAPCONSTRAINT, "NC_EDAPCONSTRAINT"}, {NC_ETRANSLATION, "NC_ETRANSLATION"},
    {NC_ENOTBUILT, "NC_ENOTBUILT"},
};

// Remote-access failures; -69 (NC_ENODATA) sits between the two runs but is not one.
bool isDapFailure(int status) {
  return (status >= NC_EDAPCONSTRAINT && status <= NC_EDAPSVC) ||
         (status >= NC_EIO && status <= NC_EDAP);
}

}  // namespace

// Codes without a name (-77..-100, below -128, and positive system errors) are named by
// their decimal text.
std::string errorName(int status) {
  if (const char* name = publishedErrorName(status)) return name;
  const auto it = kUnpublishedErrors.find(status);
  return it != kUnpublishedErrors.end() ? std::string(it->second) : std::to_string(status);
}

std::string netcdfMessage(int status) {
  constexpr std::string_view kPrefix = "NetCDF:";
  std::string message = nc_strerror(status);
  if (message.starts_with(kPrefix)) {
    // The prefix and the blank after it.
    message.erase(0, kPrefix.size() + 1);
  }
  return message;
}

void checkStatus(int status, const OperationRow& row) {
  if (status == 0) {
    return;
  }
  if (status == NC_EVARSIZE) {
    qvErrMsgId(QUARNA::imagesci::netcdf::formatConstraintsViolation());
  }
  if (isDapFailure(status)) {
    qvErrMsgId(QUARNA::imagesci::netcdf::librarydapFailure(row.name, errorName(status),
                                                           netcdfMessage(status)));
  }
  qvErrMsgId(
      QUARNA::imagesci::netcdf::libraryFailure(row.name, errorName(status), netcdfMessage(status)));
}
