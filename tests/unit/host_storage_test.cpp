// Storage lent by an embedding program: wrapped blocks and installed providers.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "host_probe.hpp"
#include "qvhost/qvhost.hpp"

namespace {

struct Request {
  qvClassID cls;
  std::vector<std::uint64_t> dims;
  std::size_t bytes;
  bool zeroFilled;
};

class RecordingProvider : public qvStorageProvider {
 public:
  explicit RecordingProvider(bool answer) : answer_(answer) {}
  std::unique_ptr<qvDataBlock> allocate(qvClassID cls, matrix::DimSpan dims, std::size_t bytes,
                                        bool zeroFilled) override {
    requests.push_back({cls, {dims.begin(), dims.end()}, bytes, zeroFilled});
    if (!answer_) return nullptr;
    auto block = std::make_unique<ProbeBlock>(bytes, &destroyed);
    if (zeroFilled) std::memset(block->data(), 0, bytes);
    lent.push_back(block->data());
    return block;
  }
  std::vector<Request> requests;
  std::vector<void*> lent;
  int destroyed = 0;

 private:
  bool answer_;
};

TEST(HostStorage, ProviderIsAskedAndItsBlockUsed) {
  RecordingProvider provider(true);
  {
    qvScopedStorageProvider scope(provider);
    const std::uint64_t dims[] = {3, 4, 2};
    auto a = matrix::detail::do_create_uninitnumeric(dims, qvINT16_CLASS, qvREAL);
    auto z = matrix::detail::do_create_numeric(matrix::DimSpan(), qvDOUBLE_CLASS, qvREAL);
    auto text = matrix::create("hi", 2);
    ASSERT_EQ(provider.requests.size(), 3u);
    EXPECT_EQ(provider.requests[0].cls, qvINT16_CLASS);
    EXPECT_EQ(provider.requests[0].dims, (std::vector<std::uint64_t>{3, 4, 2}));
    EXPECT_EQ(provider.requests[0].bytes, 48u);
    EXPECT_FALSE(provider.requests[0].zeroFilled);
    EXPECT_TRUE(provider.requests[1].zeroFilled);
    EXPECT_EQ(provider.requests[2].dims, (std::vector<std::uint64_t>{1, 2}));
    EXPECT_EQ(qvGetData(a.get()), provider.lent[0]);
    EXPECT_EQ(qvGetDataBlock(a.get())->data(), provider.lent[0]);
    EXPECT_EQ(qvGetData(text.get()), provider.lent[2]);
    // Cells and strings hold host pointers, never lent storage.
    auto cell = matrix::detail::do_create_cell(dims);
    auto str = createStringArray(u"s");
    EXPECT_EQ(provider.requests.size(), 3u);
    a.reset();
    EXPECT_EQ(provider.destroyed, 1);
  }
  EXPECT_EQ(provider.destroyed, 3);
  auto after = matrix::detail::do_create_numeric(matrix::DimSpan(), qvDOUBLE_CLASS, qvREAL);
  EXPECT_EQ(provider.requests.size(), 3u);  // uninstalled with its scope
}

TEST(HostStorage, ProvidersNestAndNullFallsBackToTheHost) {
  RecordingProvider outer(true);
  RecordingProvider inner(false);
  qvScopedStorageProvider outerScope(outer);
  {
    qvScopedStorageProvider innerScope(inner);
    auto a = matrix::detail::do_create_numeric(matrix::DimSpan(), qvUINT8_CLASS, qvREAL);
    EXPECT_EQ(inner.requests.size(), 1u);
    EXPECT_TRUE(outer.requests.empty());
    ASSERT_NE(qvGetData(a.get()), nullptr);
    EXPECT_EQ(*static_cast<std::uint8_t*>(qvGetData(a.get())), 0);
  }
  auto b = matrix::detail::do_create_numeric(matrix::DimSpan(), qvUINT8_CLASS, qvREAL);
  EXPECT_EQ(outer.requests.size(), 1u);
  EXPECT_EQ(qvGetData(b.get()), outer.lent[0]);
}

TEST(HostStorage, WrapExternalKeepsNoCopy) {
  int destroyed = 0;
  auto block = std::make_unique<ProbeBlock>(6 * sizeof(float), &destroyed);
  void* memory = block->data();
  const std::uint64_t dims[] = {2, 3};
  qvArrayPtr a = qvWrapExternal(qvSINGLE_CLASS, dims, std::move(block));
  EXPECT_EQ(qvGetData(a.get()), memory);
  static_cast<float*>(memory)[5] = 2.5f;
  EXPECT_EQ(static_cast<float*>(qvGetData(a.get()))[5], 2.5f);
  EXPECT_EQ(qvGetNumberOfElements(a.get()), 6u);
  qvArrayPtr shared = qvShareArray(a.get());
  a.reset();
  EXPECT_EQ(destroyed, 0);
  shared.reset();
  EXPECT_EQ(destroyed, 1);
}

TEST(HostStorage, WrapExternalRefusesClassesWithTablesAndTakesTheBlock) {
  int destroyed = 0;
  EXPECT_THROW(
      qvWrapExternal(qvCELL_CLASS, matrix::DimSpan(), std::make_unique<ProbeBlock>(8, &destroyed)),
      std::invalid_argument);
  EXPECT_EQ(destroyed, 1);
  EXPECT_THROW(qvWrapExternal(qvDOUBLE_CLASS, matrix::DimSpan(), nullptr), std::invalid_argument);
}

}  // namespace
