// The caller's text in a mail charset by tables, whole or any part of it: without a converter, and
// each character is looked up once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mail/charset_rules.h"
#include "text/tables/charset.h"

namespace mail {

// Each takes the place of what the output held. False when the table does not settle it.
bool to_utf8(const text::Table& table, std::string_view text, std::string& output);
bool from_utf8(const text::Table& table, std::string_view utf8, std::string& output);

class TableText {
 public:
  // False when a converter has to decide: there are no tables, the charset lacks a character, or
  // some readers take one for another. Borrows the text.
  bool convert(const CharsetRules& rules, const text::Charset& charset, std::string_view text);

  bool has_states() const { return codes_kind_ == Codes::kIso2022Jp; }

  // What stands for the characters from an index of the text to another. Valid until the next call.
  std::string_view get(size_t begin, size_t end);
  std::string_view get_all() const { return codes_; }

  // Where the character begins that has the byte which comes so many bytes after an index. There
  // must be no states.
  size_t find_index(size_t begin, size_t bytes);

 private:
  void find_places();
  size_t measure(size_t place, char first_byte) const;

  std::string_view text_;
  Codes codes_kind_ = Codes::kBytes;
  std::string codes_;
  std::vector<std::uint32_t> places_;  // where the code begins of the character that has the byte
  std::string part_;
};

}  // namespace mail
