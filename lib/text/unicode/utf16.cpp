#include "text/unicode/utf16.h"

#include <algorithm>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "text/unicode/utf8.h"

namespace text {

size_t count_units(Bytes utf8, const Kernels& kernels) {
  size_t count = 0;
  if (utf8.size() >= kernel_stretch) utf8 = utf8.subspan(kernels.count_units(count, utf8));
  if (LastStretch::fits(utf8)) {
    const LastStretch last(utf8);
    size_t units = 0;
    if (kernels.count_units(units, last.in_stretches()) != 0) {
      return count + units - (last.in_stretches().size() - utf8.size());
    }
  }
  for (const unsigned char byte : utf8) {
    count += (continues_character(byte) ? 0 : 1) + (byte >= 0xf0 ? 1 : 0);
  }
  return count;
}

size_t find_byte_of_unit(Bytes utf8, size_t unit) {
  constexpr size_t few_units = 64;
  Bytes rest = utf8;
  while (unit > few_units) {
    // So many bytes have no more units than that.
    size_t size = unit;
    while (continues_character(rest[size])) --size;
    unit -= count_units(rest.first(size));
    rest = rest.subspan(size);
  }
  return utf8.size() - rest.size() + reach_units(rest, unit).bytes;
}

size_t put_some_units(char16_t*& out, Bytes utf8, size_t about, const Kernels& kernels) {
  const size_t limit = std::min(about, utf8.size());
  if (limit >= kernel_stretch) {
    const size_t done = kernels.utf8_to_units(out, utf8.first(std::min(limit + 2, utf8.size())));
    if (done != 0) return done;
  }
  if (utf8.size() < kernel_stretch && LastStretch::fits(utf8)) {
    // Each NUL that they got to is a unit.
    const LastStretch last(utf8);
    char16_t* end = out;
    const size_t done = kernels.utf8_to_units(end, last.in_steps());
    if (done >= utf8.size()) {
      out = end - (done - utf8.size());
      return utf8.size();
    }
  }
  // What they leave: a stretch with a character beyond U+FFFF, and the end.
  const size_t end = std::min(limit, kernel_stretch);
  size_t index = 0;
  while (index < end) {
    UChar32 character;
    U8_NEXT_UNSAFE(utf8.data(), index, character);
    if (character > 0xffff) *out++ = U16_LEAD(character);
    *out++ = character > 0xffff ? U16_TRAIL(character) : static_cast<char16_t>(character);
  }
  return index;
}

char16_t* put_units(char16_t* out, Bytes utf8, const Kernels& kernels) {
  for (size_t index = 0; index < utf8.size();) {
    const Bytes rest = utf8.subspan(index);
    index += put_some_units(out, rest, rest.size(), kernels);
  }
  return out;
}

void to_utf16(std::string_view utf8, std::u16string& units) {
  units.resize(utf8.size() + kernel_slack);
  const char16_t* const end = put_units(units.data(), as_bytes(utf8));
  units.resize(static_cast<size_t>(end - units.data()));
}

size_t to_utf8(std::u16string_view units, std::string& utf8) {
  utf8.clear();
  utf8.reserve(units.size());
  for (size_t index = 0; index < units.size();) {
    const size_t begin = index;
    UChar32 character;
    U16_NEXT(units.data(), index, units.size(), character);
    if (U_IS_SURROGATE(character)) return begin;
    char bytes[U8_MAX_LENGTH];
    size_t size = 0;
    U8_APPEND_UNSAFE(bytes, size, character);
    utf8.append(bytes, size);
  }
  return units.npos;
}

}  // namespace text
