// Converter-encoders and the choice of an encoding, as the C functions use them.
#include <limits>
#include <stdexcept>

#include "front/encoding_chooser.h"
#include "support/testing.h"

namespace {

using namespace i18n_mime;

template <class ConvEncoder>
void expect_two_results(const std::string& input, const std::string& expected) {
  ConvEncoder converter_encoder("ISO-8859-1", "UTF-8", 256);
  converter_encoder.set_in_str(input);
  const std::string first = take(converter_encoder.get_result());
  EXPECT_EQ(first, expected);
  EXPECT_EQ(take(converter_encoder.get_result()), expected);
}

TEST(ConverterEncoder, GivesItsResultAsOftenAsAsked) {
  expect_two_results<BodyConverterEncoder<QPBodyEncoder>>("\xe9 ", "=C3=A9=20");
  expect_two_results<BodyConverterEncoder<B64BodyEncoder>>("\xe9", "w6k=");
  expect_two_results<HeaderConverterEncoder<QPHeaderEncoder>>("\xe9", "=?UTF-8?Q?=C3=A9?=");
  expect_two_results<HeaderConverterEncoder<B64HeaderEncoder>>("", "=?UTF-8?B?\?=");
}

TEST(ConverterEncoder, DestroysTheIteratorBeforeTheEncoder) {
  static std::string destroyed;
  struct Iter : i18n::TrivialIter {
    Iter(const char*, const char*, int, int chunk_bytes) : TrivialIter(chunk_bytes) {}
    ~Iter() override { destroyed += "iterator "; }
  };
  struct Encoder : QPBodyEncoder {
    using QPBodyEncoder::QPBodyEncoder;
    ~Encoder() override { destroyed += "encoder "; }
  };
  { ConcreteConverterEncoder<Iter, Encoder> converter_encoder("UTF-8", "UTF-8", false, 256); }
  EXPECT_EQ(destroyed, "iterator encoder ");
}

// What was encoded before counted as the result afterwards.
TEST(ConverterEncoder, IsInErrorAfterAnException) {
  struct Encoder : QPBodyEncoder {
    using QPBodyEncoder::QPBodyEncoder;
    void encode(
        i18n::CharsetToCharsetIterPrototype& iter, i18n::StringBuffer<char>& buffer) override {
      if (++chunks == 2) throw std::runtime_error("a service");
      QPBodyEncoder::encode(iter, buffer);
    }
    int chunks = 0;
  };
  ConcreteConverterEncoder<BodyIter, Encoder> converter_encoder("ISO-8859-1", "UTF-8", false, 256);
  converter_encoder.set_in_str(x(1000));
  EXPECT_THROW(take(converter_encoder.get_result()), std::runtime_error);
  EXPECT_TRUE(converter_encoder.is_error());
  EXPECT_EQ(converter_encoder.get_result(), nullptr);
}

TEST(ChooseEncoding, IsQuotedPrintableBelowTheThresholdOnly) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  char table[256] = {};
  table[static_cast<unsigned char>('=')] = 1;
  const std::tuple<const char*, double, i18n_mime_encoding_t> cases[] = {
      {"====abcd", 0.5, I18N_MIME_B64}, {"====abcd", 0.51, I18N_MIME_QP},
      {"abcd", 0, I18N_MIME_B64}, {"abcd", 1e-300, I18N_MIME_QP}, {"====", 1, I18N_MIME_B64},
      {"====", infinite, I18N_MIME_QP}, {"abcd", -infinite, I18N_MIME_B64},
      {"abcd", std::numeric_limits<double>::quiet_NaN(), I18N_MIME_B64},
      {"", infinite, I18N_MIME_B64}};
  for (const auto& [text, threshold, encoding] : cases) {
    const std::string_view bytes = text;
    EXPECT_EQ(choose_encoding(count_marked(table, bytes), bytes.size(), threshold), encoding)
        << text << threshold;
  }
}

}  // namespace
