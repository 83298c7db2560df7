// The caller's text in a mail charset by tables, whole or any part of it: without a converter, and
// each character is looked up once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mail/charset_rules.h"
#include "text/tables/charset.h"
#include "text/tables/route.h"

namespace mail {

// Takes the place of what the output held. False when tables do not settle it.
bool convert_by_tables(const text::Route& route, std::string_view text, std::string& output);

class TableText {
 public:
  // False when a converter has to decide: there are no tables, the charset lacks a character, or
  // some readers take one for another. Borrows the text.
  bool convert(const CharsetRules& rules, const text::Charset& charset, std::string_view text);

  // What stands for the characters from an index of the text to another. Valid until the next call.
  std::string_view get(size_t begin, size_t end);
  std::string_view get_all() const { return codes_; }

 private:
  void find_places();

  std::string_view text_;
  const text::Table* table_ = nullptr;
  bool is_iso_2022_jp_ = false;
  std::string codes_;
  std::vector<std::uint32_t> places_;  // where the code of the character at an index begins
  std::string part_;
};

}  // namespace mail
