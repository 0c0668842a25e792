// Corrupt and hostile files: truncated, bit-flipped and empty files of each format, and an
// unreadable file (directories, missing files and dead URLs are in the fuzz corpus). Opening each,
// and reading everything in it when the open succeeds, must end normally or with a message-ID
// error, and the library must work normally afterwards.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "test_support.hpp"

namespace {

using namespace test;

// A file of an ncgen kind (nc3, nc6, nc4) with dimensions (one unlimited), variables of
// several types, data and attributes; netCDF-4 adds strings and a variable-length type.
void writeSample(const std::string& path, const std::string& kind) {
  const bool nc4 = kind == "nc4";
  std::ofstream(path + ".cdl")
      << "netcdf s { " << (nc4 ? "types: int(*) vi; " : "")
      << "dimensions: x = 5; t = UNLIMITED; variables: double d(x); d:scale = 0.5, 2.; "
      << "char c(x); short r(t, x); :title = \"sample\"; " << (nc4 ? "string s(x); vi v(x); " : "")
      << "data: d = 1, 2, 3, 4, 5; c = \"hello\"; r = 1, 2, 3, 4, 5, 6, 7, 8, 9, 10; "
      << (nc4 ? "s = \"a\", \"bb\", \"\", \"dddd\", \"e\"; v = {1}, {2, 3}, {}, {1}, {2, 3}; " : "")
      << "}";
  ASSERT_EQ(0, std::system(("ncgen -k " + kind + " -o " + path + " " + path + ".cdl").c_str()));
}

// Opens path and, when that works, reads every variable of under 2^20 elements in its own type (a
// corrupt header may legitimately ask for gigabytes) and global attribute, a message-ID error
// ending any step; then a new file must create, define and close normally. Whether it opened.
bool survives(const std::string& path, const ScratchDir& dir) {
  Outputs id, info, var, dim;
  const auto ok = [](Outputs& out, const std::string& op, std::initializer_list<Arg> in) {
    return !catchMsgId([&] { out = call(op, in); });
  };
  const bool opened = ok(id, "open", {path, "nowrite"});
  const bool known = opened && ok(info, "inq", {id[0]});
  for (int varid = 0; known && varid < number(info[1]); ++varid) {
    if (!ok(var, "inqVar", {id[0], varid})) continue;
    double elements = 1;
    for (const double d : valuesOf(var[2]))
      elements *= ok(dim, "inqDim", {id[0], d}) ? number(dim[1]) : 1;
    if (elements <= 1 << 20) ok(dim, "getVar", {id[0], varid});
  }
  for (int attnum = 0; known && attnum < number(info[2]); ++attnum)
    if (ok(var, "inqAttName", {id[0], NC_GLOBAL, attnum}))
      ok(dim, "getAttText", {id[0], NC_GLOBAL, var[0]});
  if (opened) ok(dim, "close", {id[0]});
  const qvArrayPtr nc = call1("create", {dir.file("after.nc"), "clobber"});
  EXPECT_EQ(3, number(call("inqDim", {nc, call1("defDim", {nc, "n", 3})})[1])) << path;
  call("close", {nc});
  return opened;
}

class HostileFiles : public testing::TestWithParam<std::string> {};

TEST_P(HostileFiles, TruncatedBitFlippedAndEmpty) {
  const ScratchDir dir;
  const std::string good = dir.file("good.nc"), path = dir.file("variant.nc");
  writeSample(good, GetParam());
  std::ifstream in(good, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  ASSERT_GT(bytes.size(), 64u);
  EXPECT_TRUE(survives(good, dir));
  const auto variant = [&](const std::vector<char>& content) {
    std::ofstream(path, std::ios::binary).write(content.data(), std::streamsize(content.size()));
    return survives(path, dir);
  };
  for (const std::size_t size : {0ul, 3ul, 4ul, 8ul, 32ul, bytes.size() / 2, bytes.size() - 1})
    variant({bytes.begin(), bytes.begin() + long(size)});
  // Deterministic flips: every header byte of the first 96 in turn, then spread over the
  // rest of the file. Most land in data or padding and leave a readable file.
  int opened = 0;
  for (std::size_t i = 0; i < 160; ++i) {
    const std::size_t offset = i < 96 ? i : (i * 7919) % bytes.size();
    std::vector<char> flipped = bytes;
    flipped[offset] = static_cast<char>(flipped[offset] ^ (1 << (i % 8)));
    opened += variant(flipped);
  }
  EXPECT_GT(opened, 0);
}

INSTANTIATE_TEST_SUITE_P(EveryFormat, HostileFiles, testing::Values("nc3", "nc6", "nc4"),
                         [](const auto& p) { return std::string(p.param); });

// Permission bits do not stop root, which the tests usually run as: the open then runs in
// a child that has given up root for the unprivileged "nobody" user.
TEST(HostileNames, FileWithoutReadPermission) {
  const ScratchDir dir;
  const std::string path = dir.file("locked.nc");
  writeSample(path, "nc3");
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  ASSERT_EQ(chmod(dir.path.c_str(), 0755), 0);
  const pid_t child = fork();
  if (child == 0) {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(10);
    if (access(path.c_str(), R_OK) == 0) _exit(11);  // still readable: nothing to test
    const auto caught = catchMsgId([&] { call("open", {path, "nowrite"}); });
    _exit(caught && caught->id == "libraryFailure" ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) >= 10) GTEST_SKIP() << "could not make the file unreadable here";
  EXPECT_EQ(WEXITSTATUS(status), 0) << "opened, or another error";
}

}  // namespace
