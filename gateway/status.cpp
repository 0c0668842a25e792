#include "gateway/status.hpp"

#include <netcdf.h>

#include <map>
#include <string_view>

#include "gateway/errors.hpp"
#include "gateway/operation.hpp"

namespace {

// Built at load, before any call; read-only afterwards. Codes missing here (-77..-100,
// below -128, and positive system errors) are named by their decimal text.
const std::map<int, std::string> kErrorNames = {
    {-1, "NC2_ERR"},          {-33, "NC_EBADID"},         {-34, "NC_ENFILE"},
    {-35, "NC_EEXIST"},       {-36, "NC_EINVAL"},         {-37, "NC_EPERM"},
    {-38, "NC_ENOTINDEFINE"}, {-39, "NC_EINDEFINE"},      {-40, "NC_EINVALCOORDS"},
    {-41, "NC_EMAXDIMS"},     {-42, "NC_ENAMEINUSE"},     {-43, "NC_ENOTATT"},
    {-44, "NC_EMAXATTS"},     {-45, "NC_EBADTYPE"},       {-46, "NC_EBADDIM"},
    {-47, "NC_EUNLIMPOS"},    {-48, "NC_EMAXVARS"},       {-49, "NC_ENOTVAR"},
    {-50, "NC_EGLOBAL"},      {-51, "NC_ENOTNC"},         {-52, "NC_ESTS"},
    {-53, "NC_EMAXNAME"},     {-54, "NC_EUNLIMIT"},       {-55, "NC_ENORECVARS"},
    {-56, "NC_ECHAR"},        {-57, "NC_EEDGE"},          {-58, "NC_ESTRIDE"},
    {-59, "NC_EBADNAME"},     {-60, "NC_ERANGE"},         {-61, "NC_ENOMEM"},
    {-62, "NC_EVARSIZE"},     {-63, "NC_EDIMSIZE"},       {-64, "NC_ETRUNC"},
    {-65, "NC_EAXISTYPE"},    {-66, "NC_EDAP"},           {-67, "NC_ECURL"},
    {-68, "NC_EIO"},          {-69, "NC_ENODATA"},        {-70, "NC_EDAPSVC"},
    {-71, "NC_EDAS"},         {-72, "NC_EDDS"},           {-73, "NC_EDATADDS"},
    {-74, "NC_EDAPURL"},      {-75, "NC_EDAPCONSTRAINT"}, {-76, "NC_ETRANSLATION"},
    {-101, "NC_EHDFERR"},     {-102, "NC_ECANTREAD"},     {-103, "NC_ECANTWRITE"},
    {-104, "NC_ECANTCREATE"}, {-105, "NC_EFILEMETA"},     {-106, "NC_EDIMMETA"},
    {-107, "NC_EATTMETA"},    {-108, "NC_EVARMETA"},      {-109, "NC_ENOCOMPOUND"},
    {-110, "NC_EATTEXISTS"},  {-111, "NC_ENOTNC4"},       {-112, "NC_ESTRICTNC3"},
    {-113, "NC_ENOTNC3"},     {-114, "NC_ENOPAR"},        {-115, "NC_EPARINIT"},
    {-116, "NC_EBADGRPID"},   {-117, "NC_EBADTYPID"},     {-118, "NC_ETYPDEFINED"},
    {-119, "NC_EBADFIELD"},   {-120, "NC_EBADCLASS"},     {-121, "NC_EMAPTYPE"},
    {-122, "NC_ELATEFILL"},   {-123, "NC_ELATEDEF"},      {-124, "NC_EDIMSCALE"},
    {-125, "NC_ENOGRP"},      {-126, "NC_ESTORAGE"},      {-127, "NC_EBADCHUNK"},
    {-128, "NC_ENOTBUILT"},
};

// Remote-access failures; -69 (NC_ENODATA) sits between the two runs but is not one.
bool isDapFailure(int status) {
  return (status >= -75 && status <= -70) || (status >= -68 && status <= -66);
}

}  // namespace

std::string errorName(int status) {
  const auto it = kErrorNames.find(status);
  return it != kErrorNames.end() ? it->second : std::to_string(status);
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
