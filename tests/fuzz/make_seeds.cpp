// Writes the seed corpus: one program per file, together reaching every operation of the
// table, mostly with calls that succeed on the fixture files, and a few that fail in every
// way the argument conversions know. Usage: make_seeds <directory>.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "seed_builder.hpp"
#include "seed_programs.hpp"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <corpus directory>\n", argv[0]);
    return 2;
  }
  const std::filesystem::path dir = argv[1];
  std::filesystem::create_directories(dir);
  std::size_t total = 0;
  const std::vector<int> counts = fuzz::rowInputCounts();
  for (const auto& [name, program] : seeds::programs()) {
    const std::vector<std::uint8_t> bytes = fuzz::encode(program, counts);
    std::ofstream out(dir / ("seed-" + name), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    total += bytes.size();
  }
  std::printf("%zu seeds, %zu bytes\n", seeds::programs().size(), total);
  return 0;
}
