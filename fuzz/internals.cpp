// Inside the library, where one text has several ways through: the bytes do not depend on the way.
#include <algorithm>

#include <qorvii18n/i18n_mime.hpp>

#include "conversion/charset_to_charset_iter.h"
#include "conversion/chunk_sizes.h"
#include "conversion/trivial_iter.h"
#include "core/string_buffer.h"
#include "fuzz.h"

using fuzz::check;

namespace {

struct Result {
  std::string bytes;    // of all chunks
  std::string encoded;  // what the encoder made of them
  bool failed = false;
};

// Pulls a whole text through an iterator into an encoder, as the library does. Cap 0 is none.
template <class Encoder>
Result run(i18n::CharsetToCharsetIterPrototype&& iter, const std::string& text, const char* charset,
           int cap) {
  Result result;
  Encoder encoder(charset);
  i18n::StringBuffer<char> buffer(i18n::chunk_bytes);
  iter.set_in_str(text);
  if (cap != 0) iter.set_limit_byte_size(cap);
  size_t chunks_left = 64 * (text.size() + 16);
  do {
    check(chunks_left-- != 0, "chunks make progress");
    iter.next_chunk();
    check(cap == 0 || iter.get_chunk().size() <= static_cast<size_t>(cap), "a cap holds");
    result.bytes += iter.get_chunk();
    encoder.encode(iter, buffer);
    result.failed = iter.is_error();
  } while (!result.failed && iter.has_next_chunk());
  encoder.complete(buffer);
  result.encoded = buffer.get_str();
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  using namespace i18n_mime;
  using BodyIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeIter>;
  using HeaderIter = i18n::CharsetToCharsetChunkIter<i18n::FromUnicodeFullCharIter>;

  fuzz::Input input(data, size);
  const char* const from = input.charset(false);
  const char* const to = input.charset(false);
  const auto pick_size = [&](int usual) {
    const int small = static_cast<int>(input.number(8));
    return small == 0 ? usual : small;
  };
  constexpr int usual_bytes = i18n::chunk_bytes, usual_units = i18n::get_unit_chunk(usual_bytes);
  const int units = pick_size(usual_units), bytes = pick_size(usual_bytes);
  const int cap = static_cast<int>(input.number(64));
  const int word_cap = std::min(cap != 0 ? cap : 64, B64HeaderEncoder(to).get_limit_byte_size());
  const std::string text = input.text(from, to, 4);

  const Result usual =
      run<QPBodyEncoder>(BodyIter(from, to, usual_units, usual_bytes), text, to, 0);
  const Result body = run<QPBodyEncoder>(BodyIter(from, to, units, bytes), text, to, cap);
  const Result q = run<QPHeaderEncoder>(HeaderIter(from, to, units, bytes), text, to, cap);
  const Result b = run<B64HeaderEncoder>(HeaderIter(from, to, units, bytes), text, to, word_cap);
  for (const Result* result : {&body, &q, &b}) {
    if (!fuzz::is_read_alike_in_chunks(from)) break;
    check(result->failed == usual.failed, "chunks of all sizes fail alike");
    // How much comes before a failure depends on the chunks.
    check(usual.failed || fuzz::is_same_text(result->bytes, usual.bytes, to),
          "chunks of all sizes make the same text");
  }
  check(fuzz::decode(body.encoded, 'Q') == body.bytes, "quoted-printable decodes");
  check(fuzz::decode(b.encoded, 'B', to) == b.bytes, "B words decode");
  // ICU does not say which bytes make a character of compound text: its words can be too long.
  const bool is_shapeless = std::string_view(to) == "x11-compound-text";
  check(is_shapeless || fuzz::decode(q.encoded, 'Q', to) == q.bytes, "Q words decode");
  check(is_shapeless || fuzz::failed_checks == 0, "no internal check fails");

  // What was converted, without a conversion and cut in another way.
  const Result qp = run<QPBodyEncoder>(i18n::TrivialIter(bytes), body.bytes, to, cap);
  check(qp.encoded == body.encoded, "quoted-printable does not depend on the chunks");
  const Result b64 = run<B64BodyEncoder>(i18n::TrivialIter(bytes), body.bytes, to, cap);
  const Result usual_b64 = run<B64BodyEncoder>(i18n::TrivialIter(usual_bytes), body.bytes, to, 0);
  check(b64.encoded == usual_b64.encoded, "base64 does not depend on the chunks");
  check(fuzz::decode(b64.encoded, 'B') == body.bytes, "base64 decodes");
  return 0;
}
