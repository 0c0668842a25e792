// String arrays: shared texts, missing versus empty elements.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "qvhost/qvhost.hpp"

namespace {

TEST(HostStrings, NewElementsAreEmptyTextsNotMissing) {
  const std::uint64_t dims[] = {2, 2, 2};
  auto a = createStringArray(3, dims);
  EXPECT_TRUE(isString(a.get()));
  const StringArrayView v = getString(a.get());
  ASSERT_EQ(v.count, 8u);
  for (std::size_t i = 0; i < v.count; ++i) {
    EXPECT_FALSE(v.isMissing(i));
    EXPECT_TRUE(v.at(i).empty());
  }
  auto scalar = createStringArray(u"Température");
  EXPECT_EQ(getString(scalar.get()).at(0), u"Température");
  EXPECT_EQ(getString(createStringArray(std::uint64_t{0}, std::uint64_t{4}).get()).count, 0u);
  EXPECT_EQ(getString(createStringArray(0, nullptr).get()).count, 1u);
}

TEST(HostStrings, MissingIsDistinctFromEmpty) {
  auto a = createStringArray(std::uint64_t{1}, std::uint64_t{2});
  setStringMissing(a.get(), 1);
  const StringArrayView v = getString(a.get());
  EXPECT_FALSE(v.isMissing(0));
  EXPECT_TRUE(v.isMissing(1));
  setStringElement(a.get(), 1, u"");
  EXPECT_FALSE(getString(a.get()).isMissing(1));
}

TEST(HostStrings, SharingCountsReferencesAndReplacingReleases) {
  auto a = createStringArray(u"shared");
  auto b = createStringArray(std::uint64_t{1}, std::uint64_t{2});
  qvSharedText* text = getString(a.get()).elements[0];
  ASSERT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 0, a.get(), 0);
  shareStringElement(b.get(), 1, a.get(), 0);
  EXPECT_EQ(text->useCount(), 3);
  EXPECT_EQ(getString(b.get()).elements[1], text);
  shareStringElement(b.get(), 1, b.get(), 1);  // sharing with itself keeps the count
  EXPECT_EQ(text->useCount(), 3);
  setStringElement(b.get(), 0, u"other");
  EXPECT_EQ(text->useCount(), 2);
  setStringMissing(b.get(), 1);
  EXPECT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 1, a.get(), 0);
  a.reset();  // the text lives on in b
  EXPECT_EQ(text->useCount(), 1);
  EXPECT_EQ(getString(b.get()).at(1), u"shared");
}

TEST(HostStrings, ConcurrentSharingKeepsExactCounts) {
  auto source = createStringArray(u"t");
  qvSharedText* text = getString(source.get()).elements[0];
  constexpr std::size_t kPerThread = 2000;
  std::vector<qvArrayPtr> arrays;
  for (int t = 0; t < 4; ++t) arrays.push_back(createStringArray(std::uint64_t{1}, kPerThread));
  std::vector<std::thread> threads;
  for (auto& arr : arrays) {
    threads.emplace_back([&source, a = arr.get()] {
      for (std::size_t i = 0; i < kPerThread; ++i) shareStringElement(a, i, source.get(), 0);
      for (std::size_t i = 0; i < kPerThread; i += 2) setStringMissing(a, i);
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(text->useCount(), 1 + 4 * static_cast<int>(kPerThread / 2));
}

TEST(HostStrings, NonStringArraysAreRefused) {
  auto chars = matrix::create("abc", 3);
  EXPECT_FALSE(isString(chars.get()));
  EXPECT_THROW(getString(chars.get()), std::invalid_argument);
  EXPECT_THROW(setStringElement(chars.get(), 0, u"x"), std::invalid_argument);
  auto a = createStringArray(u"x");
  EXPECT_THROW(setStringElement(a.get(), 1, u"y"), std::out_of_range);
}

}  // namespace
