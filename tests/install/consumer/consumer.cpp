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
std::vector<qvArrayPtr> held;  // every argument and output, alive until exit

const qvArray* hold(qvArrayPtr a) { return held.emplace_back(std::move(a)).get(); }

const qvArray* text(const std::string& s) { return hold(matrix::create(s.data(), s.size())); }

const qvArray* doubles(std::initializer_list<double> values) {
  const std::array<std::uint64_t, 2> dims{1, values.size()};
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, qvDOUBLE_CLASS, qvREAL);
  std::copy(values.begin(), values.end(), static_cast<double*>(qvGetData(a.get())));
  return hold(std::move(a));
}

const qvArray* call(const std::string& op, int nlhs, std::initializer_list<const qvArray*> args) {
  std::vector<const qvArray*> prhs{text(op)};
  prhs.insert(prhs.end(), args);
  std::array<qvArrayPtr, kNetcdflibMaxOutputs> out;
  netcdflib(nlhs, out.data(), static_cast<int>(prhs.size()), prhs.data());
  return hold(std::move(out[0]));
}
}  // namespace

int main(int, char** argv) {
  const qvArray* ncid = call("create", 1, {text(argv[1]), text("NETCDF4")});
  const qvArray* varid = call("defVar", 1, {ncid, text("v"), doubles({6}),  // NC_DOUBLE
                                            call("defDim", 1, {ncid, text("x"), doubles({3})})});
  call("putVarDouble", 0, {ncid, varid, doubles({0.5, 1.5, 2.5})});
  call("close", 0, {ncid});
  const qvArray* again = call("open", 1, {text(argv[1]), text("NC_NOWRITE")});
  const qvArray* read = call("getVarDouble", 1, {again, doubles({0})});
  call("close", 0, {again});
  const double* got = static_cast<const double*>(qvGetData(read));
  const bool same = qvGetNumberOfElements(read) == 3 && got[0] == 0.5 && got[2] == 2.5;
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
