// A main for fuzz targets where libFuzzer is not there: the same pseudo-random inputs in every run.
//   TARGET [COUNT [FOLDER]]   damaged copies of the files in the folder, or random bytes if there is none
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using input = std::vector<std::uint8_t>;

std::vector<input> files_of(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<input> files;
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    files.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return files;
}

// Some bytes are others, most of them 0 or all ones, and one in four inputs ends early.
input damaged(input bytes, std::mt19937& random) {
  constexpr unsigned most_changes = 8;
  for (unsigned change = random() % most_changes; change != 0; --change) {
    const std::uint8_t any[] = {0, 0xFF, static_cast<std::uint8_t>(random()), static_cast<std::uint8_t>(random())};
    bytes[random() % bytes.size()] = any[random() % std::size(any)];
  }
  if (random() % 4 == 0) bytes.resize(random() % bytes.size());
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  const unsigned long count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 20'000;
  const std::vector<input> files = argc > 2 ? files_of(argv[2]) : std::vector<input>{};
  std::mt19937 random(20481);
  input bytes(64);
  for (unsigned long i = 0; i != count; ++i) {
    if (files.empty())
      std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<std::uint8_t>(random()); });
    else
      bytes = damaged(files[i % files.size()], random);
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%lu inputs\n", count);
}
