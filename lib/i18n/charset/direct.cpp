#include "charset/direct.h"

#include <cstring>
#include <utility>

#include "text/icu/limits.h"
#include "text/tables/route.h"

namespace i18n {

namespace {

using text::as_bytes;
using text::Bytes;
using text::Progress;
using text::Route;
using text::Stop;

const text::Charset* get_charset(const i18n_charset_t& handle) {
  const text::Charset* charset = handle.charset.load(std::memory_order_relaxed);
  if (charset == nullptr) {
    UErrorCode status = U_ZERO_ERROR;
    charset = text::find_charset(ucnv_getName(handle.converter, &status));
    handle.charset.store(charset, std::memory_order_relaxed);
  }
  return charset;
}

std::optional<Route> find_route(const i18n_charset_t& from, std::string_view input,
                                const i18n_charset_t& to) {
  constexpr size_t longest = size_t{1} << 29;  // well below what ICU would refuse
  const bool is_for_icu = from.has_unfinished_input || to.has_unfinished_output || input.empty() ||
                          input.size() > longest;
  if (is_for_icu) return std::nullopt;
  return Route::find(get_charset(from), get_charset(to), input.size());
}

// In a buffer of so many bytes for each unit that the text may have, and one byte.
CString convert(const Route& route, Bytes bytes, size_t bytes_per_unit, size_t* length) {
  const size_t most_units = route.count_units(bytes);
  if (most_units > text::most_bytes_at_once / bytes_per_unit - 1) return nullptr;
  const size_t room = bytes_per_unit * most_units;
  CString output = allocate_c_string(room + 1);
  const Progress progress =
      route.convert(bytes, reinterpret_cast<unsigned char*>(output.get()), room);
  if (progress.stop != Stop::kDone) return nullptr;
  output[progress.written] = '\0';
  *length = progress.written;
  return output;
}

// Converts a whole text piece by piece, for no output to nowhere. Returns how long it got.
std::optional<size_t> convert(const Route& route, Bytes text, unsigned char* output, size_t room) {
  unsigned char scratch[2048];
  size_t size = 0;
  for (;;) {
    const Progress progress = output != nullptr ? route.convert(text, output + size, room - size)
                                                : route.convert(text, scratch, sizeof scratch);
    size += progress.written;
    if (progress.stop == Stop::kDone) return size;
    if (progress.stop == Stop::kRefused || progress.read == 0) return std::nullopt;
    text = text.subspan(progress.read);
  }
}

// How long the converted text gets.
std::optional<size_t> measure(const Route& route, Bytes text) {
  const auto size = route.count_bytes(text);
  return size ? size : convert(route, text, nullptr, 0);
}

}  // namespace

CString convert_directly(const i18n_charset_t& from, std::string_view input,
                         const i18n_charset_t& to, size_t bytes_per_unit, size_t* length) {
  const auto route = find_route(from, input, to);
  if (!route) return nullptr;
  const Bytes text = as_bytes(input);
  CString output = convert(*route, text, bytes_per_unit, length);
  if (!output || route->counts_exactly()) return output;
  const size_t units = route->count_units(text, as_bytes({output.get(), *length}));
  return cut_c_string(std::move(output), bytes_per_unit * units + 1);
}

std::optional<size_t> convert_directly(const i18n_charset_t& from, std::string_view input,
                                       const i18n_charset_t& to, char* output, size_t capacity) {
  const Bytes text = as_bytes(input);
  auto route = find_route(from, input, to);
  if (!route) return std::nullopt;
  if (route->keeps(text)) {
    if (text.size() > capacity) return std::nullopt;
    std::memcpy(output, text.data(), text.size());
    return text.size();
  }
  CString copy;
  std::optional<size_t> length;
  // A copy takes less time than a second conversion, unless its pages come from the system and
  // there is little to do.
  constexpr size_t short_text = size_t{64} << 10;
  if (input.size() <= short_text || !route->is_simple()) {
    constexpr size_t most_bytes_per_unit = 4;
    copy = convert(*route, text, most_bytes_per_unit, &length.emplace());
    if (!copy) return std::nullopt;
  } else {
    length = measure(*route, text);
  }
  if (!length || *length > capacity) return std::nullopt;
  if (*length == capacity) {
    // To ICU a character that vanishes does not fit any more.
    route->refuse_invisible();
    if (measure(*route, text) != length) return std::nullopt;
  }
  if (!copy) return convert(*route, text, reinterpret_cast<unsigned char*>(output), *length);
  std::memcpy(output, copy.get(), *length);
  return length;
}

}  // namespace i18n
