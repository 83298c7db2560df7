// The C functions.
#include <qorvii18n/i18n_text.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "text/stream/stream_converter.h"

using text::Input;
using text::Output;
using text::Shortcut;
using text::Source;
using text::StreamConverter;
using text::Target;

struct i18n_text_converter_t {
  StreamConverter stream;
  // Of the input of a call of i18n_text_convert_to() that is to be repeated.
  size_t taken = 0;
};

namespace {

std::unique_ptr<i18n_text_converter_t> open(const char* from, const char* to,
                                            i18n_text_status_t& status) noexcept {
  try {
    if (from == nullptr) from = "UTF-8";
    if (to == nullptr) to = "UTF-8";
    std::optional<Source> source = Source::open(from);
    status = I18N_TEXT_UNKNOWN_SOURCE;
    if (!source) return nullptr;
    std::optional<Target> target = Target::open(to);
    status = I18N_TEXT_UNKNOWN_TARGET;
    if (!target) return nullptr;
    status = I18N_TEXT_OK;
    return std::unique_ptr<i18n_text_converter_t>(new i18n_text_converter_t{
        StreamConverter(*std::move(source), *std::move(target), Shortcut(from, to))});
  } catch (const std::bad_alloc&) {
    status = I18N_TEXT_OUT_OF_MEMORY;
    return nullptr;
  }
}

struct FreeBlock {
  void operator()(char* block) const { std::free(block); }
};
using Block = std::unique_ptr<char, FreeBlock>;

bool resize(Block& block, size_t size) {
  auto* const resized = static_cast<char*>(std::realloc(block.get(), size));
  if (resized == nullptr) return false;
  static_cast<void>(block.release());
  block.reset(resized);
  return true;
}

// Null after a failure.
Block convert_all(i18n_text_converter_t& converter, std::string_view text, size_t& size,
                  i18n_text_error_t& error) noexcept {
  Input input = {text.data(), text.data() + text.size()};
  Block block;
  size = 0;
  for (size_t room = text.size() + text.size() / 8 + 512; resize(block, room + 1);
       room += room / 2) {
    Output output = {block.get() + size, block.get() + room};
    const i18n_text_status_t status = converter.stream.convert(input, output, true);
    size = static_cast<size_t>(output.next - block.get());
    if (status == I18N_TEXT_OK) {
      block.get()[size] = '\0';
      resize(block, size + 1);
      return block;
    }
    if (status != I18N_TEXT_FULL && status != I18N_TEXT_OUT_OF_MEMORY) {
      error = converter.stream.error();
      return nullptr;
    }
    if (status == I18N_TEXT_OUT_OF_MEMORY) break;
  }
  error.status = I18N_TEXT_OUT_OF_MEMORY;
  return nullptr;
}

}  // namespace

i18n_text_converter_t* i18n_text_open(const char* from, const char* to,
                                      i18n_text_status_t* status) {
  i18n_text_status_t unwanted;
  return open(from, to, status != nullptr ? *status : unwanted).release();
}

i18n_text_status_t i18n_text_convert(i18n_text_converter_t* converter, const char** input,
                                     const char* input_end, char** output, char* output_end,
                                     int is_last) {
  Input in = {input != nullptr ? *input : nullptr, input_end};
  Output out = {*output, output_end};
  const i18n_text_status_t status = converter->stream.convert(in, out, is_last != 0);
  if (input != nullptr) *input = in.next;
  *output = out.next;
  return status;
}

i18n_text_status_t i18n_text_convert_to(i18n_text_converter_t* converter, const char* input,
                                        size_t length, int is_last, i18n_text_write_t write,
                                        void* context) {
  Input in = {input + std::min(length, std::exchange(converter->taken, 0)), input + length};
  for (;;) {
    char room[4096];
    Output out = {room, std::end(room)};
    const i18n_text_status_t status = converter->stream.convert(in, out, is_last != 0);
    if (out.next != room && write(context, room, static_cast<size_t>(out.next - room)) != 0) {
      converter->stream.stop();
      return I18N_TEXT_STOPPED;
    }
    if (status == I18N_TEXT_OUT_OF_MEMORY) {
      converter->taken = static_cast<size_t>(in.next - input);
    }
    if (status != I18N_TEXT_FULL) return status;
  }
}

void i18n_text_get_error(const i18n_text_converter_t* converter, i18n_text_error_t* error) {
  if (error != nullptr) *error = converter->stream.error();
}

void i18n_text_reset(i18n_text_converter_t* converter) {
  converter->stream.reset();
  converter->taken = 0;
}

void i18n_text_close(i18n_text_converter_t* converter) { delete converter; }

char* i18n_text_convert_all(const char* from, const char* to, const char* text, size_t length,
                            size_t* result_length, i18n_text_error_t* error) {
  i18n_text_error_t failure = {};
  size_t size = 0;
  Block result;
  if (const auto converter = open(from, to, failure.status)) {
    result = convert_all(*converter, {text, length}, size, failure);
  }
  if (result_length != nullptr) *result_length = result != nullptr ? size : 0;
  if (error != nullptr) *error = failure;
  return result.release();
}

void i18n_text_free(char* result) { std::free(result); }
