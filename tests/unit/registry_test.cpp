// The registry of open files: what operations add and remove, unload closing everything
// even when closing fails or the host's warning handler throws, and the ids of a file whose
// close failed.
#include "gateway/registry.hpp"

#include <dlfcn.h>

#include "test_support.hpp"

// Records the ids the library closes, in order, while a test asks for it; every call goes
// on to netCDF-C's own nc_close. Defined in the test program, so it stands in for the
// library's symbol in everything linked into it.
namespace {
std::vector<int>* closeLog = nullptr;
}

extern "C" int nc_close(int ncid) {
  static const auto realClose = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "nc_close"));
  if (closeLog != nullptr) closeLog->push_back(ncid);
  return realClose(ncid);
}

namespace {

using namespace test;

int ncidOf(const qvArrayPtr& a) { return static_cast<int>(number(a)); }
bool isOpen(int ncid) {
  int format = 0;
  return nc_inq_format(ncid, &format) == NC_NOERR;
}

// The registry is process-wide: each test starts from an empty one and leaves it empty.
// Warnings are recorded.
class Registry : public testing::Test {
 protected:
  void SetUp() override { clear(); }
  void TearDown() override { clear(), qvSetWarningHandler(previous_); }
  static void clear() {
    for (const int id : OpenFileRegistry::ids()) OpenFileRegistry::remove(id);
  }
  ScratchDir dir_;
  std::vector<std::string> warnings_;
  qvWarningHandler previous_ =
      qvSetWarningHandler([this](const resource_core::BaseMsgID& id, const std::u16string&) {
        warnings_.push_back(id.fullIdentifier());
      });
};

TEST_F(Registry, FollowsAddRemoveOpenCloseAbortAndIgnoresPCreate) {
  for (const int id : {7, 3, 5, 3}) OpenFileRegistry::add(id);
  OpenFileRegistry::remove(5);
  EXPECT_EQ(OpenFileRegistry::ids(), (std::vector<int>{3, 7}));
  clear();
  const std::string path = dir_.file("r.nc");
  call("close", {call1("create", {path, "clobber"})});
  const int first = ncidOf(call1("open", {path, "nowrite"}));
  const int second = ncidOf(call("pOpen", {path, "nowrite", 8192})[1]);
  EXPECT_EQ(OpenFileRegistry::ids().size(), 2u);
  // A close that fails still forgets the id; an abort that fails keeps it.
  ASSERT_EQ(NC_NOERR, nc_close(first));
  EXPECT_EQ("NC_EBADID", statusOf([&] { call("close", {first}); }));
  ASSERT_EQ(NC_NOERR, nc_close(second));
  EXPECT_MSGID(call("abort", {second}), "libraryFailure", "abort", "NC_EBADID", "Not a valid ID");
  EXPECT_EQ(OpenFileRegistry::ids(), std::vector<int>{second});
  clear();
  const int created = ncidOf(call("pCreate", {dir_.file("p.nc"), "clobber", 0, 0})[1]);
  EXPECT_FALSE(OpenFileRegistry::contains(created));
  EXPECT_EQ(NC_NOERR, nc_close(created));
}

// Unload warns once and closes every id in ascending order: an id netCDF-C does not know
// does not stop the others, and a file netCDF-C refuses to close (a netCDF-4 file after
// an attribute of an invalid type) is aborted.
TEST_F(Registry, UnloadClosesEverythingAscending) {
  std::vector<int> ncids{1, ncidOf(call1("create", {dir_.file("a.nc"), "clobber"}))};
  const qvArrayPtr stuck = call1("create", {dir_.file("u.nc"), "netcdf4"});
  EXPECT_EQ("NC_EBADTYPID", statusOf([&] {
              call("putAttInt64", {stuck, NC_GLOBAL, "a", 74, scalar<std::int64_t>(-1)});
            }));
  ncids.push_back(ncidOf(stuck));
  ASSERT_FALSE(isOpen(1));
  OpenFileRegistry::add(1);
  std::vector<int> closed;
  closeLog = &closed;
  QNTerminate();
  closeLog = nullptr;
  EXPECT_EQ(warnings_, std::vector<std::string>{"QUARNA:imagesci:netcdf:closingFileHandle"});
  std::ranges::sort(ncids);
  EXPECT_EQ(closed, ncids);
  for (const int ncid : ncids) EXPECT_FALSE(isOpen(ncid)) << ncid;
  EXPECT_EQ(OpenFileRegistry::ids(), ncids);  // closing does not forget the ids

  // Nor does a warning handler that throws stop it.
  clear();
  const int ncid = ncidOf(call1("create", {dir_.file("a.nc"), "clobber"}));
  qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {
    throw std::runtime_error("no");
  });
  EXPECT_NO_THROW(QNTerminate());
  EXPECT_FALSE(isOpen(ncid));
}

// netCDF-C 4.9.0 keeps the id of a file whose close failed after freeing part of the file,
// and crashes on any later call with it or a group of it; each is refused as netCDF-C
// refuses a closed id. Here the close fails on two variables beyond the classic format's
// size limit.
TEST_F(Registry, IdsOfAFailedCloseAreRefusedEverywhere) {
  const qvArrayPtr big = call1("create", {dir_.file("big.nc"), "clobber"});
  const qvArrayPtr dim = call1("defDim", {big, "x", 1 << 30});
  call("defVar", {big, "a", NC_DOUBLE, dim});
  call("defVar", {big, "b", NC_DOUBLE, dim});
  EXPECT_MSGID(call("close", {big}), "formatConstraintsViolation");
  EXPECT_FALSE(OpenFileRegistry::contains(ncidOf(big)));
  const qvArrayPtr other = call1("create", {dir_.file("other.nc"), "netcdf4"});
  const auto refused = [&](const std::string& op, std::initializer_list<Arg> in) {
    EXPECT_MSGID(call(op, in), "libraryFailure", op, "NC_EBADID", "Not a valid ID");
  };
  for (const char* op : {"close", "abort", "sync", "redef", "endDef", "inq", "inqFormat"})
    refused(op, {big});
  refused("inqVarIDs", {number(big) + 1});
  refused("copyAtt", {other, NC_GLOBAL, "a", big, NC_GLOBAL});
  EXPECT_EQ(0, number(call1("inq", {other})));  // other files are untouched
  call("close", {other});
}

}  // namespace
