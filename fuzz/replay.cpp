// Runs a fuzz target over the saved inputs of a directory.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size);

int main(int argc, char** argv) {
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
    std::fprintf(stderr, "%s\n", file.path().c_str());
    std::ifstream stream(file.path(), std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++count;
  }
  return count > 0 ? 0 : 1;
}
