// Runs a fuzz target over the saved inputs of a directory, and over one text in every charset.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "charsets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size);

namespace {

void run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

// What a text holds beside letters of many scripts: a half-width form, a character beyond 16 bits,
// a tab, what encodings escape, a soft hyphen, a full stop at the end.
constexpr const char* text =
    "Año ÄÖß Жук αβγ שלום 日本語テスト、ｶﾅ 한국어 中文繁體 हिन्दी ไทย 😀𐐀\t=?_ a\u00adb €.\n";

// As source and as target, without the characters that the charset lacks. Six values of the fields
// that follow reach every combination of header, encoding and choice.
void run_charsets() {
  constexpr char utf8 = 0, converted = 1, left_out = 2, once_more = 1;
  for (size_t i = 0; i < std::size(fuzz::charsets); ++i) {
    const auto charset = static_cast<char>(i);
    std::fprintf(stderr, "%s\n", fuzz::charsets[i]);
    for (const char field : {'Z', '[', '\\', ']', '^', '_'}) {
      const std::string rest = std::string(3, field) + text;
      run(std::string{converted, once_more, charset, utf8} + rest);
      run(std::string{left_out, once_more, utf8, charset} + rest);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(argc > 1 ? argv[1] : ".")) {
    std::fprintf(stderr, "%s\n", file.path().c_str());
    std::ifstream stream(file.path(), std::ios::binary);
    run({std::istreambuf_iterator<char>(stream), {}});
    ++count;
  }
  run_charsets();
  return count > 0 ? 0 : 1;
}
