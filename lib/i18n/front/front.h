// What a C function puts on its stack: one conversion that falls back to a copy of the input.
#pragma once

#include <memory>
#include <utility>

#include "conversion/chunk_sizes.h"
#include "core/c_string.h"
#include "front/charset_finder.h"
#include "front/converter_encoder.h"
#include "front/encoding_chooser.h"

class Duplicator {
 public:
  explicit Duplicator(std::unique_ptr<i18n_mime::Processor> owned) : processor(std::move(owned)) {}
  Duplicator(const Duplicator&) = delete;
  Duplicator& operator=(const Duplicator&) = delete;
  virtual ~Duplicator() = default;

  // The encoded text, or a copy of the text when there is no processor or it fails.
  char* encode_or_copy(const char* text) {
    if (processor) {
      if (char* result = processor->convert(text)) return result;
    }
    return i18n::copy_c_string(text).release();
  }

 protected:
  std::unique_ptr<i18n_mime::Processor> processor;
};

template <class ConvEncoder>
class PlainConverterEncoder : public Duplicator {
 public:
  PlainConverterEncoder(const char* from, const char* to)
      : Duplicator(std::make_unique<ConvEncoder>(from, to, i18n::chunk_bytes)) {}
};

// From ICU's default charset to the mail charset that the finder has for it, if any.
template <class ConvEncoder, class Finder>
class EasyEncoder : public Duplicator, public Finder {
 public:
  // to_charset_out receives the mail charset's name, which belongs to the finder's table.
  explicit EasyEncoder(const char** to_charset_out = nullptr)
      : Duplicator(nullptr), Finder(nullptr) {
    if (this->to_charset != nullptr) {
      this->processor =
          std::make_unique<ConvEncoder>(this->from_charset, this->to_charset, i18n::chunk_bytes);
    }
    if (to_charset_out != nullptr) *to_charset_out = this->to_charset;
  }
};

// To the charset given, or else to the mail charset that the finder has for the source.
template <class Chooser, class Finder>
class PlainEncoderChooser : public Duplicator, public Finder {
 public:
  PlainEncoderChooser(const char* from, const char* to, double threshold,
                      i18n_mime_encoding_t* chosen_out)
      : Duplicator(nullptr), Finder(from), encoding_out(chosen_out), chooser(nullptr) {
    if (to != nullptr) this->to_charset = to;
    if (this->to_charset == nullptr) return;
    auto owned = std::make_unique<Chooser>(this->from_charset, this->to_charset, threshold,
                                           i18n::chunk_bytes);
    chooser = owned.get();
    this->processor = std::move(owned);
  }

  char* encode(const char* text) {
    char* result = this->encode_or_copy(text);
    if (encoding_out != nullptr) *encoding_out = get_chosen_encoding();
    return result;
  }

 private:
  i18n_mime_encoding_t get_chosen_encoding() const {
    if (chooser == nullptr || chooser->get_encoder() == nullptr) return I18N_MIME_NONE;
    return chooser->get_encoder()->get_encoding_type();
  }

  i18n_mime_encoding_t* encoding_out;
  Chooser* chooser;  // the processor
};
