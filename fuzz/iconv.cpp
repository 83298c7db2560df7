// The one-shot conversions, against the same two steps on converters that only this target uses.
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_iconv.h>

#include "fuzz.h"

using fuzz::check;

namespace {

struct Pair {
  const i18n_charset_t* from;
  const i18n_charset_t* to;
  UConverter* model_from;
  UConverter* model_to;
  bool comparable;
};

struct Expected {
  bool converted;
  size_t units;
  std::string bytes;
};

constexpr std::string_view guard = "nobody writes behind a buffer, not even a converter";

// In both functions, capacity 0 lets the library allocate the output.

Expected check_easy_ex(const Pair& pair, const std::string& text, size_t capacity) {
  constexpr size_t untouched = ~size_t{0};
  std::string buffer = std::string(capacity, 'x').append(guard);
  char* output = capacity != 0 ? buffer.data() : nullptr;
  size_t length = capacity, position = untouched;
  const int result =
      i18n_iconv_easy_ex(pair.from, text.data(), text.size(), &position, pair.to, &output, &length);
  check(buffer.ends_with(guard), "the output stays in its buffer");
  check(result == 0 ? position == untouched : position <= text.size(), "a failure has a position");

  std::u16string units(2 * text.size(), u'\0');
  size_t consumed;
  UErrorCode status = fuzz::convert(ucnv_toUnicode, pair.model_from, text, units, &consumed);
  const bool is_read = U_SUCCESS(status);
  int failure = is_read ? 0 : status == U_TRUNCATED_CHAR_FOUND ? -1 : -3;
  std::string expected(capacity != 0 ? capacity : 14 * units.size() + 1, '\0');
  if (is_read) {
    status = fuzz::convert(ucnv_fromUnicode, pair.model_to, units, expected);
    failure = status == U_BUFFER_OVERFLOW_ERROR ? -2 : status == U_INVALID_CHAR_FOUND ? -4 : 0;
  } else {
    expected.clear();
  }
  if (pair.comparable) {
    check(result == failure, "failures are told apart");
    check(is_read || position == consumed, "the position is what was read");
    check(is_read || capacity != 0 || output == nullptr, "bad input allocates nothing");
    check(expected == std::string_view(output, length), "the result is the text");
  }
  if (capacity == 0) i18n_iconv_free(output);
  return {is_read && (units.empty() || U_SUCCESS(status)), units.size(), expected};
}

// Right after check_easy_ex() has converted the same text from a reset state, with more room.
void check_easy(const Pair& pair, const std::string& text, size_t capacity,
                const Expected& expected) {
  std::string buffer = std::string(capacity, 'x').append(guard);
  auto length = static_cast<std::int64_t>(capacity);
  char* const output = i18n_iconv_easy(pair.from, text.data(), static_cast<int>(text.size()),
                                       pair.to, capacity != 0 ? buffer.data() : nullptr, &length);
  check(buffer.ends_with(guard), "the output stays in its buffer");

  // A text without units does not reach the converter: not even a header is written.
  const std::string bytes = expected.units != 0 ? expected.bytes : "";
  const size_t room = capacity != 0 ? capacity : 4 * expected.units + 1;
  const bool fits = expected.converted && expected.units <= text.size() && bytes.size() <= room;
  if (pair.comparable) {
    check((output != nullptr) == fits, "what fits is a result");
    check(!fits || bytes == std::string_view(output, static_cast<size_t>(length)),
          "the result is the text");
    check(!fits || bytes.size() == room || output[bytes.size()] == '\0', "a NUL follows");
  }
  if (capacity == 0) i18n_iconv_free(output);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const std::string from = input.charset(false), to = input.charset(false);
  const auto model_from = fuzz::open_converter(from.c_str());
  const auto model_to = fuzz::open_converter(to.c_str());
  if (model_from.isNull() || model_to.isNull()) return 0;  // another ICU may lack a charset
  // ICU does not reset this charset: what other inputs did to the shared handle shows.
  const bool comparable = from != "x11-compound-text" && to != "x11-compound-text";
  const Pair pair{i18n_charset_open(from.c_str()), i18n_charset_open(to.c_str()),
                  model_from.getAlias(), model_to.getAlias(), comparable};
  const auto reset = [&] {
    i18n_iconv_free(i18n_iconv_easy(pair.from, "", 0, pair.to, nullptr, nullptr));
    ucnv_reset(pair.model_from);
    ucnv_reset(pair.model_to);
  };

  // A text in two pieces, so that the first can end within a character or fail otherwise, and the
  // second goes on from there; then the whole.
  const unsigned capacities[] = {input.number(256), input.number(256), input.number(256)};
  const std::string text = input.text(from.c_str(), to.c_str());
  reset();
  check_easy_ex(pair, text.substr(0, text.size() / 2), capacities[0]);
  check_easy_ex(pair, text.substr(text.size() / 2), capacities[1]);
  reset();
  check_easy(pair, text, capacities[2], check_easy_ex(pair, text, 0));
  return 0;
}
