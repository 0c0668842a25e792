#include "ops/files/file_mode.hpp"

#include <netcdf.h>

#include <locale>
#include <map>

#include "convert/text.hpp"
#include "convert/scalars.hpp"
#include "gateway/errors.hpp"

namespace {
const std::map<std::string, int>& fileModeTable() {
  static const std::map<std::string, int> table{
      {"clobber", NC_CLOBBER},
      {"nc_clobber", NC_CLOBBER},
      {"noclobber", NC_NOCLOBBER},
      {"nc_noclobber", NC_NOCLOBBER},
      {"share", NC_SHARE},
      {"nc_share", NC_SHARE},
      {"write", NC_WRITE},
      {"nc_write", NC_WRITE},
      {"netcdf4", NC_NETCDF4},
      {"nc_netcdf4", NC_NETCDF4},
      {"64bit_offset", NC_64BIT_OFFSET},
      {"nc_64bit_offset", NC_64BIT_OFFSET},
      {"classic_model", NC_CLASSIC_MODEL},
      {"nc_classic_model", NC_CLASSIC_MODEL},
      {"nowrite", NC_NOWRITE},
      {"nc_nowrite", NC_NOWRITE},
  };
  return table;
}
}  // namespace

int parseFileModeName(std::string text) {
  const std::locale locale;
  for (char& c : text) c = std::tolower(c, locale);
  const auto& table = fileModeTable();
  if (const auto it = table.find(text); it != table.end()) return it->second;
  for (char& c : text) c = std::toupper(c, locale);
  qvErrMsgId(QUARNA::imagesci::netcdf::unrecognizedFileMode(text));
}

int getFileMode(const qvArray* a) {
  if (qvIsEmpty(a)) qvErrMsgId(QUARNA::imagesci::netcdf::argumentIsEmptySet("MODE"));
  if (qvGetClassID(a) == qvCHAR_CLASS) return parseFileModeName(getCharText(a, "file mode"));
  if (const auto mode = getRawInt(a)) return *mode;
  qvErrMsgId(QUARNA::imagesci::netcdf::badModeDatatype());
}
