// Remote and Zarr files beyond what the Octave tests reach: the filter of DAP4 debug lines
// on standard error, file URLs and the codecs a Zarr array names.
#include "ops/remote/remote_files.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <fstream>

#include "ops/remote/zarr_codecs.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

// Writes text to standard error both ways netCDF-C does, stdio and the descriptor itself,
// and returns what reached it.
std::string throughStderr(const std::string& text, bool filtered) {
  const int capture = memfd_create("test-stderr", 0), saved = dup(STDERR_FILENO);
  std::fflush(stderr);
  dup2(capture, STDERR_FILENO);
  {
    const Dap4DebugFilter filter(filtered);
    std::fputs(text.substr(0, text.size() / 2).c_str(), stderr);
    std::fflush(stderr);
    const std::string rest = text.substr(text.size() / 2);
    EXPECT_EQ(write(STDERR_FILENO, rest.data(), rest.size()), ssize_t(rest.size()));
  }
  dup2(saved, STDERR_FILENO);
  std::string out(static_cast<std::size_t>(lseek(capture, 0, SEEK_END)), '\0');
  EXPECT_EQ(pread(capture, out.data(), out.size(), 0), ssize_t(out.size()));
  close(capture), close(saved);
  return out;
}

TEST(Dap4DebugFilter, DropsOnlyTheDebugLinesAndKeepsTheRestInOrder) {
  EXPECT_EQ(
      throughStderr("checksumhack=0\nbefore\nchecksumhack=17\nchecksumhack=1\nchecksumhack=x\n"
                    "text checksumhack=0\nchecksumhack=\nchecksumhack=3 more\nlast, unterminated",
                    true),
      "before\nchecksumhack=x\ntext checksumhack=0\nchecksumhack=\nchecksumhack=3 more\n"
      "last, unterminated");
  EXPECT_EQ(throughStderr("checksumhack=0\n", false), "checksumhack=0\n");
}

TEST(RemoteFiles, FileUrlPath) {
  for (const auto& [url, path] : std::vector<std::pair<std::string, std::string>>{
           {"file:///a/b.zarr#mode=zarr,file", "/a/b.zarr"},
           {"file:///a%20b/x%2Ezarr?k=v#mode=nczarr,file", "/a b/x.zarr"},
           {"file:///bad%zz/end%2", "/bad%zz/end%2"},
           {"http://host/x.zarr#mode=zarr,s3", ""},
           {"/local/x.zarr#mode=zarr,file", ""}})
    EXPECT_EQ(RemoteFiles::fileUrlPath(url), path) << url;
}

TEST(ZarrCodecs, CodecsNamedByArrayMetadata) {
  const ScratchDir dir;
  using Names = std::vector<std::string>;
  const std::pair<std::string, std::optional<Names>> cases[] = {
      {R"({"compressor": null, "filters": null, "zarr_format": 2})", Names{}},
      {R"({"compressor": {"id": "zlib", "level": 1},
           "filters": [{"id": "delta", "dtype": "<i4"}, {"id": "fixedscaleoffset"}]})",
       Names{"delta", "fixedscaleoffset", "zlib"}},
      {R"({"compressor": )", std::nullopt}};
  for (const auto& [json, codecs] : cases) {
    std::ofstream(dir.file(".zarray")) << json;
    EXPECT_EQ(ZarrCodecs::codecsOf(dir.file(".zarray")), codecs) << json;
  }
  EXPECT_EQ(ZarrCodecs::codecsOf(dir.file("missing")), std::nullopt);
}

}  // namespace
