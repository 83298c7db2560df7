// What a C function puts on its stack: one conversion that falls back to a copy of the input.
#pragma once

#include <optional>

#include "conversion/chunk_sizes.h"
#include "core/c_string.h"
#include "front/charset_finder.h"
#include "front/converter_encoder.h"
#include "front/encoding_chooser.h"

// What all of them do.
class Duplicator {
 public:
  Duplicator() = default;
  Duplicator(const Duplicator&) = delete;
  Duplicator& operator=(const Duplicator&) = delete;
  virtual ~Duplicator() = default;

  // The encoded text, or a copy of the text when there is no processor or it fails.
  char* encode_or_copy(const char* text) {
    if (i18n_mime::Processor* processor = get_processor()) {
      if (char* result = processor->convert(text)) return result;
    }
    return i18n::copy_c_string(text).release();
  }

 private:
  virtual i18n_mime::Processor* get_processor() = 0;  // null when there is no target charset
};

// Both charsets are given, and the encoding, too.
template <class ConvEncoder>
class PlainConverterEncoder : public Duplicator {
 public:
  PlainConverterEncoder(const char* from, const char* to)
      : converter_encoder_(from, to, i18n::chunk_bytes) {}

 private:
  i18n_mime::Processor* get_processor() override { return &converter_encoder_; }

  ConvEncoder converter_encoder_;
};

// The encoding is given. The charsets are ICU's default and the mail charset that the finder has
// for it, if any.
template <class ConvEncoder, class Finder>
class EasyEncoder : public Duplicator, public Finder {
 public:
  // to_charset_out receives the mail charset's name, which belongs to the finder's table.
  explicit EasyEncoder(const char** to_charset_out = nullptr)
      : EasyEncoder(Finder(nullptr), to_charset_out) {}
  // By a finder of the default that has looked already.
  explicit EasyEncoder(const Finder& finder, const char** to_charset_out = nullptr)
      : Finder(finder) {
    if (this->to_charset != nullptr) {
      converter_encoder_.emplace(this->from_charset, this->to_charset, i18n::chunk_bytes);
    }
    if (to_charset_out != nullptr) *to_charset_out = this->to_charset;
  }

 private:
  i18n_mime::Processor* get_processor() override {
    return converter_encoder_ ? &*converter_encoder_ : nullptr;
  }

  std::optional<ConvEncoder> converter_encoder_;
};

// The encoding is chosen. The source charset is the one given or else ICU's default, the target the
// one given or else the mail charset that the finder has for the source, if any.
template <class Chooser, class Finder>
class PlainEncoderChooser : public Duplicator, public Finder {
 public:
  PlainEncoderChooser(const char* from, const char* to, double threshold,
                      i18n_mime_encoding_t* chosen_out)
      : PlainEncoderChooser(Finder(from), to, threshold, chosen_out) {}
  // By a finder of the source that has looked already, and what was counted already, if anything.
  PlainEncoderChooser(const Finder& finder, const char* to, double threshold,
                      i18n_mime_encoding_t* chosen_out, std::optional<size_t> marked = std::nullopt)
      : Finder(finder), encoding_out(chosen_out) {
    if (to != nullptr) this->to_charset = to;
    if (this->to_charset != nullptr) {
      chooser.emplace(this->from_charset, this->to_charset, threshold, i18n::chunk_bytes, marked);
    }
  }

  char* encode(const char* text) {
    char* result = this->encode_or_copy(text);
    if (encoding_out != nullptr) *encoding_out = get_chosen_encoding();
    return result;
  }

 private:
  i18n_mime::Processor* get_processor() override { return chooser ? &*chooser : nullptr; }

  i18n_mime_encoding_t get_chosen_encoding() const {
    if (!chooser || chooser->get_encoder() == nullptr) return I18N_MIME_NONE;
    return chooser->get_encoder()->get_encoding_type();
  }

  i18n_mime_encoding_t* encoding_out;
  std::optional<Chooser> chooser;
};
