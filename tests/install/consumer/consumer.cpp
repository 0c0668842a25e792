// Asks netcdflib for netCDF-C's version and checks that an unknown operation fails with its
// message identifier. Exit status 0 when both hold.
#include <array>
#include <cstdio>
#include <string>

#include <netcdflib.hpp>
#include <qvhost/qvhost.hpp>

namespace {
qvArrayPtr call(const std::string& op) {
  const qvArrayPtr name = matrix::create(op.data(), op.size());
  const qvArray* prhs[] = {name.get()};
  std::array<qvArrayPtr, kNetcdflibMaxOutputs> out;
  netcdflib(1, out.data(), 1, prhs);
  return std::move(out[0]);
}
}  // namespace

int main() {
  const std::u16string units = matrix::get_ustring(call("inqLibVers").get());
  const std::string version(units.begin(), units.end());  // ASCII
  std::printf("netCDF-C %s\n", version.c_str());
  std::string id;
  try {
    call("noSuchOperation");
  } catch (const foundation::core::except::IMsgIDException& e) {
    id = e.get_error_id();
  }
  std::printf("unknown operation: %s\n", id.c_str());
  return !version.empty() && id == "QUARNA:imagesci:netcdf:unrecognizedOperation" ? 0 : 1;
}
