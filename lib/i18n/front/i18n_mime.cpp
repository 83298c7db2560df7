// The MIME functions for C.
#include <string_view>

#include <qorvii18n/i18n_mime.h>

#include "fast/fast_road.h"
#include "front/front.h"

namespace {

using fast::Use;
using i18n_mime::BodyConverterEncoder;
using i18n_mime::HeaderConverterEncoder;

using BodyChooser = PlainEncoderChooser<i18n_mime::BodyConverterEncoderChooser, BodyCharsetFinder>;
using HeaderChooser =
    PlainEncoderChooser<i18n_mime::HeaderConverterEncoderChooser, HeaderCharsetFinder>;

template <class ConvEncoder>
char* encode_plain(Use use, i18n_mime_encoding_t encoding, const char* str,
                   const char* from_charset, const char* to_charset) {
  i18n::CString result = fast::encode({use, encoding, from_charset, to_charset}, str);
  if (result) return result.release();
  return PlainConverterEncoder<ConvEncoder>(from_charset, to_charset).encode_or_copy(str);
}

// A table of bytes to escape, to be looked at.
template <class QPTable>
struct Counted : QPTable {
  size_t count(std::string_view text) const { return i18n_mime::count_marked(this->table, text); }
};

// Null and no charset give no copy and an empty name.
void store_name(const char* charset, char** out) {
  if (out != nullptr) *out = i18n::copy_c_string(charset != nullptr ? charset : "").release();
}

// The target's name is stored before the encoding, whatever comes of that; on the exact road after
// the chooser was made.
template <class Chooser, class QPTable, class Finder>
char* encode_chosen(Use use, const char* str, const Finder& finder, const char* given_to_charset,
                    double qp_threshold, i18n_mime_encoding_t* encoding_out,
                    char** to_charset_out) {
  const std::string_view text = str;
  const char* const from_charset = finder.get_from_charset();
  const char* const to_charset =
      given_to_charset != nullptr ? given_to_charset : finder.get_to_charset();
  const size_t marked = Counted<QPTable>().count(text);
  const i18n_mime_encoding_t encoding =
      i18n_mime::choose_encoding(marked, text.size(), qp_threshold);
  i18n::CString result;
  try {
    result = fast::encode({use, encoding, from_charset, to_charset, marked}, text);
  } catch (...) {
    store_name(to_charset, to_charset_out);
    throw;
  }
  if (result) {
    store_name(to_charset, to_charset_out);
    if (encoding_out != nullptr) *encoding_out = encoding;
    return result.release();
  }
  Chooser chooser(finder, to_charset, qp_threshold, encoding_out, marked);
  store_name(to_charset, to_charset_out);
  return chooser.encode(str);
}

template <class ConvEncoder>
char* encode_easy_header(i18n_mime_encoding_t encoding, const char* str) {
  const HeaderCharsetFinder finder(nullptr);
  i18n::CString result = fast::encode(
      {Use::kHeader, encoding, finder.get_from_charset(), finder.get_to_charset()}, str);
  if (result) return result.release();
  return EasyEncoder<ConvEncoder, HeaderCharsetFinder>(finder).encode_or_copy(str);
}

}  // namespace

char* i18n_mime_encode_qp(const char* str, const char* from_charset, const char* to_charset) {
  return encode_plain<BodyConverterEncoder<i18n_mime::QPBodyEncoder>>(Use::kBody, I18N_MIME_QP, str,
                                                                      from_charset, to_charset);
}

char* i18n_mime_encode_b64(const char* str, const char* from_charset, const char* to_charset) {
  return encode_plain<BodyConverterEncoder<i18n_mime::B64BodyEncoder>>(
      Use::kBody, I18N_MIME_B64, str, from_charset, to_charset);
}

char* i18n_mime_encode_header_qp(const char* str, const char* from_charset,
                                 const char* to_charset) {
  return encode_plain<HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>(
      Use::kHeader, I18N_MIME_QP, str, from_charset, to_charset);
}

char* i18n_mime_encode_header_b64(const char* str, const char* from_charset,
                                  const char* to_charset) {
  return encode_plain<HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>(
      Use::kHeader, I18N_MIME_B64, str, from_charset, to_charset);
}

char* i18n_mime_encode(const char* str, const char* from_charset, const char* to_charset,
                       double qp_threshold, i18n_mime_encoding_t* encoding_out,
                       char** to_charset_out) {
  return encode_chosen<BodyChooser, i18n_mime::QPBodyEncodingTable>(
      Use::kBody, str, BodyCharsetFinder(from_charset), to_charset, qp_threshold, encoding_out,
      to_charset_out);
}

char* i18n_mime_encode_header(const char* str, const char* from_charset, const char* to_charset,
                              double qp_threshold) {
  return encode_chosen<HeaderChooser, i18n_mime::QPHeaderEncodingTable>(
      Use::kHeader, str, HeaderCharsetFinder(from_charset), to_charset, qp_threshold, nullptr,
      nullptr);
}

char* i18n_mime_easy_encode(const char* str, double qp_threshold,
                            i18n_mime_encoding_t* encoding_out, char** to_charset_out) {
  return i18n_mime_encode(str, nullptr, nullptr, qp_threshold, encoding_out, to_charset_out);
}

char* i18n_mime_easy_encode_header(const char* str, double qp_threshold) {
  return i18n_mime_encode_header(str, nullptr, nullptr, qp_threshold);
}

char* i18n_mime_easy_encode_header_qp(const char* str) {
  return encode_easy_header<HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>(I18N_MIME_QP, str);
}

char* i18n_mime_easy_encode_header_b64(const char* str) {
  return encode_easy_header<HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>(I18N_MIME_B64,
                                                                                 str);
}

const char* i18n_mime_get_body_to_charset_name(const char* charset) {
  return BodyCharsetFinder(charset).get_to_charset();
}

const char* i18n_mime_get_header_to_charset_name(const char* charset) {
  return HeaderCharsetFinder(charset).get_to_charset();
}

char* i18n_mime_transform_charset_name(const char* name) {
  return normalise_charset_name(name).release();
}

void i18n_mime_free(void* p) { i18n::MallocDeleter()(p); }
