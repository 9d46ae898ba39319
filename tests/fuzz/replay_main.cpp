// Replays the files of the folders that are given: a fuzz target as an ordinary test.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz_target.h"

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
      std::cout << file.filename().string() << std::endl;
      std::ifstream stream(file, std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++replayed;
    }
  }
  std::cout << replayed << " files replayed" << std::endl;
  return replayed > 0 ? 0 : 1;
}
