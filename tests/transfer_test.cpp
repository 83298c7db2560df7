// Base64 and the forms of quoted-printable. Text that is too short for vector code goes the plain
// way, so that many short pieces and one long text are both, and must give the same.
#include <algorithm>
#include <random>

#include "support/testing.h"
#include "transfer/base64.h"
#include "transfer/qp_forms.h"
#include "transfer/vector.h"

namespace {

const unsigned char* as_bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

std::string make_bytes(size_t size) {
  static std::minstd_rand random(1);
  std::string bytes;
  while (bytes.size() < size) bytes += static_cast<char>(random() >> 8);
  return bytes;
}

// In one piece, between blocks of just the size that may be touched: the address sanitizer looks.
template <class Put>
std::string put_at_once(Put put, const std::string& bytes, size_t size, size_t slack = 0) {
  const auto source = std::make_unique<char[]>(bytes.size());
  const auto target = std::make_unique<char[]>(size + slack);
  std::copy(bytes.begin(), bytes.end(), source.get());
  char* const end = put(target.get(), as_bytes(source.get()), bytes.size());
  EXPECT_EQ(end - target.get(), static_cast<std::ptrdiff_t>(size)) << bytes.size();
  return {target.get(), size};
}

template <class Put>
std::string put_plainly(Put put, size_t piece_size, const std::string& bytes) {
  std::string result;
  for (size_t at = 0; at < bytes.size(); at += piece_size) {
    const std::string piece = bytes.substr(at, piece_size);
    char out[256];
    result.append(out, put(out, as_bytes(piece.data()), piece.size()));
  }
  return result;
}

constexpr size_t few_bytes = 8 * transfer::group_bytes;

TEST(Base64, VectorCodeWritesWhatPlainCodeWritesInLinesToo) {
  for (size_t line = 64; line <= 96; line += transfer::group_chars) {
    const auto put = [line](char* out, const unsigned char* bytes, size_t size) {
      return transfer::put_base64_lines(out, bytes, size, line);
    };
    for (size_t size = 0; size <= 300; ++size) {
      const std::string bytes = make_bytes(size);
      const std::string text = put_plainly(transfer::put_base64, few_bytes, bytes);
      EXPECT_EQ(put_at_once(transfer::put_base64, bytes, transfer::base64_size(size)), text);
      std::string lines = text.substr(0, line);
      for (size_t at = line; at < text.size(); at += line) lines += "\r\n" + text.substr(at, line);
      EXPECT_EQ(put_at_once(put, bytes, transfer::base64_lines_size(size, line)), lines) << line;
    }
  }
}

TEST(Forms, VectorCodeWritesWhatPlainCodeWrites) {
  // Only exactly 1 marks a byte. From no marks to nothing but marks.
  for (const unsigned marked : {0, 3, 30, 60, 100}) {
    std::string table = make_bytes(256);
    for (char& entry : table) {
      const bool is_marked = as_bytes(&entry)[0] % 100 < marked;
      entry = static_cast<char>(is_marked ? 1 : entry == 1 ? 2 : entry);
    }
    const auto put = [&table](char* out, const unsigned char* bytes, size_t size) {
      return transfer::put_forms(out, table.data(), bytes, size);
    };
    for (size_t size = 0; size <= 300; ++size) {
      const std::string bytes = make_bytes(size);
      const std::string forms = put_plainly(put, transfer::vector_stretch - 1, bytes);
      EXPECT_EQ(put_at_once(put, bytes, forms.size(), transfer::form_slack), forms);
      const size_t escapes = transfer::count_escapes(table.data(), as_bytes(bytes.data()), size);
      EXPECT_EQ(forms.size(), size + (transfer::escape_size - 1) * escapes);
    }
  }
}

}  // namespace
