#include "calls.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <utility>

#include <qorvii18n/i18n_catalog.h>
#include <qorvii18n/i18n_charset.h>
#include <qorvii18n/i18n_iconv.h>
#include <qorvii18n/i18n_mime.h>
#include <qorviks.h>
#include <unicode/ucnv.h>
#include <qorvii18n/i18n_mime.hpp>

namespace {

// Where the messages of this thread's calls go.
thread_local exercise::Checksum* messages;

std::string repeat(const std::string& text, int times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

// Most charsets have all characters of some of these, and lack one in the midst of the others. The
// long ones take many chunks.
const std::string texts[] = {
    "",
    "= Hello_world?\r\n",
    repeat("The quick {brown} fox [jumps] over ~ the lazy dog; ^ | \\ 0123456789 ", 60),
    repeat("Gr\u00fc\u00dfe aus K\u00f6ln, \u00e0 bient\u00f4t. ", 40),
    repeat("\u041f\u0440\u0438\u0432\u0435\u0442, \u043c\u0438\u0440. ", 20) + "\u00e9",
    repeat("\u03ba\u03b1\u03bb\u03b7\u03bc\u03ad\u03c1\u03b1 ", 20),
    repeat("\u5bcc\u58eb\u5c71\u306f\u65e5\u672c\u4e00\u306e\u5c71\u3002", 40),
    repeat("\u4e2d\u6587\u548c\uc548\ub155 ", 25),
    "\u05e9\u05dc\u05d5\u05dd \u0645\u0631\u062d\u0628\u0627 \u0e2a\u0e27\u0e31\u0e2a\u0e14\u0e35",
    repeat("x", 85) + repeat("\U0001f600\U00020000", 50),
};
// Few charsets have all of these.
const std::string odd_bytes = "A\x80\x81\xa1\xfe\xff\x1b$B!!\x0e\x0f\xe3\x81~{VP~}\xf8z";

template <class Type, void (*release)(void*)>
struct Owned {
  explicit Owned(Type* released) : data(released) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { release(data); }
  Type* data;
};
using MimeText = Owned<char, i18n_mime_free>;
using IconvBuffer = Owned<char, i18n_iconv_free>;

// After this, neither converter has anything left over.
void clear(const i18n_charset_t* from, const i18n_charset_t* to) {
  const IconvBuffer nothing(i18n_iconv_easy(from, "", 0, to, nullptr, nullptr));
}

struct Conversion {
  int status;
  size_t position;
  std::string output;
};

Conversion convert(const i18n_charset_t* from, const std::string& input, const i18n_charset_t* to) {
  Conversion result = {};
  char* output = nullptr;
  size_t length = 0;
  clear(from, to);
  result.status =
      i18n_iconv_easy_ex(from, input.data(), input.size(), &result.position, to, &output, &length);
  const IconvBuffer owned(output);
  if (output != nullptr) result.output.assign(output, length);
  return result;
}

void add_end(exercise::Checksum& sum, const Conversion& result) {
  sum.add(result.status);
  sum.add(static_cast<std::int64_t>(result.position));
}

// The same into buffers of the caller's, of which one is too small, and with the other function.
void convert_otherwise(exercise::Results& results, const i18n_charset_t* from,
                       const std::string& input, const i18n_charset_t* to) {
  char room[600];
  char* output = room;
  size_t position = 0, written = 17;
  clear(from, to);
  results.text.add(
      i18n_iconv_easy_ex(from, input.data(), input.size(), &position, to, &output, &written));
  results.bytes.add(std::string_view(room, written));
  results.text.add(static_cast<std::int64_t>(position));

  std::int64_t length = sizeof room;
  const int size = static_cast<int>(input.size());
  const bool fits = i18n_iconv_easy(from, input.data(), size, to, room, &length) != nullptr;
  results.text.add(fits);
  if (fits) results.bytes.add(std::string_view(room, static_cast<size_t>(length)));

  const IconvBuffer allocated(i18n_iconv_easy(from, input.data(), size, to, nullptr, &length));
  if (allocated.data != nullptr) {
    results.bytes.add(std::string_view(allocated.data, static_cast<size_t>(length)));
  }
}

void encode(exercise::Checksum& sum, const std::string& text, const char* from, const char* to) {
  const char* const str = text.c_str();
  for (const auto function : {i18n_mime_encode_qp, i18n_mime_encode_b64, i18n_mime_encode_header_qp,
                              i18n_mime_encode_header_b64}) {
    sum.add(MimeText(function(str, from, to)).data);
  }
  for (const double threshold : {0.0, 0.3, 2.0}) {
    i18n_mime_encoding_t encoding = I18N_MIME_NONE;
    char* target = nullptr;
    const MimeText body(i18n_mime_encode(str, from, to, threshold, &encoding, &target));
    const MimeText name(target);
    sum.add(body.data);
    sum.add(name.data);
    sum.add(encoding);
    sum.add(MimeText(i18n_mime_encode_header(str, from, to, threshold)).data);
  }
}

void encode_from_default(exercise::Checksum& sum, const std::string& text) {
  const char* const str = text.c_str();
  char* target = nullptr;
  i18n_mime_encoding_t encoding = I18N_MIME_NONE;
  const MimeText body(i18n_mime_easy_encode(str, 0.3, &encoding, &target));
  const MimeText name(target);
  sum.add(body.data);
  sum.add(name.data);
  sum.add(MimeText(i18n_mime_easy_encode_header(str, 0.3)).data);
  sum.add(MimeText(i18n_mime_easy_encode_header_qp(str)).data);
  sum.add(MimeText(i18n_mime_easy_encode_header_b64(str)).data);
}

template <class Encoder>
void use_encoder(exercise::Checksum& sum, const char* charset) {
  Encoder encoder(charset);
  Encoder copy(encoder);
  const Encoder moved(std::move(encoder));
  copy = moved;
  sum.add(copy.get_limit_byte_size());
  sum.add(get_encoding_str(copy.get_encoding_type()));
}

void use_classes(exercise::Checksum& sum, const char* charset) {
  use_encoder<i18n_mime::QPBodyEncoder>(sum, charset);
  use_encoder<i18n_mime::B64BodyEncoder>(sum, charset);
  use_encoder<i18n_mime::QPHeaderEncoder>(sum, charset);
  use_encoder<i18n_mime::B64HeaderEncoder>(sum, charset);
  i18n_mime::HeaderLineCycle words(charset, I18N_MIME_QP);
  i18n::LineCycle lines(76, "> ", charset, "\n");
  lines = words;
  sum.add(lines.get_num_bytes_avail());
  sum.add(words.is_legal());
  i18n_mime::QPHeaderEncodingTable header_table;
  i18n_mime::QPBodyEncodingTable body_table;
  for (i18n_mime::QPEncodingTable* table :
       std::initializer_list<i18n_mime::QPEncodingTable*>{&header_table, &body_table}) {
    sum.add(table->get_number_qp_encoded_bytes(charset));
    sum.add(table->get_byte_size_qp_encoded_str(odd_bytes));
  }
  UConverter* converter = i18n::open_ucnv_converter(charset);
  if (converter != nullptr) ucnv_close(converter);
  sum.add(converter != nullptr);
}

}  // namespace

// These take the place of the kernel services' own.
int imsg_print(int kind, const void* /*catalog*/, int index, ...) {
  if (messages == nullptr || index < 0) return 0;  // the banner tells the time of the build
  char text[4096];
  std::va_list args;
  va_start(args, index);
  std::vsnprintf(text, sizeof text, _i18n_i18n_msg_table_adr()->texts[index], args);
  va_end(args);
  messages->add(kind);
  messages->add(text);
  return 0;
}

void pfm_assert_fail(const char* expression, const char* /*source*/, int /*line*/) {
  if (messages != nullptr) messages->add(expression);
}

namespace exercise {

// FNV-1a.
void Checksum::add(std::string_view bytes) {
  for (const char byte : bytes) {
    value_ = (value_ ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  add(static_cast<std::int64_t>(bytes.size()));
}

void Checksum::add(std::int64_t number) {
  value_ = (value_ ^ static_cast<std::uint64_t>(number)) * 0x100000001b3;
}

struct Charsets::Call {
  int index;
  const char* name;
  i18n_charset_t* charset;
  i18n_charset_t* utf8_charset;
  std::vector<std::string> encoded;  // as much of each text as the charset has
  Results results;
};

Charsets::Charsets() : utf8_(-1), mutexes_(static_cast<size_t>(ucnv_countAvailable())) {
  i18n_charset_t** const all = i18n_charset_open_all();
  for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
    names_.emplace_back(ucnv_getAvailableName(i));
    first_names_.push_back(static_cast<size_t>(std::find(all, all + i, all[i]) - all));
    if (names_.back() == "UTF-8") utf8_ = i;
  }
  if (utf8_ < 0) throw std::runtime_error("ICU has no UTF-8");
}

Results Charsets::exercise(int index) {
  Call call = {index, get_name(index), open(index), open(utf8_), {}, {}};
  messages = &call.results.bytes;
  call.results.bytes.add(i18n_charset_get_name(call.charset));
  convert_from_and_to_utf8(call);
  convert_from_another(call);
  for (size_t i = 0; i < std::size(texts); ++i) {
    encode(call.results.bytes, texts[i], "UTF-8", call.name);
    encode(call.results.bytes, call.encoded[i], call.name, "UTF-8");
    encode(call.results.bytes, call.encoded[i], call.name, call.name);
    encode(call.results.bytes, call.encoded[i], call.name, nullptr);
    encode_from_default(call.results.bytes, texts[i]);
  }
  encode(call.results.bytes, odd_bytes, call.name, "ISO-2022-JP");
  encode(call.results.bytes, texts[1], "no-such", call.name);
  call.results.text.add(i18n_mime_get_body_to_charset_name(call.name));
  call.results.text.add(i18n_mime_get_header_to_charset_name(call.name));
  call.results.text.add(MimeText(i18n_mime_transform_charset_name(call.name)).data);
  use_classes(call.results.text, call.name);
  libqorvii18n_print_verid();
  messages = nullptr;
  return call.results;
}

// One thread at a time in the whole process.
i18n_charset_t* Charsets::open(int index) {
  const std::lock_guard<std::mutex> lock(registry_);
  i18n_charset_t* const charset = i18n_charset_open(get_name(index));
  if (i18n_charset_open_all()[index] != charset ||
      (index == utf8_ && i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF8) != charset)) {
    throw std::runtime_error(std::string(get_name(index)) + " has two handles");
  }
  return charset;
}

// Two threads must not convert with one handle.
std::pair<Charsets::Lock, Charsets::Lock> Charsets::lock_handles(int index, int other_index) {
  const size_t handle = first_names_[static_cast<size_t>(index)];
  const size_t other_handle = first_names_[static_cast<size_t>(other_index)];
  Lock lock(mutexes_[handle], std::defer_lock);
  Lock other_lock(mutexes_[other_handle], std::defer_lock);
  if (handle == other_handle) {
    lock.lock();
  } else {
    std::lock(lock, other_lock);
  }
  return {std::move(lock), std::move(other_lock)};
}

void Charsets::convert_from_and_to_utf8(Call& call) {
  const auto locks = lock_handles(call.index, utf8_);
  Results& results = call.results;
  for (const std::string& text : texts) {
    const Conversion there = convert(call.utf8_charset, text, call.charset);
    results.bytes.add(there.output);
    add_end(results.text, there);
    const Conversion back = convert(call.charset, there.output, call.utf8_charset);
    results.text.add(back.output);
    add_end(results.text, back);
    convert_otherwise(results, call.utf8_charset, text, call.charset);
    call.encoded.push_back(there.output);
  }
  const Conversion odd = convert(call.charset, odd_bytes, call.utf8_charset);
  results.bytes.add(odd.output);
  add_end(results.bytes, odd);

  i18n_iconv_t* const handle = i18n_iconv_open(call.charset, call.utf8_charset);
  results.text.add(handle != nullptr);
  if (handle != nullptr) i18n_iconv_reset(handle);
  i18n_iconv_close(handle);
  results.text.add(i18n_iconv() + i18n_iconv_detect_codeset(call.name));
}

// Without UTF-8, which all threads share, so that conversions run at once.
void Charsets::convert_from_another(Call& call) {
  const int other = (call.index + size() - 1) % size();
  if (call.index == utf8_ || other == utf8_) return;
  i18n_charset_t* const from = open(other);
  std::vector<std::string> encoded;
  {
    const auto locks = lock_handles(other, utf8_);
    for (const std::string& text : texts) {
      encoded.push_back(convert(call.utf8_charset, text, from).output);
    }
  }
  const auto locks = lock_handles(call.index, other);
  for (const std::string& text : encoded) {
    const Conversion result = convert(from, text, call.charset);
    call.results.bytes.add(result.output);
    add_end(call.results.text, result);
    convert_otherwise(call.results, from, text, call.charset);
  }
}

}  // namespace exercise
