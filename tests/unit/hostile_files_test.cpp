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

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "test_support.hpp"

namespace {

using test::call;
using test::call1;
using test::number;

// Variables larger than this are left unread: a corrupt header may declare gigabytes, and
// reading them would be a legitimate request for that much memory, not a fault.
constexpr double kMaxReadElements = 1 << 20;

std::vector<char> readBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::string& path, const std::vector<char>& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A file of the given format with dimensions (one unlimited), variables of several types,
// data and attributes; netCDF-4 adds strings and a variable-length type.
void writeSample(const std::string& path, int mode) {
  int nc = -1, x = -1, t = -1, d = -1, c = -1, r = -1;
  ASSERT_EQ(nc_create(path.c_str(), NC_CLOBBER | mode, &nc), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "x", 5, &x), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "t", NC_UNLIMITED, &t), NC_NOERR);
  ASSERT_EQ(nc_def_var(nc, "d", NC_DOUBLE, 1, &x, &d), NC_NOERR);
  ASSERT_EQ(nc_def_var(nc, "c", NC_CHAR, 1, &x, &c), NC_NOERR);
  const int rdims[] = {t, x};
  ASSERT_EQ(nc_def_var(nc, "r", NC_SHORT, 2, rdims, &r), NC_NOERR);
  ASSERT_EQ(nc_put_att_text(nc, NC_GLOBAL, "title", 6, "sample"), NC_NOERR);
  const double scale[] = {0.5, 2.0};
  ASSERT_EQ(nc_put_att_double(nc, d, "scale", NC_DOUBLE, 2, scale), NC_NOERR);
  int s = -1, v = -1;
  nc_type vlen = NC_NAT;
  const bool netcdf4 = (mode & NC_NETCDF4) != 0;
  if (netcdf4) {
    ASSERT_EQ(nc_def_var(nc, "s", NC_STRING, 1, &x, &s), NC_NOERR);
    ASSERT_EQ(nc_def_vlen(nc, "vi", NC_INT, &vlen), NC_NOERR);
    ASSERT_EQ(nc_def_var(nc, "v", vlen, 1, &x, &v), NC_NOERR);
  }
  ASSERT_EQ(nc_enddef(nc), NC_NOERR);
  const double dv[] = {1, 2, 3, 4, 5};
  ASSERT_EQ(nc_put_var_double(nc, d, dv), NC_NOERR);
  ASSERT_EQ(nc_put_var_text(nc, c, "hello"), NC_NOERR);
  const short rv[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  const std::size_t start[] = {0, 0}, count[] = {2, 5};
  ASSERT_EQ(nc_put_vara_short(nc, r, start, count, rv), NC_NOERR);
  if (netcdf4) {
    const char* sv[] = {"a", "bb", "", "dddd", "e"};
    ASSERT_EQ(nc_put_var_string(nc, s, sv), NC_NOERR);
    int one[] = {1}, two[] = {2, 3};
    nc_vlen_t vv[] = {{1, one}, {2, two}, {0, nullptr}, {1, one}, {2, two}};
    ASSERT_EQ(nc_put_var(nc, v, vv), NC_NOERR);
  }
  ASSERT_EQ(nc_close(nc), NC_NOERR);
}

// How one gateway call ended. Anything but a return or a message-ID error fails the test.
enum class Outcome { Returned, MessageId };

template <class F>
Outcome attempt(F&& f, const std::string& what) {
  try {
    std::forward<F>(f)();
    return Outcome::Returned;
  } catch (const foundation::core::except::IMsgIDException&) {
    return Outcome::MessageId;
  } catch (const std::exception& e) {
    ADD_FAILURE() << what << ": exception that is not a message-ID error: " << typeid(e).name()
                  << ": " << e.what();
  } catch (...) {
    ADD_FAILURE() << what << ": exception of unknown type";
  }
  return Outcome::MessageId;
}

// The read operation for a variable's type: the typed one for text, strings and
// variable-length data, doubles (netCDF-C converting) for every number.
std::string readOperation(double xtype) {
  if (xtype == NC_CHAR) return "getVarText";
  if (xtype == NC_STRING) return "getVarString";
  if (xtype > NC_STRING) return "getVarVlen";
  return "getVarDouble";
}

// Reads every variable and global attribute of an open file through the gateway.
void walk(const qvArrayPtr& ncid, const std::string& label) {
  const auto ok = [&](test::Outputs& out, const std::string& op,
                      std::initializer_list<test::Arg> in) {
    return attempt([&] { out = call(op, in); }, label + " " + op) == Outcome::Returned;
  };
  test::Outputs info, var, dim, name, value;
  if (!ok(info, "inq", {ncid})) return;
  for (int varid = 0; varid < static_cast<int>(number(info[1])); ++varid) {
    if (!ok(var, "inqVar", {ncid, varid})) continue;
    double elements = 1;
    const auto* dimids = static_cast<const double*>(qvGetData(var[2].get()));
    for (std::size_t i = 0; i < qvGetNumberOfElements(var[2].get()); ++i) {
      if (ok(dim, "inqDim", {ncid, dimids[i]})) elements *= number(dim[1]);
    }
    if (elements <= kMaxReadElements) ok(value, readOperation(number(var[1])), {ncid, varid});
  }
  for (int attnum = 0; attnum < static_cast<int>(number(info[2])); ++attnum) {
    if (!ok(name, "inqAttName", {ncid, NC_GLOBAL, attnum})) continue;
    ok(value, "getAttDouble", {ncid, NC_GLOBAL, name[0]});
    ok(value, "getAttText", {ncid, NC_GLOBAL, name[0]});
  }
}

// Opens path through the gateway and, when that works, reads everything and closes it.
Outcome openAndWalk(const std::string& path, const std::string& label) {
  test::Outputs opened;
  const Outcome outcome = attempt(
      [&] {
        opened = call("open", {path, "nowrite"});
      },
      label + " open");
  if (outcome == Outcome::Returned) {
    walk(opened[0], label);
    attempt([&] { call("close", {opened[0]}); }, label + " close");
  }
  return outcome;
}

// The library still creates, reopens and closes a file normally.
void expectLibraryStillWorks(const test::ScratchDir& dir, const std::string& label) {
  const std::string path = dir.file("after.nc");
  try {
    const qvArrayPtr created = call1("create", {path, "clobber"});
    call("defDim", {created, "n", 3});
    call("close", {created});
    const qvArrayPtr opened = call1("open", {path, "nowrite"});
    EXPECT_EQ(number(call("inqDim", {opened, 0})[1]), 3.0);
    call("close", {opened});
  } catch (const foundation::core::except::IMsgIDException& e) {
    ADD_FAILURE() << "after " << label << ": " << e.get_error_id();
  }
}

struct Format {
  const char* name;
  int mode;
};
constexpr Format kFormats[] = {
    {"classic", 0}, {"offset64", NC_64BIT_OFFSET}, {"netcdf4", NC_NETCDF4}};

class HostileFiles : public testing::TestWithParam<Format> {};

TEST_P(HostileFiles, TruncatedBitFlippedAndEmpty) {
  const test::ScratchDir dir;
  const std::string good = dir.file("good.nc");
  writeSample(good, GetParam().mode);
  const std::vector<char> bytes = readBytes(good);
  ASSERT_GT(bytes.size(), 64u);
  EXPECT_EQ(openAndWalk(good, "intact"), Outcome::Returned);

  std::vector<std::pair<std::string, std::vector<char>>> variants;
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{3}, std::size_t{4}, std::size_t{8}, std::size_t{32},
        bytes.size() / 4, bytes.size() / 2, bytes.size() - 1}) {
    variants.emplace_back(
        "truncated to " + std::to_string(size),
        std::vector<char>(bytes.begin(), bytes.begin() + static_cast<long>(size)));
  }
  // Deterministic flips: every header byte of the first 96 in turn, then spread over the
  // rest of the file.
  for (std::size_t i = 0; i < 160; ++i) {
    const std::size_t offset = i < 96 ? i : (i * 7919) % bytes.size();
    std::vector<char> flipped = bytes;
    flipped[offset] = static_cast<char>(flipped[offset] ^ (1 << (i % 8)));
    variants.emplace_back("bit " + std::to_string(i % 8) + " of byte " + std::to_string(offset),
                          std::move(flipped));
  }
  std::size_t opened = 0;
  for (const auto& [label, content] : variants) {
    const std::string path = dir.file("variant.nc");
    writeBytes(path, content);
    if (openAndWalk(path, label) == Outcome::Returned) ++opened;
    expectLibraryStillWorks(dir, label);
  }
  // Most flips land in data or padding and leave a readable file; none of the truncations
  // below half the file does.
  RecordProperty("variants", static_cast<int>(variants.size()));
  RecordProperty("opened", static_cast<int>(opened));
  EXPECT_GT(opened, 0u);
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, HostileFiles, testing::ValuesIn(kFormats),
                         [](const testing::TestParamInfo<Format>& p) { return p.param.name; });

TEST(HostileNames, DirectoryMissingFileAndClosedPort) {
  const test::ScratchDir dir;
  std::filesystem::create_directories(dir.file("adir"));
  EXPECT_EQ(openAndWalk(dir.file("adir"), "directory"), Outcome::MessageId);
  expectLibraryStillWorks(dir, "directory");
  EXPECT_EQ(openAndWalk(dir.file("absent.nc"), "missing file"), Outcome::MessageId);
  expectLibraryStillWorks(dir, "missing file");

  // A port we held a moment ago and released: nothing listens there.
  const int fd = socket(AF_INET, SOCK_STREAM, 0);
  ASSERT_GE(fd, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
  ASSERT_EQ(getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len), 0);
  close(fd);
  const std::string url = "http://127.0.0.1:" + std::to_string(ntohs(addr.sin_port)) + "/x.nc";
  EXPECT_EQ(openAndWalk(url, "closed port"), Outcome::MessageId);
  expectLibraryStillWorks(dir, "closed port");
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
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(10);
    if (access(path.c_str(), R_OK) == 0) _exit(11);  // still readable: nothing to test
    try {
      call("open", {path, "nowrite"});
      _exit(1);
    } catch (const foundation::core::except::IMsgIDException& e) {
      _exit(e.get_error_id() == "QUARNA:imagesci:netcdf:libraryFailure" ? 0 : 2);
    } catch (...) {
      _exit(3);
    }
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 10 || WEXITSTATUS(status) == 11) {
    GTEST_SKIP() << "could not make the file unreadable for this process";
  }
  EXPECT_EQ(WEXITSTATUS(status), 0) << "1: opened, 2: another error, 3: not a message-ID error";
  expectLibraryStillWorks(dir, "unreadable file");
}

}  // namespace
