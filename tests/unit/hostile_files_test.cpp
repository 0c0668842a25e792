// Corrupt and hostile files: truncated, bit-flipped and empty files of each format, a
// directory, an unreadable file and a URL nobody answers. Opening each (and reading
// everything in it when the open succeeds) must end normally or with a message-ID error,
// and the library must work normally afterwards.
#include <gtest/gtest.h>
#include <netcdf.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "test_support.hpp"

namespace {

using test::call;
using test::call1;
using test::number;

// A file of the given format with dimensions (one unlimited), variables of several types,
// data and attributes; netCDF-4 adds strings and a variable-length type.
void writeSample(const std::string& path, int mode) {
  int nc = -1, x = -1, t = -1, d = -1, c = -1, r = -1, s = -1, v = -1;
  nc_type vlen = NC_NAT;
  ASSERT_EQ(nc_create(path.c_str(), NC_CLOBBER | mode, &nc), NC_NOERR);
  nc_def_dim(nc, "x", 5, &x);
  nc_def_dim(nc, "t", NC_UNLIMITED, &t);
  nc_def_var(nc, "d", NC_DOUBLE, 1, &x, &d);
  nc_def_var(nc, "c", NC_CHAR, 1, &x, &c);
  const int rdims[] = {t, x};
  nc_def_var(nc, "r", NC_SHORT, 2, rdims, &r);
  nc_put_att_text(nc, NC_GLOBAL, "title", 6, "sample");
  const double dv[] = {1, 2, 3, 4, 5};
  nc_put_att_double(nc, d, "scale", NC_DOUBLE, 2, dv);
  if ((mode & NC_NETCDF4) != 0) {
    nc_def_var(nc, "s", NC_STRING, 1, &x, &s);
    nc_def_vlen(nc, "vi", NC_INT, &vlen);
    nc_def_var(nc, "v", vlen, 1, &x, &v);
  }
  ASSERT_EQ(nc_enddef(nc), NC_NOERR);
  nc_put_var_double(nc, d, dv);
  nc_put_var_text(nc, c, "hello");
  const short rv[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  const std::size_t start[] = {0, 0}, count[] = {2, 5};
  nc_put_vara_short(nc, r, start, count, rv);
  if ((mode & NC_NETCDF4) != 0) {
    const char* sv[] = {"a", "bb", "", "dddd", "e"};
    nc_put_var_string(nc, s, sv);
    int one[] = {1}, two[] = {2, 3};
    nc_vlen_t vv[] = {{1, one}, {2, two}, {0, nullptr}, {1, one}, {2, two}};
    nc_put_var(nc, v, vv);
  }
  ASSERT_EQ(nc_close(nc), NC_NOERR);
}

// Whether f returned. A message-ID error is a normal ending; anything else fails the test.
template <class F>
bool returns(F&& f, const std::string& what) {
  try {
    f();
    return true;
  } catch (const foundation::core::except::IMsgIDException&) {
  } catch (...) {
    ADD_FAILURE() << what << ": exception that is not a message-ID error";
  }
  return false;
}

// Opens path through the gateway and, when that works, reads every variable (those under
// 2^20 elements: a corrupt header may legitimately ask for gigabytes) and global
// attribute, and closes it. Whether it opened.
bool openAndWalk(const std::string& path, const std::string& label) {
  test::Outputs info, var, dim, value;
  const auto ok = [&](test::Outputs& out, const std::string& op,
                      std::initializer_list<test::Arg> in) {
    return returns([&] { out = call(op, in); }, label + " " + op);
  };
  qvArrayPtr id;
  if (!returns([&] { id = call1("open", {path, "nowrite"}); }, label + " open")) return false;
  const bool known = ok(info, "inq", {id});
  for (int varid = 0; known && varid < number(info[1]); ++varid) {
    if (!ok(var, "inqVar", {id, varid})) continue;
    double elements = 1;
    for (const double d : test::valuesOf(var[2]))
      if (ok(dim, "inqDim", {id, d})) elements *= number(dim[1]);
    const double xtype = number(var[1]);
    const char* read = xtype == NC_CHAR     ? "getVarText"
                       : xtype == NC_STRING ? "getVarString"
                       : xtype > NC_STRING  ? "getVarVlen"
                                            : "getVarDouble";
    if (elements <= 1 << 20) ok(value, read, {id, varid});
  }
  for (int attnum = 0; known && attnum < number(info[2]); ++attnum) {
    if (!ok(var, "inqAttName", {id, NC_GLOBAL, attnum})) continue;
    ok(value, "getAttDouble", {id, NC_GLOBAL, var[0]});
    ok(value, "getAttText", {id, NC_GLOBAL, var[0]});
  }
  returns([&] { call("close", {id}); }, label + " close");
  return true;
}

// The library still creates, reopens and closes a file normally.
void expectLibraryStillWorks(const test::ScratchDir& dir, const std::string& label) {
  const std::string path = dir.file("after.nc");
  EXPECT_TRUE(returns(
      [&] {
        const qvArrayPtr created = call1("create", {path, "clobber"});
        call("defDim", {created, "n", 3});
        call("close", {created});
        const qvArrayPtr opened = call1("open", {path, "nowrite"});
        EXPECT_EQ(number(call("inqDim", {opened, 0})[1]), 3.0);
        call("close", {opened});
      },
      "after " + label));
}

class HostileFiles : public testing::TestWithParam<int> {};

TEST_P(HostileFiles, TruncatedBitFlippedAndEmpty) {
  const test::ScratchDir dir;
  const std::string good = dir.file("good.nc"), path = dir.file("variant.nc");
  writeSample(good, GetParam());
  std::ifstream in(good, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  ASSERT_GT(bytes.size(), 64u);
  EXPECT_TRUE(openAndWalk(good, "intact"));
  const auto tryVariant = [&](const std::vector<char>& content, const std::string& label) {
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
    const bool opened = openAndWalk(path, label);
    expectLibraryStillWorks(dir, label);
    return opened;
  };
  for (const std::size_t size :
       {0ul, 3ul, 4ul, 8ul, 32ul, bytes.size() / 4, bytes.size() / 2, bytes.size() - 1})
    tryVariant({bytes.begin(), bytes.begin() + long(size)}, "truncated to " + std::to_string(size));
  // Deterministic flips: every header byte of the first 96 in turn, then spread over the
  // rest of the file. Most land in data or padding and leave a readable file.
  int opened = 0;
  for (std::size_t i = 0; i < 160; ++i) {
    const std::size_t offset = i < 96 ? i : (i * 7919) % bytes.size();
    std::vector<char> flipped = bytes;
    flipped[offset] = static_cast<char>(flipped[offset] ^ (1 << (i % 8)));
    opened +=
        tryVariant(flipped, "bit " + std::to_string(i % 8) + " of byte " + std::to_string(offset));
  }
  EXPECT_GT(opened, 0);
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, HostileFiles,
                         testing::Values(0, NC_64BIT_OFFSET, NC_NETCDF4));

TEST(HostileNames, DirectoryMissingFileAndClosedPort) {
  const test::ScratchDir dir;
  std::filesystem::create_directories(dir.file("adir"));
  // A port we held a moment ago and released: nothing listens there.
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}};
  socklen_t len = sizeof addr;
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
  ASSERT_EQ(getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len), 0);
  close(fd);
  for (const std::string& path :
       {dir.file("adir"), dir.file("absent.nc"),
        "http://127.0.0.1:" + std::to_string(ntohs(addr.sin_port)) + "/x.nc"}) {
    EXPECT_FALSE(openAndWalk(path, path));
    expectLibraryStillWorks(dir, path);
  }
}

// Permission bits do not stop root, which the tests usually run as: the open then runs in
// a child that has given up root for the unprivileged "nobody" user.
TEST(HostileNames, FileWithoutReadPermission) {
  const test::ScratchDir dir;
  const std::string path = dir.file("locked.nc");
  writeSample(path, 0);
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  ASSERT_EQ(chmod(std::filesystem::path(path).parent_path().c_str(), 0755), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(10);
    if (access(path.c_str(), R_OK) == 0) _exit(11);  // still readable: nothing to test
    const auto caught = test::catchMsgId([&] { call("open", {path, "nowrite"}); });
    _exit(!caught ? 1 : caught->id == "QUARNA:imagesci:netcdf:libraryFailure" ? 0 : 2);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) >= 10) GTEST_SKIP() << "could not make the file unreadable here";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "1: opened, 2: another error";
  expectLibraryStillWorks(dir, "unreadable file");
}

}  // namespace
