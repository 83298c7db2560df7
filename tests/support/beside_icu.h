// A charset's tables beside ICU's strict converter: of whatever they take, that makes the same.
#pragma once

#include <unicode/ucnv.h>

#include <memory>
#include <string>
#include <vector>

#include "text/tables/table_maker.h"
#include "text/unicode/utf16.h"
#include "text/unicode/utf8.h"

class BesideIcu {
 public:
  explicit BesideIcu(const char* charset)
      : table_(text::make_table(charset)), converter_(ucnv_open(charset, &status_)) {
    if (U_FAILURE(status_)) return;
    ucnv_setFallback(converter_.getAlias(), false);
    ucnv_setToUCallBack(
        converter_.getAlias(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status_);
  }

  bool has_table() const { return table_ != nullptr; }
  UConverterType type() const { return ucnv_getType(converter_.getAlias()); }

  // How much of the bytes or of the text the tables take.
  size_t taken() const { return taken_; }

  bool agrees_on_bytes(const std::string& bytes) {
    out_.resize(text::Table::most_utf8_per_byte * bytes.size());
    const auto progress = table_->to_utf8(text::as_bytes(bytes), out_.data(), out_.size());
    return settle(progress, bytes.size()) && read(bytes.substr(0, taken_)) == made_;
  }

  // The text is well-formed.
  bool agrees_on_text(const std::string& text, text::Invisible invisible) {
    out_.resize(table_->most_bytes_per_utf8_byte() * text.size());
    const auto progress =
        table_->from_utf8(text::as_bytes(text), out_.data(), out_.size(), invisible);
    const bool drops = invisible == text::Invisible::kDropped;
    const std::string head = text.substr(0, taken_ = progress.read);
    return settle(progress, text.size()) && write(head, drops) == made_ &&
           (drops || read(made_) == head);
  }

  // Whether the converter takes the text, and gives it back.
  bool has_text(const std::string& text) {
    const std::string bytes = write(text, false);
    return bytes != failed && read(bytes) == text;
  }

  // The bytes in UTF-8, the text in the charset, or what is neither.
  std::string read(const std::string& bytes) {
    units_.resize(bytes.size() + 1);
    char16_t* target = units_.data();
    const char* source = bytes.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_resetToUnicode(converter_.getAlias());
    ucnv_toUnicode(converter_.getAlias(), &target, target + units_.size(), &source,
        source + bytes.size(), nullptr, true, &status);
    std::string text;
    units_.resize(static_cast<size_t>(target - units_.data()));
    return U_SUCCESS(status) && text::to_utf8(units_, text) == units_.npos ? text : failed;
  }
  std::string write(const std::string& text, bool drops) {
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setFromUCallBack(converter_.getAlias(), drops ? UCNV_FROM_U_CALLBACK_STOP : stop, nullptr,
        nullptr, nullptr, &status);
    ucnv_resetFromUnicode(converter_.getAlias());
    text::to_utf16(text, units_);
    std::string bytes(4 * units_.size() + 4, '\0');
    char* target = bytes.data();
    const char16_t* source = units_.data();
    ucnv_fromUnicode(converter_.getAlias(), &target, target + bytes.size(), &source,
        source + units_.size(), nullptr, true, &status);
    bytes.resize(static_cast<size_t>(target - bytes.data()));
    return U_SUCCESS(status) ? bytes : failed;
  }

  // Whether the bytes are no character yet, and can become one.
  bool begins_character(const std::string& bytes) {
    char16_t units[8];
    char16_t* target = units;
    const char* source = bytes.data();
    UErrorCode status = U_ZERO_ERROR;
    ucnv_resetToUnicode(converter_.getAlias());
    ucnv_toUnicode(converter_.getAlias(), &target, units + 8, &source, source + bytes.size(),
        nullptr, false, &status);
    return U_SUCCESS(status) && target == units;
  }

  inline static const std::string failed = "\x01 no such thing \x02";

 private:
  static void stop(const void*, UConverterFromUnicodeArgs*, const UChar*, int32_t, UChar32,
      UConverterCallbackReason, UErrorCode*) {}

  bool settle(const text::Progress& progress, size_t size) {
    taken_ = progress.read;
    made_.assign(reinterpret_cast<const char*>(out_.data()), progress.written);
    return progress.stop != text::Stop::kFull &&
           (progress.stop == text::Stop::kDone) == (taken_ == size);
  }

  UErrorCode status_ = U_ZERO_ERROR;
  std::unique_ptr<const text::Table> table_;
  icu::LocalUConverterPointer converter_;
  size_t taken_ = 0;
  std::string made_;
  std::vector<unsigned char> out_;  // as much as is promised to be enough
  std::u16string units_;
};
