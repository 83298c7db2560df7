// The MIME functions for C.
#include <qorvii18n/i18n_mime.h>

#include "front/charset_name.h"
#include "front/front.h"

namespace {

using i18n_mime::BodyConverterEncoder;
using i18n_mime::HeaderConverterEncoder;

using BodyChooser = PlainEncoderChooser<i18n_mime::BodyConverterEncoderChooser, BodyCharsetFinder>;
using HeaderChooser =
    PlainEncoderChooser<i18n_mime::HeaderConverterEncoderChooser, HeaderCharsetFinder>;

template <class ConvEncoder>
char* encode_plain(const char* str, const char* from_charset, const char* to_charset) {
  return PlainConverterEncoder<ConvEncoder>(from_charset, to_charset).encode_or_copy(str);
}

template <class ConvEncoder>
char* encode_easy_header(const char* str) {
  return EasyEncoder<ConvEncoder, HeaderCharsetFinder>().encode_or_copy(str);
}

}  // namespace

char* i18n_mime_encode_qp(const char* str, const char* from_charset, const char* to_charset) {
  return encode_plain<BodyConverterEncoder<i18n_mime::QPBodyEncoder>>(str, from_charset,
                                                                      to_charset);
}

char* i18n_mime_encode_b64(const char* str, const char* from_charset, const char* to_charset) {
  return encode_plain<BodyConverterEncoder<i18n_mime::B64BodyEncoder>>(str, from_charset,
                                                                       to_charset);
}

char* i18n_mime_encode_header_qp(const char* str, const char* from_charset,
                                 const char* to_charset) {
  return encode_plain<HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>(str, from_charset,
                                                                          to_charset);
}

char* i18n_mime_encode_header_b64(const char* str, const char* from_charset,
                                  const char* to_charset) {
  return encode_plain<HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>(str, from_charset,
                                                                           to_charset);
}

char* i18n_mime_encode(const char* str, const char* from_charset, const char* to_charset,
                       double qp_threshold, i18n_mime_encoding_t* encoding_out,
                       char** to_charset_out) {
  BodyChooser front(from_charset, to_charset, qp_threshold, encoding_out);
  if (to_charset_out != nullptr) {
    const char* target = front.get_to_charset();
    *to_charset_out = i18n::copy_c_string(target != nullptr ? target : "").release();
  }
  return front.encode(str);
}

char* i18n_mime_encode_header(const char* str, const char* from_charset, const char* to_charset,
                              double qp_threshold) {
  return HeaderChooser(from_charset, to_charset, qp_threshold, nullptr).encode(str);
}

char* i18n_mime_easy_encode(const char* str, double qp_threshold,
                            i18n_mime_encoding_t* encoding_out, char** to_charset_out) {
  return i18n_mime_encode(str, nullptr, nullptr, qp_threshold, encoding_out, to_charset_out);
}

char* i18n_mime_easy_encode_header(const char* str, double qp_threshold) {
  return i18n_mime_encode_header(str, nullptr, nullptr, qp_threshold);
}

char* i18n_mime_easy_encode_header_qp(const char* str) {
  return encode_easy_header<HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>(str);
}

char* i18n_mime_easy_encode_header_b64(const char* str) {
  return encode_easy_header<HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>(str);
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
