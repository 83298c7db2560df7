// A processor made of an iterator, which converts, and an encoder.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <qorviks.h>
#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "conversion/chunk_sizes.h"
#include "conversion/trivial_iter.h"
#include "front/processor.h"

namespace i18n_mime {

template <class Iter>
class ConverterEncoder : public Processor {
 public:
  // In error when a name is null or a charset does not open. With allow_trivial, two equal names
  // mean that there is nothing to convert.
  ConverterEncoder(const char* from, const char* to, bool allow_trivial, int max_chunk_bytes) {
    if (from == nullptr || to == nullptr) {
      set_error();
      return;
    }
    if (allow_trivial && std::strcmp(from, to) == 0) {
      iter = std::make_unique<i18n::TrivialIter>(max_chunk_bytes);
      return;
    }
    iter = std::make_unique<Iter>(from, to, i18n::get_unit_chunk(max_chunk_bytes), max_chunk_bytes);
    if (iter->is_error()) set_error();
  }

  void borrow_in_str(std::string_view input) override {
    if (is_ok()) iter->borrow_in_str(input);
  }

  void process() override {
    if (is_error() || is_processed_) return;
    attempt([this] {
      if (limit_chunks()) encode_chunks();
    });
  }

  // Null when no encoder was made.
  const GenericEncoder* get_encoder() const { return encoder.get(); }

 protected:
  // Destroyed from the last to the first, and the buffer after them.
  std::unique_ptr<GenericEncoder> encoder;
  std::unique_ptr<i18n::CharsetToCharsetIterPrototype> iter;

 private:
  void encode_chunks() {
    is_processed_ = true;
    do {
      iter->next_chunk();
      encoder->encode(*iter, buffer);
      if (iter->is_error()) {
        set_error();
        return;
      }
    } while (iter->has_next_chunk());
    encoder->complete(buffer);
  }

  // An encoder whose words have no room for any text would never get to the end of it.
  bool limit_chunks() {
    const int limit = encoder->get_limit_byte_size();
    if (limit == no_limit) return true;
    if (limit < 1) {
      pfm_assert_fail("get_limit_byte_size() > 0", "lib/i18n/front", __LINE__);
      set_error();
      return false;
    }
    iter->set_limit_byte_size(limit);
    return true;
  }

  static constexpr int no_limit = -1;

  bool is_processed_ = false;
};

// One whose encoder is known from the start.
template <class Iter, class Encoder>
class ConcreteConverterEncoder : public ConverterEncoder<Iter> {
 public:
  ConcreteConverterEncoder(const char* from, const char* to, bool allow_trivial,
                           int max_chunk_bytes)
      : ConverterEncoder<Iter>(from, to, allow_trivial, max_chunk_bytes) {
    if (to != nullptr) this->encoder = std::make_unique<Encoder>(to);
  }
};

using BodyIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeIter>;
using HeaderIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeFullCharIter>;

template <class Encoder>
class BodyConverterEncoder : public ConcreteConverterEncoder<BodyIter, Encoder> {
 public:
  BodyConverterEncoder(const char* from, const char* to, int max_chunk_bytes)
      : ConcreteConverterEncoder<BodyIter, Encoder>(from, to, true, max_chunk_bytes) {}
};

template <class Encoder>
class HeaderConverterEncoder : public ConcreteConverterEncoder<HeaderIter, Encoder> {
 public:
  HeaderConverterEncoder(const char* from, const char* to, int max_chunk_bytes)
      : ConcreteConverterEncoder<HeaderIter, Encoder>(from, to, false, max_chunk_bytes) {}
};

}  // namespace i18n_mime
