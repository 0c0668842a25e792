#include "ops/remote/remote_files.hpp"

#include <gtest/gtest.h>
#include <netcdf.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "ops/remote/zarr_codecs.hpp"
#include "test_support.hpp"

namespace {

// Standard error sent to a buffer for the test's lifetime, as a host would see it.
class CapturedStderr {
 public:
  CapturedStderr() : capture_(memfd_create("test-stderr", 0)), saved_(dup(STDERR_FILENO)) {
    std::fflush(stderr);
    dup2(capture_, STDERR_FILENO);
  }
  ~CapturedStderr() { restore(); }
  std::string text() {
    restore();
    std::string out(static_cast<std::size_t>(lseek(capture_, 0, SEEK_END)), '\0');
    EXPECT_EQ(pread(capture_, out.data(), out.size(), 0), static_cast<ssize_t>(out.size()));
    return out;
  }

 private:
  void restore() {
    if (saved_ < 0) return;
    std::fflush(stderr);
    dup2(saved_, STDERR_FILENO);
    close(saved_);
    saved_ = -1;
  }
  int capture_, saved_;
};

void emit(const std::string& text) {
  // Both ways netCDF-C writes: stdio and the descriptor itself.
  std::fputs(text.substr(0, text.size() / 2).c_str(), stderr);
  std::fflush(stderr);
  ASSERT_EQ(write(STDERR_FILENO, text.data() + text.size() / 2, text.size() - text.size() / 2),
            static_cast<ssize_t>(text.size() - text.size() / 2));
}

TEST(Dap4DebugFilter, DropsOnlyTheDebugLinesAndKeepsTheRestInOrder) {
  const std::string mixed =
      "checksumhack=0\nbefore\nchecksumhack=17\nchecksumhack=1\nchecksumhack=x\n"
      "text checksumhack=0\nchecksumhack=\nchecksumhack=3 more\nlast, unterminated";
  const std::string kept =
      "before\nchecksumhack=x\ntext checksumhack=0\nchecksumhack=\nchecksumhack=3 more\n"
      "last, unterminated";
  CapturedStderr captured;
  {
    const Dap4DebugFilter filter(true);
    emit(mixed);
  }
  emit("|after\n");
  EXPECT_EQ(captured.text(), kept + "|after\n");
}

TEST(Dap4DebugFilter, InactiveFilterPassesEverythingAtOnce) {
  CapturedStderr captured;
  const Dap4DebugFilter filter(false);
  emit("checksumhack=0\n");
  EXPECT_EQ(captured.text(), "checksumhack=0\n");
}

TEST(RemoteFiles, FileUrlPath) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"file:///a/b.zarr#mode=zarr,file", "/a/b.zarr"},
      {"file:///a%20b/x%2Ezarr?k=v#mode=nczarr,file", "/a b/x.zarr"},
      {"file:///bad%zz/end%2", "/bad%zz/end%2"},
      {"file:///plain", "/plain"},
      {"http://host/x.zarr#mode=zarr,s3", ""},
      {"/local/x.zarr#mode=zarr,file", ""},
  };
  for (const auto& [url, path] : cases) EXPECT_EQ(RemoteFiles::fileUrlPath(url), path) << url;
}

TEST(ZarrCodecs, CodecsNamedByArrayMetadata) {
  const test::ScratchDir dir;
  using Codecs = std::optional<std::vector<std::string>>;
  const std::vector<std::pair<std::string, Codecs>> cases = {
      {R"({"compressor": null, "filters": null, "zarr_format": 2})",
       Codecs{std::vector<std::string>{}}},
      {R"({"zarr_format": 2})", Codecs{std::vector<std::string>{}}},
      {R"({"compressor": {"id": "blosc", "cname": "lz4", "clevel": 5}, "filters": null})",
       Codecs{std::vector<std::string>{"blosc"}}},
      {R"({"compressor": {"id": "zlib", "level": 1},
           "filters": [{"id": "delta", "dtype": "<i4"}, {"id": "fixedscaleoffset"}]})",
       Codecs{std::vector<std::string>{"delta", "fixedscaleoffset", "zlib"}}},
      {R"({"compressor": {"level": 1}, "filters": []})", Codecs{std::vector<std::string>{"?"}}},
      {R"({"compressor": )", std::nullopt},
  };
  for (std::size_t k = 0; k < cases.size(); ++k) {
    const std::string file = dir.file("zarray" + std::to_string(k));
    std::ofstream(file) << cases[k].first;
    EXPECT_EQ(ZarrCodecs::codecsOf(file), cases[k].second) << cases[k].first;
  }
  EXPECT_EQ(ZarrCodecs::codecsOf(dir.file("missing")), std::nullopt);
}

TEST(ZarrCodecs, WritingIsRefusedOnlyForStoresNetcdfDidNotWrite) {
  const test::ScratchDir dir;
  const auto store = [&](const std::string& name, const char* attributes) {
    std::filesystem::create_directories(dir.file(name));
    std::ofstream(dir.file(name + "/.zgroup")) << R"({"zarr_format": 2})";
    if (attributes != nullptr) std::ofstream(dir.file(name + "/.zattrs")) << attributes;
    return "file://" + dir.file(name) + "#mode=zarr,file";
  };
  const std::string foreign = store("foreign.zarr", R"({"title": "x"})");
  const std::string bare = store("bare.zarr", nullptr);
  const std::string ours = store("ours.zarr", R"({"_NCProperties": "version=2"})");
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite(foreign, NC_WRITE), NC_EPERM);
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite(bare, NC_WRITE | NC_SHARE), NC_EPERM);
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite(ours, NC_WRITE), NC_NOERR);
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite(foreign, NC_NOWRITE), NC_NOERR);
  // Not a Zarr URL, or no store there yet (netCDF-C reports that itself).
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite(dir.file("foreign.zarr"), NC_WRITE), NC_NOERR);
  EXPECT_EQ(ZarrCodecs::statusOfForeignWrite("file://" + dir.file("none.zarr") + "#mode=zarr,file",
                                             NC_WRITE),
            NC_NOERR);
}

}  // namespace
