// make_trace_seeds FOLDER: writes a small trace of each version, for trace_fuzz to begin with.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/small_traces.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return EXIT_FAILURE;
  }
  const std::filesystem::path folder(argv[1]);
  std::filesystem::create_directories(folder);
  int version = 1;
  for (const std::string& trace : quern::test::small_traces()) {
    std::ofstream file(folder / ("version_" + std::to_string(version++) + ".trace"), std::ios::binary);
    file << trace;
    if (!file.flush()) return EXIT_FAILURE;
  }
}
