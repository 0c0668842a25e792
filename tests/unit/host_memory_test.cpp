// Large data blocks ask the kernel for transparent huge pages, and zero-filled ones stay
// zero-filled.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "qvhost/qvhost.hpp"

namespace {

// Whether the mapping that holds address carries the huge-page advice (VmFlags "hg").
bool advisedForHugePages(const void* address) {
  std::ifstream smaps("/proc/self/smaps");
  const auto at = reinterpret_cast<std::uintptr_t>(address);
  bool inside = false;
  std::string line;
  while (std::getline(smaps, line)) {
    std::uintptr_t begin = 0, end = 0;
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " ", &begin, &end) == 2) {
      inside = at >= begin && at < end;
    } else if (inside && line.rfind("VmFlags:", 0) == 0) {
      return (line + " ").find(" hg ") != std::string::npos;
    }
  }
  return false;
}

bool kernelHasHugePages() {
  return std::filesystem::exists("/sys/kernel/mm/transparent_hugepage/enabled");
}

constexpr std::size_t kMiB = std::size_t{1} << 20;

TEST(HostMemory, AdviceCoversTheAlignedInteriorOfLargeBlocksOnly) {
  if (!kernelHasHugePages()) GTEST_SKIP() << "kernel without transparent huge pages";
  const std::size_t length = 16 * kMiB;
  void* region = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(region, MAP_FAILED);
  auto* base = static_cast<char*>(region);
  qvAdviseHugePages(base, 3 * kMiB);  // below the size that gets advice
  EXPECT_FALSE(advisedForHugePages(base + kMiB));
  // An unaligned block: its head up to the first 2 MiB boundary stays as it is.
  qvAdviseHugePages(base + 4096, 12 * kMiB);
  EXPECT_FALSE(advisedForHugePages(base));
  EXPECT_TRUE(advisedForHugePages(base + 6 * kMiB));
  EXPECT_FALSE(advisedForHugePages(base + 15 * kMiB));
  qvAdviseHugePages(nullptr, length);  // nothing to advise: no effect, no failure
  munmap(region, length);
}

TEST(HostMemory, LargeArraysAreAdvisedAndZeroFilledOnesStayZero) {
  if (!kernelHasHugePages()) GTEST_SKIP() << "kernel without transparent huge pages";
  const std::uint64_t dims[] = {1024, 1024};  // 8 MiB of doubles
  const qvArrayPtr filled = matrix::detail::do_create_numeric(dims, qvDOUBLE_CLASS, qvCOMPLEX);
  const qvArrayPtr fresh = matrix::detail::do_create_uninitnumeric(dims, qvDOUBLE_CLASS, qvREAL);
  const auto* re = static_cast<const double*>(qvGetData(filled.get()));
  const auto* im = static_cast<const double*>(qvGetImagData(filled.get()));
  const std::size_t n = qvGetNumberOfElements(filled.get());
  EXPECT_TRUE(std::all_of(re, re + n, [](double v) { return v == 0; }));
  EXPECT_TRUE(std::all_of(im, im + n, [](double v) { return v == 0; }));
  EXPECT_TRUE(advisedForHugePages(re + n / 2));
  EXPECT_TRUE(advisedForHugePages(im + n / 2));
  EXPECT_TRUE(advisedForHugePages(static_cast<const double*>(qvGetData(fresh.get())) + n / 2));

  auto* block = static_cast<unsigned char*>(qvCalloc(8 * kMiB, 1));
  EXPECT_TRUE(std::all_of(block, block + 8 * kMiB, [](unsigned char b) { return b == 0; }));
  EXPECT_TRUE(advisedForHugePages(block + 4 * kMiB));
  qvFree(block);
}

}  // namespace
