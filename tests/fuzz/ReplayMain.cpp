// SPDX-License-Identifier: MIT
//
// Runs a fuzz target on the files and folders that are given, in builds without a fuzzing engine: the seeds and every
// past finding are ordinary tests.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int index = 1; index < argc; ++index) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[index])) {
      if (!entry.is_regular_file()) continue;
      replay(entry.path());
      ++count;
    }
  }
  std::printf("%d inputs\n", count);
  return count == 0 ? 1 : 0;
}
