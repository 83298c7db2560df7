// A converter-encoder that chooses between quoted-printable and base64 when it sees its input.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "front/converter_encoder.h"
#include "transfer/qp_forms.h"

namespace i18n_mime {

// How many bytes of a text, in its source charset, the table marks.
inline size_t count_marked(const char* table, std::string_view text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  return transfer::count_escapes(table, bytes, text.size());
}

// Quoted-printable when the threshold is greater than the fraction of marked bytes, else base64:
// also for an empty text, which has no such fraction.
inline i18n_mime_encoding_t choose_encoding(size_t marked, size_t size, double qp_threshold) {
  const double fraction = static_cast<double>(marked) / static_cast<double>(size);
  return qp_threshold > fraction ? I18N_MIME_QP : I18N_MIME_B64;
}

template <class Iter, class QPTable, class QPEncoder, class B64Encoder>
class ConverterEncoderChooser : public ConverterEncoder<Iter>, private QPTable {
 public:
  // marked: how many bytes of the input the table marks, where that was counted already.
  ConverterEncoderChooser(const char* from, const char* to, bool allow_trivial, double threshold,
                          int max_chunk_bytes, std::optional<size_t> marked = std::nullopt)
      : ConverterEncoder<Iter>(from, to, allow_trivial, max_chunk_bytes),
        qp_threshold(threshold),
        to_charset(to != nullptr ? to : ""),
        marked_(marked) {}

  void borrow_in_str(std::string_view input) override {
    if (this->is_error()) return;
    this->attempt([this, input] { choose_encoder(input); });
    ConverterEncoder<Iter>::borrow_in_str(input);
  }

 private:
  void choose_encoder(std::string_view input) {
    const size_t marked = marked_ ? *marked_ : count_marked(this->table, input);
    if (choose_encoding(marked, input.size(), qp_threshold) == I18N_MIME_QP) {
      this->encoder = std::make_unique<QPEncoder>(to_charset.c_str());
    } else {
      this->encoder = std::make_unique<B64Encoder>(to_charset.c_str());
    }
  }

  double qp_threshold;
  std::string to_charset;  // the encoder borrows it
  std::optional<size_t> marked_;
};

using BodyChooserBase =
    ConverterEncoderChooser<BodyIter, QPBodyEncodingTable, QPBodyEncoder, B64BodyEncoder>;
using HeaderChooserBase =
    ConverterEncoderChooser<HeaderIter, QPHeaderEncodingTable, QPHeaderEncoder, B64HeaderEncoder>;

class BodyConverterEncoderChooser : public BodyChooserBase {
 public:
  BodyConverterEncoderChooser(const char* from, const char* to, double threshold,
                              int max_chunk_bytes, std::optional<size_t> marked = std::nullopt)
      : BodyChooserBase(from, to, true, threshold, max_chunk_bytes, marked) {}
};

class HeaderConverterEncoderChooser : public HeaderChooserBase {
 public:
  HeaderConverterEncoderChooser(const char* from, const char* to, double threshold,
                                int max_chunk_bytes, std::optional<size_t> marked = std::nullopt)
      : HeaderChooserBase(from, to, false, threshold, max_chunk_bytes, marked) {}
};

}  // namespace i18n_mime
