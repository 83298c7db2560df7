// Sets the tables of every charset, or of those named, beside ICU: every code point, every sequence
// of one to three bytes, and every fourth byte after three that are none yet. Prints how many
// comparisons that were, and what ICU has and the tables leave to it.
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <unicode/utf8.h>

#include "support/beside_icu.h"

namespace {

unsigned long long comparisons = 0;
int faults = 0;

void expect(bool agrees, const char* charset, const std::string& text) {
  ++comparisons;
  if (agrees) return;
  ++faults;
  std::printf("%s: not what ICU makes of", charset);
  for (const char c : text) std::printf(" %02x", static_cast<unsigned char>(c));
  std::printf("\n");
}

int try_characters(BesideIcu& both, const char* charset) {
  int left = 0;
  for (UChar32 c = 0; c <= 0x10ffff; ++c) {
    if (U_IS_SURROGATE(c)) continue;
    std::string text(U8_MAX_LENGTH, '\0');
    size_t size = 0;
    U8_APPEND_UNSAFE(text.data(), size, c);
    text.resize(size);
    expect(both.agrees_on_text(text, text::Invisible::kDropped), charset, text);
    expect(both.agrees_on_text(text, text::Invisible::kRefused), charset, text);
    left += both.taken() == 0 && both.has_text(text) ? 1 : 0;
  }
  return left;
}

// NOLINTNEXTLINE(misc-no-recursion): at most four deep
int try_bytes(BesideIcu& both, const char* charset, const std::string& prefix) {
  int left = 0;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string bytes = prefix + static_cast<char>(byte);
    expect(both.agrees_on_bytes(bytes), charset, bytes);
    const bool is_left = both.taken() == 0;
    const bool is_read = is_left && both.read(bytes) != BesideIcu::failed;
    left += is_read ? 1 : 0;
    const bool is_open = bytes.size() < 3 || both.begins_character(bytes);
    if (bytes.size() < 4 && is_open) left += try_bytes(both, charset, bytes);
  }
  return left;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<const char*> charsets(argv + 1, argv + argc);
  for (int32_t i = 0; argc == 1 && i < ucnv_countAvailable(); ++i) {
    charsets.push_back(ucnv_getAvailableName(i));
  }
  int tables = 0;
  for (const char* charset : charsets) {
    BesideIcu both(charset);
    if (!both.has_table()) continue;
    ++tables;
    const int characters = try_characters(both, charset);
    const int sequences = try_bytes(both, charset, "");
    if (characters + sequences != 0) {
      std::printf("%s: %d characters and %d sequences are left to ICU\n", charset, characters,
                  sequences);
    }
    std::fflush(stdout);
  }
  std::printf("%d charsets with tables, %llu comparisons, %d differences\n", tables, comparisons,
              faults);
  return faults == 0 && tables != 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
