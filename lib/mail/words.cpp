#include "mail/words.h"

#include <algorithm>

#include "transfer/base64.h"

namespace mail {

// An example: thirty u umlauts in UTF-8, two bytes each, beside "Subject: ", which leaves 67
// columns of its line.
//
//   12 columns for "=?UTF-8?B?" and "?=" leave 55    13 groups of base64, 39 bytes
//   down to where a character ends                   38 bytes     find_longest()
//   down to where no padding is needed               36 bytes     find_cut()
//
// Such a place can be missing: a family of four is one cluster of 25 bytes, and no groups end with
// it. Then less is asked for, in turn: a Q word, which is never padded; a B word that ends inside a
// cluster; a Q word that does. RFC 1468 wants no Q words in ISO-2022-JP; it has them only where no
// prefix goes without padding, such as in "aa" with U+3042 and "a" in turn behind it.
Word WordMaker::cut(size_t begin, size_t end, size_t columns, WordKind kind) {
  const size_t longest = find_longest(begin, end, columns, kind);
  if (longest == end) return {end, kind, measure(begin, end, kind)};

  const auto ends_character = [](size_t) { return true; };
  const auto ends_cluster = [&](size_t index) { return clusters_.end_at(text_, begin, index); };
  // A word in front of another: GMime drops what follows a padded one.
  const auto is_unpadded = [&](size_t index) { return !is_padded(begin, index); };
  const auto ends_both = [&](size_t index) { return is_unpadded(index) && ends_cluster(index); };

  const auto cut_b = [&](auto is_good) {
    const size_t index = kind == WordKind::kB ? find_cut(begin, longest, is_good) : begin;
    return Word{index, WordKind::kB, measure(begin, index, WordKind::kB)};
  };
  const auto cut_q = [&](auto is_good) {
    const size_t from =
        kind == WordKind::kQ ? longest : find_longest(begin, end, columns, WordKind::kQ);
    const size_t index = find_cut(begin, from, is_good);
    return Word{index, WordKind::kQ, measure(begin, index, WordKind::kQ)};
  };
  Word word = cut_b(ends_both);
  if (word.end == begin && !charset_.is_iso_2022_jp()) word = cut_q(ends_cluster);
  if (word.end == begin) word = cut_b(is_unpadded);
  if (word.end == begin) word = cut_q(ends_character);
  return word;
}

void WordMaker::append(std::string& line, size_t begin, const Word& word) {
  const std::string_view bytes = charset_.convert_part(begin, word.end);
  line.append("=?").append(charset_.name()).append({'?', static_cast<char>(word.kind), '?'});
  if (word.kind == WordKind::kQ) {
    append_forms(line, escapes_, bytes);
  } else {
    append_base64(line, bytes);
  }
  line += "?=";
}

size_t WordMaker::measure(size_t begin, size_t end, WordKind kind) {
  const std::string_view bytes = charset_.convert_part(begin, end);
  return overhead() + (kind == WordKind::kQ ? measure_forms(escapes_, bytes)
                                            : transfer::base64_size(bytes.size()));
}

size_t WordMaker::find_longest(size_t begin, size_t end, size_t columns, WordKind kind) {
  if (columns <= overhead()) return begin;
  const size_t room = columns - overhead();
  const size_t in_base64 = room / transfer::group_chars * transfer::group_bytes;
  if (charset_.has_plain_parts()) {
    const std::string_view bytes = charset_.convert_part(begin, end);
    const size_t fitting = kind == WordKind::kQ ? count_fitting(bytes, room) : in_base64;
    return fitting < bytes.size() ? charset_.find_index(begin, fitting) : end;
  }
  const auto fits = [&](size_t index) { return measure(begin, index, kind) <= columns; };
  const auto round_down = [this](size_t index) {
    while (index < text_.size() && is_inside_character(text_[index])) --index;
    return index;
  };
  // No charset has a byte for more than three of UTF-8.
  const size_t bytes = kind == WordKind::kQ ? room : in_base64;
  const size_t most = bytes * (charset_.is_utf8() ? 1 : 3);
  size_t too_far = end - begin > most ? round_down(begin + most) : end;
  if (fits(too_far)) return too_far;
  size_t longest = begin;
  while (next_character(text_, longest) < too_far) {
    size_t middle = round_down(longest + (too_far - longest) / 2);
    if (middle == longest) middle = next_character(text_, longest);
    (fits(middle) ? longest : too_far) = middle;
  }
  return longest;
}

// How many of the bytes have forms of at most so many columns.
size_t WordMaker::count_fitting(std::string_view bytes, size_t columns) const {
  size_t count = 0;
  for (; count < bytes.size(); ++count) {
    const auto byte = static_cast<unsigned char>(bytes[count]);
    const size_t form = transfer::is_escaped(escapes_.data(), byte) ? transfer::escape_size : 1;
    if (form > columns) break;
    columns -= form;
  }
  return count;
}

template <class IsGood>
size_t WordMaker::find_cut(size_t begin, size_t longest, IsGood is_good) {
  for (size_t index = longest; index > begin; index = previous_character(text_, index)) {
    if (is_good(index)) return index;
  }
  return begin;
}

bool WordMaker::is_padded(size_t begin, size_t end) {
  return charset_.convert_part(begin, end).size() % transfer::group_bytes != 0;
}

}  // namespace mail
