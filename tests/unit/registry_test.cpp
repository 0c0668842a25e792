#include "gateway/registry.hpp"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netcdf.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "test_support.hpp"

// Records the ids the library closes, in order, while a test asks for it; every call goes
// on to netCDF-C's own nc_close. Defined in the test program, so it stands in for the
// library's symbol in everything linked into it.
namespace {
std::vector<int>* closeLog = nullptr;
}

extern "C" int nc_close(int ncid) {
  using CloseFn = int (*)(int);
  static const auto realClose = reinterpret_cast<CloseFn>(dlsym(RTLD_NEXT, "nc_close"));
  if (closeLog != nullptr) closeLog->push_back(ncid);
  return realClose(ncid);
}

namespace {

// The registry is process-wide: each test starts from an empty one and leaves it empty.
class Registry : public testing::Test {
 protected:
  void SetUp() override { clear(); }
  void TearDown() override {
    clear();
    qvSetWarningHandler(previousHandler_);
  }
  static void clear() {
    for (const int id : OpenFileRegistry::ids()) OpenFileRegistry::remove(id);
  }
  void captureWarnings() {
    previousHandler_ =
        qvSetWarningHandler([this](const resource_core::BaseMsgID& id, const std::u16string&) {
          warnings_.push_back(id);
        });
  }

  std::vector<resource_core::BaseMsgID> warnings_;
  qvWarningHandler previousHandler_;
};

TEST_F(Registry, AddRemoveAscending) {
  for (const int id : {7, 3, 5, 3}) OpenFileRegistry::add(id);
  EXPECT_EQ(OpenFileRegistry::ids(), (std::vector<int>{3, 5, 7}));
  EXPECT_TRUE(OpenFileRegistry::contains(5));
  OpenFileRegistry::remove(5);
  OpenFileRegistry::remove(42);
  EXPECT_FALSE(OpenFileRegistry::contains(5));
  EXPECT_EQ(OpenFileRegistry::ids(), (std::vector<int>{3, 7}));
}

TEST_F(Registry, TerminateWarnsOnceAndClosesAscending) {
  const test::ScratchDir dir;
  std::vector<int> ncids;
  for (const char* name : {"a.nc", "b.nc", "c.nc"}) {
    int ncid = -1;
    ASSERT_EQ(nc_create(dir.file(name).c_str(), NC_CLOBBER, &ncid), NC_NOERR);
    ncids.push_back(ncid);
  }
  // An id netCDF-C does not know: its failure must not stop the others closing.
  constexpr int kUnknownId = 1;
  {
    int ndims = 0;
    ASSERT_EQ(nc_inq(kUnknownId, &ndims, nullptr, nullptr, nullptr), NC_EBADID);
  }
  for (const int id : {ncids[2], kUnknownId, ncids[0], ncids[1]}) OpenFileRegistry::add(id);

  captureWarnings();
  std::vector<int> closed;
  closeLog = &closed;
  QNTerminate();
  closeLog = nullptr;

  ASSERT_EQ(warnings_.size(), 1u);
  EXPECT_EQ(warnings_[0].fullIdentifier(), "QUARNA:imagesci:netcdf:closingFileHandle");
  EXPECT_TRUE(warnings_[0].arguments().empty());

  std::vector<int> expected{kUnknownId, ncids[0], ncids[1], ncids[2]};
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(closed, expected);
  for (const int ncid : ncids) {
    int ndims = 0;
    EXPECT_EQ(nc_inq(ncid, &ndims, nullptr, nullptr, nullptr), NC_EBADID) << ncid;
  }
  // Closing does not forget the ids.
  EXPECT_EQ(OpenFileRegistry::ids(), expected);
}

TEST_F(Registry, TerminateSurvivesAThrowingWarningHandler) {
  const test::ScratchDir dir;
  int ncid = -1;
  ASSERT_EQ(nc_create(dir.file("a.nc").c_str(), NC_CLOBBER, &ncid), NC_NOERR);
  OpenFileRegistry::add(ncid);
  previousHandler_ =
      qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {
        throw std::runtime_error("no");
      });
  EXPECT_NO_THROW(QNTerminate());
  int ndims = 0;
  EXPECT_EQ(nc_inq(ncid, &ndims, nullptr, nullptr, nullptr), NC_EBADID);
}

}  // namespace
