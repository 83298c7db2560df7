// Encoding tables and the four transfer encoders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_mime.hpp>

#include <memory>
#include <string>
#include <vector>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "i18n_mime_encoding/base64.h"
#include "support/diagnostics.h"

namespace {

TEST(EncodingName, OfAnythingElseIsTheErrorText) {
  EXPECT_STREQ(get_encoding_str(I18N_MIME_NONE), "None");
  EXPECT_STREQ(get_encoding_str(I18N_MIME_QP), "Quoted Printable");
  EXPECT_STREQ(get_encoding_str(I18N_MIME_B64), "Base64");
  for (const int other : {3, 1000, -1}) {
    EXPECT_STREQ(get_encoding_str(static_cast<i18n_mime_encoding_t>(other)),
                 "\"Error: No such encoding\"");
  }
}

std::string unmarked(i18n_mime::QPEncodingTable& table) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    if (!table.should_encode(static_cast<char>(byte))) bytes += static_cast<char>(byte);
  }
  return bytes;
}

TEST(QPTable, PassesExactlyTheseBytes) {
  i18n_mime::QPBodyEncodingTable body;
  EXPECT_EQ(unmarked(body),
            " !\"%&'()*+,-./0123456789:;<>?ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
  i18n_mime::QPHeaderEncodingTable header;
  EXPECT_EQ(unmarked(header),
            "!\"%&'()*+,-./0123456789:;<>ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(body.get_number_qp_encoded_bytes("a=b ?"), 1);
  EXPECT_EQ(body.get_byte_size_qp_encoded_str("a=b ?"), 7);
  EXPECT_EQ(header.get_number_qp_encoded_bytes("a=b ?"), 3);
  EXPECT_EQ(header.get_byte_size_qp_encoded_str("a=b ?"), 11);
  EXPECT_EQ(header.get_byte_size_qp_encoded_str(""), 0);
}

TEST(QPTable, OfTheCallerIsFilledOnlyWhenAsked) {
  char entries[256] = {};
  entries['x'] = 1;
  entries['y'] = 2;  // only exactly 1 marks a byte
  i18n_mime::QPEncodingTable kept(entries, true);
  EXPECT_EQ(kept.get_number_qp_encoded_bytes("xyz=="), 1);
  kept.set_encode_chars("=");
  kept.set_encode_chars("");
  kept.set_encode_char('z');
  EXPECT_EQ(kept.get_number_qp_encoded_bytes("xyz=="), 4);
  i18n_mime::QPEncodingTable filled(entries, false);
  i18n_mime::QPBodyEncodingTable body;
  EXPECT_EQ(unmarked(filled), unmarked(body));
  EXPECT_EQ(unmarked(kept), unmarked(filled)) << "one table";
}

// Hands out ready-made chunks, each byte its own character unless offsets say otherwise.
class ChunkFeeder : public i18n::CharsetToCharsetIterPrototype {
 public:
  void feed(const i18n::StrWithOffsets<char>& next) {
    current = next;
    chunk = next.text;
  }
  void next_chunk() override {}
  bool has_next_chunk() override { return false; }
  void set_limit_byte_size(int) override {}
  i18n::CharIter<char> get_char_iter() override { return i18n::CharIter<char>(current); }
  void set_in_str(std::string&&) override {}

 private:
  i18n::StrWithOffsets<char> current;
};

std::string encode(i18n_mime::GenericEncoder& encoder, const std::vector<std::string>& chunks,
                   int character_size = 1) {
  ChunkFeeder feeder;
  i18n::StringBuffer<char> buffer(256);
  for (const auto& chunk : chunks) {
    i18n::StrWithOffsets<char> converted;
    converted.text = chunk;
    for (size_t i = 0; i <= chunk.size(); ++i) {
      converted.offsets.push_back(static_cast<int32_t>(i) / character_size);
    }
    feeder.feed(converted);
    encoder.encode(feeder, buffer);
  }
  encoder.complete(buffer);
  return buffer.get_str();
}

std::string x(size_t count) { return std::string(count, 'x'); }

std::string escapes(const std::string& text) {
  std::string result;
  for (const char byte : text) {
    char form[4];
    std::snprintf(form, sizeof form, "=%02X", static_cast<unsigned char>(byte));
    result += form;
  }
  return result;
}

struct BodyCase {
  std::vector<std::string> chunks;
  std::string encoded;
};

TEST(QPBodyEncoder, EscapesAndFolds) {
  const std::string e_acute = "\xc3\xa9";
  std::string accents;
  for (int i = 0; i < 15; ++i) accents += e_acute;
  const BodyCase cases[] = {
      {{""}, ""},
      {{"a\r\nb c \t", "end "}, "a=0D=0Ab c =09end=20"},
      {{"a\t"}, "a=09"},
      {{x(200)}, x(75) + "=\r\n" + x(73) + "=\r\n" + x(52)},
      {{x(75)}, x(75)},
      {{x(76)}, x(75) + "=\r\n" + "x"},
      {{x(73) + "="}, x(73) + "=\r\n=3D"},
      {{x(72) + "="}, x(72) + "=3D"},
      {{x(73) + "=y"}, x(73) + "=\r\n=3Dy"},
      // a blank at the end: on its own line when its escape does not fit beside itself
      {{x(71) + " "}, x(71) + "=20"},
      {{x(72) + " "}, x(72) + "=\r\n=20"},
      {{x(75) + " "}, x(75) + "=\r\n=20"},
      {{x(10) + "  "}, x(10) + " =20"},
      {{accents}, escapes(accents.substr(0, 25)) + "=\r\n" + escapes(accents.substr(25))},
      {{accents.substr(0, 7), "", accents.substr(7)},
       escapes(accents.substr(0, 25)) + "=\r\n" + escapes(accents.substr(25))},
  };
  for (const auto& c : cases) {
    i18n_mime::QPBodyEncoder encoder;
    EXPECT_EQ(encode(encoder, c.chunks), c.encoded);
  }
}

TEST(B64BodyEncoder, DoesNotDependOnTheChunks) {
  const BodyCase cases[] = {
      {{""}, ""},
      {{"f"}, "Zg=="},
      {{"fo"}, "Zm8="},
      {{"foo"}, "Zm9v"},
      {{"foob"}, "Zm9vYg=="},
      {{"fooba"}, "Zm9vYmE="},
      {{"foobar"}, "Zm9vYmFy"},
      {{"fo", "obar"}, "Zm9vYmFy"},
      {{"f", "", "o", "o", "b"}, "Zm9vYg=="},
      {{"\xfb\xff\xfe"}, "+//+"},
  };
  for (const auto& c : cases) {
    i18n_mime::B64BodyEncoder encoder;
    EXPECT_EQ(encode(encoder, c.chunks), c.encoded);
  }
  const std::string text(200, '\0');
  const std::string folded = std::string(76, 'A') + "\r\n" + std::string(72, 'A') + "\r\n" +
                             std::string(72, 'A') + "\r\n" + std::string(47, 'A') + "=";
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    i18n_mime::B64BodyEncoder encoder;
    EXPECT_EQ(encode(encoder, {text.substr(0, cut), text.substr(cut)}), folded) << cut;
  }
}

TEST(QPHeaderEncoder, KeepsCharactersWholeAndFoldsBetweenThem) {
  const std::string a(100, 'a');
  const std::string pairs(24, '\xc3');
  struct {
    std::vector<std::string> chunks;
    int character_size;
    std::string encoded;
  } cases[] = {
      {{""}, 1, "=?UTF-8?Q?\?="},
      {{"a b?_="}, 1, "=?UTF-8?Q?a=20b=3F=5F=3D?="},
      {{"a", "", "b"}, 1, "=?UTF-8?Q?ab?="},
      {{a}, 1, "=?UTF-8?Q?" + a.substr(0, 63) + "?=\r\n\t=?UTF-8?Q?" + a.substr(63) + "?="},
      {{a.substr(0, 50), a.substr(50)},
       1,
       "=?UTF-8?Q?" + a.substr(0, 63) + "?=\r\n\t=?UTF-8?Q?" + a.substr(63) + "?="},
      {{pairs},
       2,
       "=?UTF-8?Q?" + escapes(pairs.substr(0, 20)) + "?=\r\n\t=?UTF-8?Q?" +
           escapes(pairs.substr(20)) + "?="},
  };
  for (const auto& c : cases) {
    i18n_mime::QPHeaderEncoder encoder("UTF-8");
    EXPECT_EQ(encode(encoder, c.chunks, c.character_size), c.encoded);
  }
  EXPECT_TRUE(take_diagnostics().empty());
  i18n_mime::QPHeaderEncoder encoder("UTF-8");
  encode(encoder, {std::string(21, '\x80')}, 21);
  EXPECT_EQ(take_diagnostics().size(), 1u) << "a character longer than a word is reported";
}

TEST(B64HeaderEncoder, MakesAWordOfEachChunk) {
  struct {
    const char* charset;
    std::vector<std::string> chunks;
    std::string encoded;
    int limit;
  } cases[] = {
      {"UTF-8", {""}, "=?UTF-8?B?\?=", 45},
      {"UTF-8", {"foo"}, "=?UTF-8?B?Zm9v?=", 45},
      {"UTF-8", {"foob", "ar"}, "=?UTF-8?B?Zm9vYg==?=\r\n\t=?UTF-8?B?YXI=?=", 45},
      {"ISO-2022-JP",
       {std::string(39, '\0'), std::string(10, '\0')},
       "=?ISO-2022-JP?B?" + std::string(52, 'A') + "?=\r\n\t=?ISO-2022-JP?B?" +
           std::string(14, 'A') + "==?=",
       39},
      {"UTF-8", {std::string(150, '\0')}, "=?UTF-8?B?" + std::string(200, 'A') + "?=", 45},
  };
  for (const auto& c : cases) {
    i18n_mime::B64HeaderEncoder encoder(c.charset);
    EXPECT_EQ(encoder.get_limit_byte_size(), c.limit);
    EXPECT_EQ(encode(encoder, c.chunks), c.encoded);
  }
  EXPECT_EQ(i18n_mime::B64HeaderEncoder(x(61).c_str()).get_limit_byte_size(), 3);
  EXPECT_EQ(i18n_mime::B64HeaderEncoder(x(62).c_str()).get_limit_byte_size(), 0);
  EXPECT_EQ(i18n_mime::B64HeaderEncoder(x(80).c_str()).get_limit_byte_size(), -9);
}

// Copies and assigned objects go on where the source stood, and stand on their own.
template <class Encoder>
void expect_copies_go_on(const std::string& first, const std::string& second) {
  auto source = std::make_unique<Encoder>("UTF-8");
  ChunkFeeder feeder;
  i18n::StringBuffer<char> ignored(256);
  i18n::StrWithOffsets<char> converted;
  converted.text = first;
  converted.offsets.assign(first.size() + 1, 0);
  feeder.feed(converted);
  source->encode(feeder, ignored);
  Encoder copy(*source), assigned("KOI8-R");
  assigned = copy;
  Encoder moved(std::move(assigned));
  const std::string expected = encode(*source, {second});
  source.reset();
  EXPECT_EQ(encode(copy, {second}), expected);
  EXPECT_EQ(encode(moved, {second}), expected);
}

TEST(Encoders, AreCopiedWithTheirState) {
  expect_copies_go_on<i18n_mime::QPBodyEncoder>(x(70), x(20));
  expect_copies_go_on<i18n_mime::B64BodyEncoder>("fo", "obar");
  expect_copies_go_on<i18n_mime::QPHeaderEncoder>(x(50), x(20));
  expect_copies_go_on<i18n_mime::B64HeaderEncoder>("foo", "bar");
}

TEST(Encoders, TellTheirKindAndLimit) {
  EXPECT_EQ(i18n_mime::QPBodyEncoder().get_encoding_type(), I18N_MIME_QP);
  EXPECT_EQ(i18n_mime::B64BodyEncoder().get_encoding_type(), I18N_MIME_B64);
  EXPECT_EQ(i18n_mime::QPHeaderEncoder("UTF-8").get_encoding_type(), I18N_MIME_QP);
  EXPECT_EQ(i18n_mime::B64HeaderEncoder("UTF-8").get_encoding_type(), I18N_MIME_B64);
  EXPECT_EQ(i18n_mime::QPBodyEncoder().get_limit_byte_size(), -1);
  EXPECT_EQ(i18n_mime::B64BodyEncoder().get_limit_byte_size(), -1);
  EXPECT_EQ(i18n_mime::QPHeaderEncoder("UTF-8").get_limit_byte_size(), -1);
}

// Marks cannot be taken back, so this runs in a process of its own.
TEST(EncodersDeathTest, SeeBytesMarkedLater) {
  EXPECT_EXIT(
      {
        i18n_mime::QPBodyEncodingTable older;
        i18n_mime::QPBodyEncoder encoder;
        i18n_mime::QPBodyEncodingTable().set_encode_char('x');
        i18n_mime::QPHeaderEncodingTable header;
        const bool seen = older.should_encode('x') && encode(encoder, {"xy"}) == "=78y" &&
                          !header.should_encode('x');
        std::exit(seen ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
