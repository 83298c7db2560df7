// Base64 groups: three bytes as four characters.
#pragma once

#include <cstddef>

namespace i18n_mime {

constexpr int group_bytes = 3;
constexpr int group_chars = 4;

// Writes the characters of count whole groups.
void put_base64_groups(char* out, const unsigned char* bytes, size_t count);

// The two ways to do it: one group after the other, and eight at once on processors that have the
// instructions. The latter returns false, and writes nothing, on others.
void put_base64_groups_plain(char* out, const unsigned char* bytes, size_t count);
bool put_base64_groups_vector(char* out, const unsigned char* bytes, size_t count);

// Writes the last group, of one or two bytes, with its padding.
void put_base64_rest(char* out, const unsigned char* bytes, size_t size);

}  // namespace i18n_mime
