// Runs inputs through the fuzz harness once each, without libFuzzer: the committed corpus
// as an ordinary test of every build, and single inputs when chasing a finding.
// Usage: fuzz_corpus_replay <file or directory>...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      files.emplace_back(argv[i]);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) files.push_back(entry);
  }
  std::sort(files.begin(), files.end());
  LLVMFuzzerInitialize(&argc, &argv);
  const bool verbose = std::getenv("NETCDFLIB_FUZZ_TRACE") != nullptr;
  for (const auto& file : files) {
    if (verbose) std::fprintf(stderr, "replaying %s\n", file.c_str());
    std::ifstream in(file, std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%zu inputs replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
