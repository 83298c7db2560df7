// Writes a checksum of everything that the library makes of texts in each charset to a file, for
// comparison with another build or machine. The lines "bytes" differ where a charset has the byte
// order of the machine.
#include <cinttypes>
#include <cstdio>

#include "calls.h"

int main(int argc, char** argv) {
  std::FILE* const file = argc == 2 ? std::fopen(argv[1], "w") : nullptr;
  if (file == nullptr) {
    std::fprintf(stderr, "usage: results FILE\n");
    return 2;
  }
  exercise::Charsets charsets;
  for (int i = 0; i < charsets.size(); ++i) {
    const exercise::Results results = charsets.exercise(i);
    const char* const name = charsets.get_name(i);
    std::fprintf(file, "bytes %s %016" PRIx64 "\n", name, results.bytes.get());
    std::fprintf(file, "text %s %016" PRIx64 "\n", name, results.text.get());
  }
  return std::fclose(file) == 0 ? 0 : 1;
}
