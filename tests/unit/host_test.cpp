// The substitute host's reference counts: arrays and string elements live as long as the
// last reference, and no longer.
#include <gtest/gtest.h>

#include "host_probe.hpp"
#include "qvhost/qvhost.hpp"

namespace {

TEST(HostReferences, SharedArraySurvivesOneRelease) {
  int destroyed = 0;
  qvArrayPtr first = probeArray(&destroyed);
  qvArrayPtr second = qvShareArray(first.get());
  EXPECT_EQ(first.get(), second.get());
  EXPECT_EQ(first->refCount.load(), 2);
  first.reset();
  EXPECT_EQ(destroyed, 0);
  second.reset();
  EXPECT_EQ(destroyed, 1);
  qvArrayDeleter()(nullptr);  // releasing nothing is allowed
  EXPECT_FALSE(qvShareArray(nullptr));
  qvArrayPtr a = probeArray(&destroyed);
  a->refCount.fetch_add(1);
  matrix::destroyArray(a.release());  // destroys whatever other references remain
  EXPECT_EQ(destroyed, 2);
}

TEST(HostReferences, StringElementsAreCountedAndReplacingReleases) {
  auto a = createStringArray(u"shared");
  auto b = createStringArray(std::uint64_t{1}, std::uint64_t{2});
  qvSharedText* text = getString(a.get()).elements[0];
  ASSERT_EQ(text->useCount(), 1);
  shareStringElement(b.get(), 0, a.get(), 0);
  shareStringElement(b.get(), 1, a.get(), 0);
  EXPECT_EQ(text->useCount(), 3);
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

TEST(HostReferences, CellsReleaseTheirElements) {
  int destroyed = 0;
  const std::uint64_t dims[] = {2, 1};
  qvArrayPtr outer = matrix::detail::do_create_cell(dims);
  qvArrayPtr inner = matrix::detail::do_create_cell(dims);
  qvSetCell(inner.get(), 0, probeArray(&destroyed));
  qvSetCell(outer.get(), 0, std::move(inner));
  qvSetCell(outer.get(), 1, probeArray(&destroyed));
  qvReplaceCell(outer.get(), 1, probeArray(&destroyed));
  EXPECT_EQ(destroyed, 1);
  outer.reset();
  EXPECT_EQ(destroyed, 3);
}

}  // namespace
