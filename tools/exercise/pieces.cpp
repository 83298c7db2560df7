// Compares the library for text in pieces with ICU, with itself and with iconv(3): random texts in
// every charset, whole, damaged and cut off, to every charset.
//
//   pieces MINUTES [SEED]    0 for one round over all pairs of charsets
//   pieces sample [SEED]     each charset, to and from a few others, without uconv
//
// A text is converted in one call, in random pieces down to a byte with random room down to a byte,
// and by ICU as a whole. What comes out must be the same; where an error is, ICU must convert what
// is before it and nothing longer. Where iconv(3) knows both charsets as ICU does, its output and
// position must be the same, too; in charsets with a state or more bytes, where it knows all
// characters of a text, each must read the same in what the other reads and writes. uconv, in
// blocks of any size, must give the same output. Exit status: 1 when something differs.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <iconv.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <qorvii18n/i18n_text.h>
#include <unicode/ucnv.h>
#include <unicode/utf16.h>

namespace {

std::mt19937_64 random_source;
size_t random_below(size_t limit) { return limit == 0 ? 0 : random_source() % limit; }

void stop(const void*, UConverterFromUnicodeArgs*, const UChar*, int32_t, UChar32,
          UConverterCallbackReason, UErrorCode*) {}

// What ICU makes of a whole text, strictly.
class Charset {
 public:
  explicit Charset(const char* charset) : name(charset) {
    UErrorCode status = U_ZERO_ERROR;
    strict_.adoptInstead(ucnv_open(charset, &status));
    lax_.adoptInstead(ucnv_open(charset, &status));
    type = ucnv_getType(strict_.getAlias());
    for (UConverter* converter : {strict_.getAlias(), lax_.getAlias()}) {
      ucnv_setFallback(converter, false);
      ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    }
    ucnv_setFromUCallBack(strict_.getAlias(), stop, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(lax_.getAlias(), UCNV_FROM_U_CALLBACK_SKIP, nullptr, nullptr, nullptr,
                          &status);
  }

  // Nothing when there is something invalid.
  std::optional<std::u16string> read(std::string_view bytes, bool is_all = true) {
    std::u16string units(bytes.size() * 4 + 32, u'\0');
    const char* source = bytes.data();
    char16_t* target = units.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_reset(strict_.getAlias());
    ucnv_toUnicode(strict_.getAlias(), &target, units.data() + units.size(), &source,
                   source + bytes.size(), nullptr, static_cast<UBool>(is_all), &status);
    units.resize(static_cast<size_t>(target - units.data()));
    if (U_FAILURE(status) || (is_all && type == UCNV_HZ && ends_inside_hz(bytes)))
      return std::nullopt;
    for (size_t i = 0; i < units.size();) {
      UChar32 character;
      U16_NEXT(units.data(), i, units.size(), character);
      if (U_IS_SURROGATE(character)) return std::nullopt;
    }
    return units;
  }

  // Nothing when something is lacking.
  std::optional<std::string> write(std::u16string_view units) {
    bool good = true;
    std::string bytes = write(strict_.getAlias(), units, good);
    if (!good || is_unfit_for_iscii(units)) return std::nullopt;
    if (!has_nukta(units) && read(bytes) != units) return std::nullopt;
    return bytes;
  }

  // Leaves out what is lacking.
  std::string write_some(std::u16string_view units) {
    bool good = true;
    return write(lax_.getAlias(), units, good);
  }

  // Whether a text may end only every few characters.
  bool has_runs() const {
    return type == UCNV_UTF7 || type == UCNV_IMAP_MAILBOX || type == UCNV_ISCII;
  }

  // Whether characters are written in a form that depends on what else is in the call.
  bool looks_ahead() const {
    return type == UCNV_SCSU || (type >= UCNV_LMBCS_1 && type <= UCNV_LMBCS_LAST);
  }

  int get_longest() const { return ucnv_getMaxCharSize(strict_.getAlias()); }

  std::string name;
  UConverterType type;
  std::string iconv_name;    // where iconv(3) knows it alike
  std::string common_name;   // where iconv(3) knows the characters below alike
  std::vector<bool> common;  // by unit; none for all

 private:
  // ICU forgets the first byte of two and a tilde when nothing follows.
  static bool ends_inside_hz(std::string_view bytes) {
    bool is_double = false;
    for (size_t i = 0; i < bytes.size(); ++i) {
      if (bytes[i] == '~') {
        if (++i == bytes.size()) return true;
        if (bytes[i] == '{') is_double = true;
        if (bytes[i] == '}') is_double = false;
      } else if (is_double) {
        if (++i == bytes.size()) return true;
      }
    }
    return false;
  }

  // ISCII has a character with a nukta in one form only, the one or the other of Unicode's.
  bool has_nukta(std::u16string_view units) const {
    return type == UCNV_ISCII && std::ranges::any_of(units, [](char16_t unit) {
             return 0x0900 <= unit && unit < 0x0D80 && (unit & 0x7F) == 0x3C;
           });
  }

  // Refused, though some of it might be read back in its place.
  bool is_unfit_for_iscii(std::u16string_view units) const {
    bool is_after_cr = false;
    for (size_t i = 0; type == UCNV_ISCII && i < units.size(); ++i) {
      const auto is_virama = [](char16_t unit) {
        return 0x0900 <= unit && unit < 0x0D80 && (unit & 0x7F) == 0x4D;
      };
      const bool is_after_virama = i > 0 && is_virama(units[i - 1]);
      if ((units[i] == 0x200C || units[i] == 0x200D) && !is_after_virama) return true;
      if (is_virama(units[i]) && is_after_virama) return true;
      if (units[i] == 0x0A02 || units[i] == 0x0A70 || units[i] == 0x0A71) return true;
      if (is_after_cr && 0x0900 <= units[i] && units[i] < 0x0D80) return true;
      is_after_cr = units[i] == u'\r' || (is_after_cr && units[i] != u'\n');
    }
    return false;
  }

  std::string write(UConverter* converter, std::u16string_view units, bool& good) {
    const bool is_alone = looks_ahead();
    icu::LocalUConverterPointer other;
    if (type != UCNV_SCSU && is_alone) {
      UErrorCode status = U_ZERO_ERROR;
      other.adoptInstead(ucnv_clone(converter, &status));
    }
    ucnv_reset(converter);
    std::string bytes(units.size() * 8 + 64, '\0');
    char* target = bytes.data();
    const char16_t* source = units.data();
    const char16_t* const end = source + units.size();
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const used = other.isNull() ? converter : other.getAlias();
    while (U_SUCCESS(status) && source != end) {
      const char16_t* const call_end = is_alone ? source + 1 : end;
      ucnv_fromUnicode(used, &target, bytes.data() + bytes.size(), &source, call_end, nullptr,
                       false, &status);
    }
    ucnv_fromUnicode(used, &target, bytes.data() + bytes.size(), &source, end, nullptr, true,
                     &status);
    good = U_SUCCESS(status);
    bytes.resize(static_cast<size_t>(target - bytes.data()));
    return bytes;
  }

  icu::LocalUConverterPointer strict_, lax_;
};

struct Result {
  i18n_text_status_t status = I18N_TEXT_OK;
  std::string output;
  i18n_text_error_t error = {};

  bool operator==(const Result& other) const {
    return status == other.status && output == other.output && error.status == other.error.status &&
           error.position == other.error.position && error.line == other.error.line &&
           error.column == other.error.column && error.character == other.error.character;
  }
};

// In pieces and room of at most so many bytes; 0 for one call.
Result convert(i18n_text_converter_t* converter, std::string_view text, size_t most) {
  Result result;
  i18n_text_reset(converter);
  const char* input = text.data();
  const char* const end = input + text.size();
  std::string room(most == 0 ? text.size() * 8 + 4096 : most, '\0');
  bool is_last = false;
  do {
    const char* const piece_end =
        most == 0 ? end : input + random_below(std::min<size_t>(most, end - input) + 1);
    is_last = piece_end == end && (most == 0 || random_below(2) == 0);
    do {
      char* output = room.data();
      char* const output_end = output + (most == 0 ? room.size() : random_below(most) + 1);
      const char* const before = input;
      result.status = i18n_text_convert(converter, &input, piece_end, &output, output_end, is_last);
      result.output.append(room.data(), output);
      if (result.status == I18N_TEXT_FULL && output == room.data() && input == before) {
        std::printf("no progress\n");
        std::exit(1);
      }
      if (result.status == I18N_TEXT_OK && input != piece_end) {
        std::printf("not taken\n");
        std::exit(1);
      }
    } while (result.status == I18N_TEXT_FULL);
  } while (result.status == I18N_TEXT_OK && !is_last);
  i18n_text_get_error(converter, &result.error);
  return result;
}

std::string hex(std::string_view bytes) {
  std::string text;
  char digits[4];
  for (const char byte : bytes.substr(0, 200)) {
    std::snprintf(digits, sizeof digits, "%02x ", static_cast<unsigned char>(byte));
    text += digits;
  }
  return text;
}

std::u16string random_units(size_t length) {
  static const std::u16string_view pools[] = {
      u"the quick brown fox 0123456789",
      u"äöüßéèçñÆØ€œ“”–…¥\\~¬|",
      u"Съешь ещё этих мягких булок",
      u"ΑΒΓ αβγ ώ",
      u"日本語テスト、ｶﾅ表能ソ\u304b\u309a\u30ab\u309a\u02e9\u02e5\u00e6\u0300",
      u"한국어 中文繁體 简体 ￥—～",
      u"हिन्दी का\u200d\u094d\u200d\u094d\u200c बাংলা தமிழ் ਗੁਰ",
      u"שלום عربى ไทย ລາວ",
      u"\U0001f600\U00010400\U00020000\U0002a6d6",
      u"\ue000\uf8ff\ue758\U000f0000\U0010fffd\uf860",
      u"\u00ad\u200b\ufeff\u2028\u0085\u0000\u001a\u007f\u000e\u001b",
      u"\r\n\r\n\n\r",
  };
  std::u16string units;
  while (units.size() < length) {
    const std::u16string_view pool = pools[random_below(std::size(pools))];
    for (size_t count = random_below(6); count > 0; --count) {
      size_t index = random_below(pool.size());
      if (U16_IS_TRAIL(pool[index])) --index;
      units += pool[index];
      if (U16_IS_LEAD(pool[index])) units += pool[index + 1];
    }
    if (random_below(8) == 0) units += static_cast<char16_t>(random_below(0xd800));
  }
  return units;
}

std::string random_text(Charset& from, Charset& to) {
  size_t length = random_below(30);
  if (random_below(60) == 0) length = random_below(9000);
  std::u16string units = random_units(length);
  if (random_below(2) == 0) units = to.read(to.write_some(units)).value_or(units);
  std::string text = from.write_some(units);
  switch (random_below(6)) {
    case 0:
      for (size_t n = random_below(3) + 1; n > 0 && !text.empty(); --n) {
        text[random_below(text.size())] = static_cast<char>(random_below(256));
      }
      break;
    case 1:
      text.resize(random_below(text.size() + 1));
      break;
    case 2:
      for (size_t n = random_below(3) + 1; n > 0 && !text.empty(); --n) {
        text.erase(random_below(text.size()), 1);
      }
      break;
    case 3:
      for (size_t n = random_below(3) + 1; n > 0; --n) {
        text.insert(random_below(text.size() + 1), 1, static_cast<char>(random_below(256)));
      }
      break;
    default:
      break;
  }
  return text;
}

std::map<std::string, std::map<std::string, int>> faults;  // kind, charset
std::uint64_t texts = 0, cuts = 0, errors = 0, beside_iconv = 0, beside_uconv = 0;

void report(const char* kind, const std::string& charset, const Charset& from, const Charset& to,
            std::string_view text, const Result& one, const Result* other = nullptr) {
  if (faults[kind][charset]++ > 1) return;
  std::printf(
      "%s: %s to %s: %s\n  status %d position %zu line %zu column %zu character %x output %s\n",
      kind, from.name.c_str(), to.name.c_str(), hex(text).c_str(), one.status,
      static_cast<size_t>(one.error.position), static_cast<size_t>(one.error.line),
      static_cast<size_t>(one.error.column), one.error.character, hex(one.output).c_str());
  if (other == nullptr) return;
  std::printf("  status %d position %zu line %zu column %zu character %x output %s\n",
              other->status, static_cast<size_t>(other->error.position),
              static_cast<size_t>(other->error.line), static_cast<size_t>(other->error.column),
              other->error.character, hex(other->output).c_str());
}

bool is_open(void* iconv_handle) { return reinterpret_cast<std::intptr_t>(iconv_handle) != -1; }
struct CloseIconv {
  void operator()(void* handle) const {
    if (is_open(handle)) iconv_close(handle);
  }
};
using IconvHandle = std::unique_ptr<void, CloseIconv>;

// Beside iconv(3).
std::optional<Result> convert_by_iconv(const std::string& from, const std::string& to,
                                       std::string text) {
  static std::map<std::pair<std::string, std::string>, IconvHandle> handles;
  const auto [place, is_new] = handles.try_emplace({from, to});
  if (is_new) place->second.reset(iconv_open(to.c_str(), from.c_str()));
  void* const handle = place->second.get();
  if (!is_open(handle)) return std::nullopt;
  Result result;
  result.output.resize(text.size() * 8 + 64);
  char* input = text.data();
  char* output = result.output.data();
  size_t left = text.size(), room = result.output.size();
  iconv(handle, nullptr, nullptr, nullptr, nullptr);
  const bool is_good = iconv(handle, &input, &left, &output, &room) != static_cast<size_t>(-1);
  iconv(handle, nullptr, nullptr, &output, &room);
  result.output.resize(result.output.size() - room);
  result.status = is_good ? I18N_TEXT_OK : I18N_TEXT_INVALID;
  result.error.position = text.size() - left;
  return result;
}

Charset& utf16() {
  static Charset charset("UTF-16LE");
  return charset;
}

// Whether every sequence of bytes is the same to both.
bool is_known_alike(Charset& charset, const std::string& name) {
  if (charset.type == UCNV_UTF8) return true;
  const bool is_single = charset.type == UCNV_SBCS || charset.type == UCNV_LATIN_1;
  if (!is_single && charset.get_longest() != 2) return false;
  if (!convert_by_iconv(name, "UTF-16LE", "")) return false;
  for (int number = 0; number < (is_single ? 0x100 : 0x10100); ++number) {
    std::string text(1, static_cast<char>(number));
    if (number > 0xff) text.insert(0, 1, static_cast<char>((number >> 8) - 1));
    const auto units = charset.read(text);
    const auto result = convert_by_iconv(name, "UTF-16LE", text);
    if (units.has_value() != (result->status == I18N_TEXT_OK)) return false;
    if (units && utf16().write(*units) != result->output) return false;
    if (units && charset.write(*units) != text) return false;
  }
  return true;
}

// The characters that both write in a way that the other reads. glibc loses characters at the ends
// of texts, and designations and shifts of ISO-2022-CN; only ICU ends a line of ISO-2022 at a CR,
// and may write a tilde in JIS X 0212.
void find_common(Charset& charset, const std::string& name) {
  for (const char* lossy :
       {"GB2312", "ISO-2022-CN", "ISO-2022-CN-EXT", "windows-1255", "windows-1258"}) {
    if (name == lossy) return;
  }
  if (!convert_by_iconv(name, "UTF-16LE", "") || !convert_by_iconv("UTF-16LE", name, "")) return;
  charset.common_name = name;
  charset.common.resize(0x10000);
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const std::u16string character(1, static_cast<char16_t>(unit));
    const auto bytes = U16_IS_SURROGATE(unit) ? std::nullopt : charset.write(character);
    if (!bytes || (charset.type == UCNV_ISO_2022 && (unit == '\r' || unit == '~'))) continue;
    const std::string utf16_bytes = *utf16().write(character);
    const auto read = convert_by_iconv(name, "UTF-16LE", *bytes);
    const auto written = convert_by_iconv("UTF-16LE", name, utf16_bytes);
    charset.common[unit] = read->status == I18N_TEXT_OK && written->status == I18N_TEXT_OK &&
                           read->output == utf16_bytes &&
                           charset.read(written->output) == character;
  }
}

std::optional<std::string> convert_slowly(Charset& from, Charset& to, std::string_view text) {
  const auto units = from.read(text);
  return units ? to.write(*units) : std::nullopt;
}

void check_iconv(const Charset& from, const Charset& to, const std::string& text,
                 const Result& result) {
  if (from.iconv_name.empty() || to.iconv_name.empty()) return;
  const auto other = convert_by_iconv(from.iconv_name, to.iconv_name, text);
  if (!other) return;
  ++beside_iconv;
  const bool is_good = result.status == I18N_TEXT_OK;
  if (is_good != (other->status == I18N_TEXT_OK) || result.output != other->output ||
      (!is_good && result.error.position != other->error.position)) {
    report("iconv", from.name + " " + to.name, from, to, text, result, &*other);
  }
}

// Each reads what the other reads and writes, in a text as ICU writes it.
void check_common(Charset& from, Charset& to, const std::string& text, const Result& result) {
  if (from.common_name.empty() || to.common_name.empty() || result.status != I18N_TEXT_OK) return;
  const std::u16string units = from.read(text).value();
  const auto is_common = [&](const Charset& charset) {
    return charset.common.empty() ||
           std::ranges::all_of(units, [&](char16_t unit) { return charset.common[unit]; });
  };
  if (!is_common(from) || !is_common(to) || from.write(units) != text) return;
  const auto other = convert_by_iconv(from.common_name, to.common_name, text);
  if (!other) return;
  ++beside_iconv;
  const auto read = convert_by_iconv(to.common_name, "UTF-16LE", result.output);
  if (other->status != I18N_TEXT_OK || to.read(other->output) != units ||
      read->status != I18N_TEXT_OK || read->output != utf16().write(units)) {
    report("iconv, common", from.name + " " + to.name, from, to, text, result, &*other);
  }
}

// Files in memory, so that neither side waits for the other.
std::optional<std::string> convert_by_uconv(const Charset& from, const Charset& to,
                                            std::string_view text) {
  const int input = memfd_create("input", MFD_CLOEXEC),
            output = memfd_create("output", MFD_CLOEXEC);
  if (pwrite(input, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size())) std::abort();
  const std::string block = std::to_string(random_below(5000) + 1);
  const char* const arguments[] = {"uconv",           "-b", block.c_str(),   "-f",
                                   from.name.c_str(), "-t", to.name.c_str(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process;
  int status = 1;
  if (posix_spawnp(&process, "uconv", &actions, nullptr, const_cast<char* const*>(arguments),
                   environ) != 0) {
    std::printf("no uconv\n");
    std::exit(1);
  }
  waitpid(process, &status, 0);
  posix_spawn_file_actions_destroy(&actions);
  std::string result(static_cast<size_t>(lseek(output, 0, SEEK_END)), '\0');
  if (pread(output, result.data(), result.size(), 0) < 0) std::abort();
  close(input);
  close(output);
  if (status != 0) return std::nullopt;
  return result;
}

// It writes no empty text, not even where that has a beginning, and loses what the end adds when
// its own room is full.
void check_uconv(Charset& from, Charset& to, const std::string& text, const Result& result) {
  if (result.status != I18N_TEXT_OK || from.read(text)->empty()) return;
  const auto other = convert_by_uconv(from, to, text);
  ++beside_uconv;
  if (other == result.output) return;
  constexpr size_t longest_end = 8;
  const bool is_lost = other && result.output.starts_with(*other) &&
                       result.output.size() - other->size() <= longest_end;
  if (!is_lost && !(other && to.looks_ahead() && to.read(*other) == to.read(result.output))) {
    Result shown;
    shown.output = other.value_or("");
    report("uconv", from.name + " " + to.name, from, to, text, result, &shown);
  }
}

void check(Charset& from, Charset& to, i18n_text_converter_t* converter, bool has_uconv) {
  const std::string text = random_text(from, to);
  ++texts;
  const Result whole = convert(converter, text, 0);
  check_iconv(from, to, text, whole);
  if (from.common.size() + to.common.size() > 0) check_common(from, to, text, whole);
  if (has_uconv && random_below(20) == 0) check_uconv(from, to, text, whole);
  for (const size_t most : {1, 7, 300}) {
    ++cuts;
    const Result pieces = convert(converter, text, most);
    if (!(pieces == whole)) report("cut", from.name, from, to, text, whole, &pieces);
  }
  if (whole.status == I18N_TEXT_OK) {
    const auto slow = convert_slowly(from, to, text);
    if (!slow) return report("ok, not slowly", from.name + " " + to.name, from, to, text, whole);
    if (*slow != whole.output) report("output", to.name, from, to, text, whole);
    return;
  }
  ++errors;
  if (whole.status != whole.error.status || whole.status < I18N_TEXT_INVALID ||
      whole.status > I18N_TEXT_LACKING) {
    return report("status", from.name, from, to, text, whole);
  }
  const size_t position = whole.error.position;
  // Inside of a long run it is where the character is.
  if ((from.type == UCNV_IMAP_MAILBOX || from.type == UCNV_ISCII) && text.size() > 250) return;
  const auto before = convert_slowly(from, to, text.substr(0, position));
  if (!before) return report("position, does not convert", from.name, from, to, text, whole);
  // A character can be several code points of which only some are lacking.
  const auto is_written = to.read(whole.output), is_before = to.read(*before);
  if (!is_written || !is_before || !is_written->starts_with(*is_before) ||
      (is_written->size() > is_before->size() + 4 && !from.has_runs())) {
    report("output of error", to.name, from, to, text, whole);
  }
  for (size_t size = position + 1; size <= std::min(text.size(), position + 24); ++size) {
    // Some characters begin with what is a character at the end of a text.
    const std::string longer_text = text.substr(0, size);
    if (convert_slowly(from, to, longer_text) &&
        from.read(longer_text) == from.read(longer_text, false)) {
      Result longer;
      longer.error.position = size;
      return report("longer converts", from.name, from, to, text, whole, &longer);
    }
  }
  if (whole.status == I18N_TEXT_LACKING) return;
  if (from.read(text)) report("not lacking", from.name, from, to, text, whole);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view amount = argc > 1 ? argv[1] : "0";
  const size_t partners = amount == "sample" ? 6 : 0;
  const int minutes = std::atoi(std::string(amount).c_str());
  random_source.seed(argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
  std::vector<std::unique_ptr<Charset>> charsets;
  for (int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    auto charset = std::make_unique<Charset>(ucnv_getAvailableName(i));
    if (charset->type == UCNV_COMPOUND_TEXT) continue;
    for (const char* standard : {"MIME", "IANA"}) {
      UErrorCode status = U_ZERO_ERROR;
      const char* name = ucnv_getStandardName(charset->name.c_str(), standard, &status);
      if (name == nullptr) continue;
      if (is_known_alike(*charset, name)) {
        charset->iconv_name = charset->common_name = name;
      } else if (charset->common_name.empty()) {
        find_common(*charset, name);
      }
    }
    charsets.push_back(std::move(charset));
  }
  const auto start = std::chrono::steady_clock::now();
  const auto has_time = [&] {
    return std::chrono::steady_clock::now() - start < std::chrono::minutes(minutes);
  };
  do {
    for (auto& from : charsets) {
      for (auto& to : charsets) {
        if (random_below(charsets.size()) < charsets.size() - partners && partners > 0) continue;
        i18n_text_status_t status;
        i18n_text_converter_t* const converter =
            i18n_text_open(from->name.c_str(), to->name.c_str(), &status);
        if (converter == nullptr) {
          std::printf("%s to %s: %s\n", from->name.c_str(), to->name.c_str(),
                      i18n_text_status_text(status));
          return 1;
        }
        for (int i = 0; i < 4; ++i) check(*from, *to, converter, partners == 0);
        i18n_text_close(converter);
      }
    }
  } while (has_time());
  std::printf(
      "%llu texts, %llu of them with an error, %llu conversions in pieces, %llu by iconv(3), "
      "%llu by uconv\n",
      static_cast<unsigned long long>(texts), static_cast<unsigned long long>(errors),
      static_cast<unsigned long long>(cuts), static_cast<unsigned long long>(beside_iconv),
      static_cast<unsigned long long>(beside_uconv));
  for (const auto& [kind, names] : faults) {
    for (const auto& [name, count] : names) {
      std::printf("%s: %s: %d\n", kind.c_str(), name.c_str(), count);
    }
  }
  return faults.empty() ? 0 : 1;
}
