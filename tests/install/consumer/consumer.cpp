// Writes a variable to the file named by argv[1], reads it back, and checks that an unknown
// operation fails with its message identifier. Exit status 0 when all of it holds.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include <netcdflib.hpp>
#include <qvhost/qvhost.hpp>

namespace {
using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

qvArrayPtr text(const std::string& s) { return matrix::create(s.data(), s.size()); }

qvArrayPtr doubles(std::initializer_list<double> values) {
  const std::array<std::uint64_t, 2> dims{1, values.size()};
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvDOUBLE_CLASS, qvREAL);
  std::copy(values.begin(), values.end(), static_cast<double*>(qvGetData(a.get())));
  return a;
}

qvArrayPtr number(double v) { return doubles({v}); }

Outputs call(const std::string& op, int nlhs, std::initializer_list<const qvArray*> args) {
  const qvArrayPtr name = text(op);
  std::vector<const qvArray*> prhs{name.get()};
  prhs.insert(prhs.end(), args);
  Outputs out;
  netcdflib(nlhs, out.data(), static_cast<int>(prhs.size()), prhs.data());
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const qvArrayPtr path = text(argv[1]), mode = text("NETCDF4"), dimName = text("x"),
                   varName = text("v");
  const qvArrayPtr type = number(6);  // NC_DOUBLE
  const qvArrayPtr ncid(std::move(call("create", 1, {path.get(), mode.get()})[0]));
  const qvArrayPtr dimid(std::move(call("defDim", 1, {ncid.get(), dimName.get(), number(3).get()})[0]));
  const qvArrayPtr varid(
      std::move(call("defVar", 1, {ncid.get(), varName.get(), type.get(), dimid.get()})[0]));
  const qvArrayPtr data = doubles({0.5, 1.5, 2.5});
  call("putVarDouble", 0, {ncid.get(), varid.get(), data.get()});
  call("close", 0, {ncid.get()});

  const qvArrayPtr readMode = text("NC_NOWRITE");
  const qvArrayPtr again(std::move(call("open", 1, {path.get(), readMode.get()})[0]));
  const Outputs read = call("getVarDouble", 1, {again.get(), number(0).get()});
  const double* got = static_cast<const double*>(qvGetData(read[0].get()));
  call("close", 0, {again.get()});
  const bool same = qvGetNumberOfElements(read[0].get()) == 3 && got[0] == 0.5 && got[2] == 2.5;
  std::printf("read back %s: %g %g %g\n", same ? "ok" : "WRONG", got[0], got[1], got[2]);

  std::string id;
  try {
    call("noSuchOperation", 0, {});
  } catch (const foundation::core::except::IMsgIDException& e) {
    id = e.get_error_id();
  }
  std::printf("unknown operation: %s\n", id.c_str());
  return same && id == "QUARNA:imagesci:netcdf:unrecognizedOperation" ? 0 : 1;
}
