// Encoding tables and the four transfer encoders.
#include <qorvii18n/i18n_mime.hpp>

#include <sstream>

#include "conversion/charset_to_charset_iter.h"
#include "core/string_buffer.h"
#include "support/testing.h"

namespace {

using namespace i18n_mime;

TEST(EncodingName, OfAnythingElseIsTheErrorText) {
  const std::pair<int, const char*> names[] = {{0, "None"}, {1, "Quoted Printable"}, {2, "Base64"},
      {4, "\"Error: No such encoding\""}, {-1, "\"Error: No such encoding\""}};
  for (const auto& [encoding, name] : names) {
    EXPECT_STREQ(get_encoding_str(static_cast<i18n_mime_encoding_t>(encoding)), name);
  }
}

std::string unmarked(QPEncodingTable table) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    if (!table.should_encode(static_cast<char>(byte))) bytes += static_cast<char>(byte);
  }
  return bytes;
}

TEST(QPTable, PassesExactlyTheseBytes) {
  QPBodyEncodingTable body;
  EXPECT_EQ(unmarked(body),
      " !\"%&'()*+,-./0123456789:;<>?ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
  QPHeaderEncodingTable header;
  EXPECT_EQ(unmarked(header),
      "!\"%&'()*+,-./0123456789:;<>ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(body.get_byte_size_qp_encoded_str("a=b ?"), 7);
  EXPECT_EQ(header.get_byte_size_qp_encoded_str("a=b ?"), 11);
}

TEST(QPTable, OfTheCallerIsFilledOnlyWhenAsked) {
  char entries[256] = {};
  entries[0x78] = 1;  // x
  entries[0x79] = 2;  // y: only exactly 1 marks a byte
  QPEncodingTable kept(entries, true);
  EXPECT_EQ(kept.get_number_qp_encoded_bytes("xyz=="), 1);
  EXPECT_FALSE(kept.should_encode('y'));
  kept.set_encode_chars("=");
  kept.set_encode_char('z');
  EXPECT_EQ(kept.get_number_qp_encoded_bytes("xyz=="), 4);
  QPEncodingTable filled(entries, false);
  EXPECT_EQ(unmarked(kept), unmarked(QPBodyEncodingTable())) << "one table";
}

// One ready-made chunk, with characters as they are in UTF-8.
struct OneChunk : i18n::CharsetToCharsetIterPrototype {
  explicit OneChunk(const std::string& text) {
    int32_t offset = -1;
    for (const char byte : text + "z") {
      const bool begins_character = (byte & 0xc0) != 0x80;
      offsets.push_back(offset += begins_character);
    }
    chunk = text;
  }
  void next_chunk() override {}
  bool has_next_chunk() override { return false; }
  void set_limit_byte_size(int) override {}
  i18n::CharIter<char> get_char_iter() override { return i18n::CharIter<char>({chunk, offsets}); }
  void borrow_in_str(std::string_view) override {}

  std::vector<int32_t> offsets;
};

// Each chunk reaches up to the next "|".
std::string encode(GenericEncoder& encoder, const std::string& chunks) {
  i18n::StringBuffer<char> buffer(256);
  std::istringstream stream(chunks);
  for (std::string chunk; std::getline(stream, chunk, '|');) {
    OneChunk iter(chunk);
    encoder.encode(iter, buffer);
  }
  encoder.complete(buffer);
  return buffer.get_str();
}

TEST(QPBodyEncoder, EscapesAndFolds) {
  const std::pair<std::string, std::string> cases[] = {{"|", ""},
      {"a\r\nb c \t|end ", "a=0D=0Ab c =09end=20"},
      {x(200), x(75) + "=\r\n" + x(73) + "=\r\n" + x(52)}, {x(75), x(75)},
      {x(300), x(75) + repeat("=\r\n" + x(73), 3) + "=\r\n" + x(6)}, {x(72) + "=", x(72) + "=3D"},
      {x(73) + "=y", x(73) + "=\r\n=3Dy"},
      // a blank at the end: on its own line when its escape does not fit beside itself
      {x(71) + " ", x(71) + "=20"}, {x(72) + " ", x(72) + "=\r\n=20"},
      {x(75) + " ", x(75) + "=\r\n=20"}, {x(10) + "  ", x(10) + " =20"},
      {repeat("\xe9", 7) + "||" + repeat("\xe9", 23),
          repeat("=E9", 25) + "=\r\n" + repeat("=E9", 5)}};
  for (const auto& [chunks, encoded] : cases) {
    QPBodyEncoder encoder("UTF-8");
    EXPECT_EQ(encode(encoder, chunks), encoded);
    EXPECT_EQ(encoder.get_encoding_type(), I18N_MIME_QP);
  }
}

TEST(QPHeaderEncoder, PlacesACharacterLongerThanAWord) {
  QPHeaderEncoder encoder("UTF-8");
  EXPECT_EQ(
      encode(encoder, "\xe9" + repeat("\x80", 29)), "?==?UTF-8?Q?=E9" + repeat("=80", 29) + "?=");
  EXPECT_NE(take_diagnostics(), "");
}

// Copies and assigned objects go on where the source stood, and stand on their own.
template <class Encoder>
void expect_copies_go_on(const std::string& first, const std::string& second) {
  auto source = std::make_unique<Encoder>("UTF-8");
  i18n::StringBuffer<char> ignored(256);
  OneChunk iter(first);
  source->encode(iter, ignored);
  Encoder copy(*source), assigned("KOI8-R");
  assigned = copy;
  Encoder moved(std::move(assigned));
  const std::string expected = encode(*source, second);
  source.reset();
  EXPECT_EQ(encode(copy, second), expected);
  EXPECT_EQ(encode(moved, second), expected);
}

TEST(Encoders, AreCopiedWithTheirState) {
  expect_copies_go_on<QPBodyEncoder>(x(70), x(20));
  expect_copies_go_on<B64BodyEncoder>("fo", "obar");
  expect_copies_go_on<QPHeaderEncoder>(x(50), x(20));
  expect_copies_go_on<B64HeaderEncoder>("foo", "bar");
}

}  // namespace
