// Which bytes of a piece of text quoted-printable must escape, a bit for each.
#pragma once

#include <cstddef>
#include <cstdint>

namespace i18n_mime {

class EscapeMarks {
 public:
  static constexpr std::ptrdiff_t max_bytes = 256;
  static constexpr int stretch = 32;

  // The table has an entry for each byte value, 1 where the byte must be escaped. There are at most
  // max_bytes from bytes to end.
  EscapeMarks(const char* table, const unsigned char* bytes, const unsigned char* end);

  // The marks of the stretch of bytes from at on, lowest bit first; 0 for those past the end.
  std::uint32_t get_from(const unsigned char* at) const {
    const std::ptrdiff_t index = at - begin;
    const std::uint32_t* const word = marks + index / stretch;
    const std::uint64_t bits = word[0] | static_cast<std::uint64_t>(word[1]) << stretch;
    return static_cast<std::uint32_t>(bits >> (index % stretch));
  }

 private:
  static constexpr std::ptrdiff_t read_beyond = 1;

  const unsigned char* begin;
  std::uint32_t marks[max_bytes / stretch + read_beyond];
};

// The two ways to make marks, of count bytes: one by one, into marks that are 0, and 32 at once on
// processors that have the instructions. The latter returns how many bytes it did, 0 on others.
void mark_escapes_plain(std::uint32_t* marks, const char* table, const unsigned char* bytes,
                        std::ptrdiff_t count);
std::ptrdiff_t mark_escapes_vector(std::uint32_t* marks, const char* table,
                                   const unsigned char* bytes, std::ptrdiff_t count);

}  // namespace i18n_mime
