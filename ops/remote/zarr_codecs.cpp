#include "ops/remote/zarr_codecs.hpp"

#include <netcdf.h>
#include <netcdf_filter.h>

// Boost 1.74's JSON parser still includes the deprecated global bind placeholders, which
// print a note in every build; nothing here uses them.
#define BOOST_BIND_GLOBAL_PLACEHOLDERS
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "gateway/errors.hpp"
#include "gateway/status.hpp"

namespace {

// Whether the URL asks for Zarr: netCDF-C's mode fragment names zarr, nczarr or xarray.
bool isZarrUrl(std::string_view url) {
  const std::size_t fragment = url.find('#');
  if (fragment == std::string_view::npos) return false;
  const std::string_view tail = url.substr(fragment);
  return tail.find("zarr") != std::string_view::npos ||
         tail.find("xarray") != std::string_view::npos;
}

std::string groupPath(int ncid) {
  std::size_t length = 0;
  if (nc_inq_grpname_full(ncid, &length, nullptr) != NC_NOERR) return {};
  std::string path(length, '\0');
  if (nc_inq_grpname_full(ncid, nullptr, path.data()) != NC_NOERR) return {};
  return path == "/" ? std::string() : path;
}

}  // namespace

// Nothing for a variable not yet written out, or metadata netCDF-C would refuse itself.
std::optional<std::vector<std::string>> ZarrCodecs::codecsOf(const std::string& zarray) {
  std::ifstream in(zarray);
  if (!in) return std::nullopt;
  boost::property_tree::ptree meta;
  try {
    boost::property_tree::read_json(in, meta);
  } catch (const boost::property_tree::json_parser_error&) {
    return std::nullopt;
  }
  std::vector<std::string> codecs;
  // JSON null reads as the text "null" without children.
  if (const auto filters = meta.get_child_optional("filters")) {
    for (const auto& [key, filter] : *filters) codecs.push_back(filter.get("id", "?"));
  }
  if (const auto compressor = meta.get_child_optional("compressor")) {
    if (!compressor->empty()) codecs.push_back(compressor->get("id", "?"));
  }
  return codecs;
}

namespace {

std::string blockingCodecs(int ncid, int varid, const std::vector<std::string>& codecs) {
  std::size_t applied = 0;
  // A netCDF-C built with codec plugins reports what it applies; more codecs than that
  // cannot all be applied.
  if (nc_inq_var_filter_ids(ncid, varid, &applied, nullptr) != NC_NOERR) applied = 0;
  if (codecs.size() <= applied) return {};
  std::string names;
  for (const std::string& codec : codecs) names += (names.empty() ? "" : ", ") + codec;
  return names;
}

}  // namespace

namespace ZarrCodecs {

int statusOfForeignWrite(const std::string& path, int mode) {
  if ((mode & NC_WRITE) == 0 || !isZarrUrl(path)) return NC_NOERR;
  const std::string directory = RemoteFiles::fileUrlPath(path);
  std::ifstream group(directory + "/.zgroup");
  if (directory.empty() || !group) return NC_NOERR;
  std::ifstream attributes(directory + "/.zattrs");
  const std::string text{std::istreambuf_iterator<char>(attributes), {}};
  return text.find("\"_NCProperties\"") == std::string::npos ? NC_EPERM : NC_NOERR;
}

void refuseStrings(int ncid, int xtype, const OperationRow& row) {
  const RemoteFiles::Entry* entry = RemoteFiles::find(ncid);
  if (xtype == NC_STRING && entry != nullptr && entry->format == NC_FORMATX_NCZARR) {
    checkStatus(NC_EBADTYPE, row);
  }
}

void refuseFilters(int ncid, int varid, const OperationRow& row) {
  const RemoteFiles::Entry* entry = RemoteFiles::find(ncid);
  int ndims = 0;
  if (entry != nullptr && entry->format == NC_FORMATX_NCZARR &&
      nc_inq_varndims(ncid, varid, &ndims) == NC_NOERR) {
    checkStatus(NC_ENOFILTER, row);
  }
}

void refuseUndecodable(int ncid, int varid, const OperationRow& row) {
  RemoteFiles::Entry* store = RemoteFiles::find(ncid);
  if (store == nullptr || store->directory.empty()) return;
  const auto key = std::make_pair(ncid, varid);
  auto verdict = store->verdicts.find(key);
  if (verdict == store->verdicts.end()) {
    char name[NC_MAX_NAME + 1] = {};
    // A bad id is netCDF-C's to report, by the call it guards.
    if (nc_inq_varname(ncid, varid, name) != NC_NOERR) return;
    const auto codecs = codecsOf(store->directory + groupPath(ncid) + "/" + name + "/.zarray");
    if (!codecs) return;
    verdict = store->verdicts.emplace(key, blockingCodecs(ncid, varid, *codecs)).first;
  }
  if (verdict->second.empty()) return;
  char name[NC_MAX_NAME + 1] = {};
  nc_inq_varname(ncid, varid, name);
  qvErrMsgId(QUARNA::imagesci::netcdf::zarrCodecNotSupported(row.name, name, verdict->second));
}

}  // namespace ZarrCodecs
