// The two roads of the MIME functions, use by use.
#pragma once

#include <qorvii18n/i18n_mime.h>

#include "fast/fast_road.h"
#include "front/front.h"

using Encode = char* (*)(const char* text, const char* from, const char* to);

struct Road {
  fast::Use use;
  i18n_mime_encoding_t encoding;
  Encode encode;
  Encode encode_exactly;
};

template <class ConvEncoder>
char* encode_exactly(const char* text, const char* from, const char* to) {
  return PlainConverterEncoder<ConvEncoder>(from, to).encode_or_copy(text);
}

constexpr Road roads[] = {
    {fast::Use::kBody, I18N_MIME_QP, i18n_mime_encode_qp,
        encode_exactly<i18n_mime::BodyConverterEncoder<i18n_mime::QPBodyEncoder>>},
    {fast::Use::kBody, I18N_MIME_B64, i18n_mime_encode_b64,
        encode_exactly<i18n_mime::BodyConverterEncoder<i18n_mime::B64BodyEncoder>>},
    {fast::Use::kHeader, I18N_MIME_QP, i18n_mime_encode_header_qp,
        encode_exactly<i18n_mime::HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>},
    {fast::Use::kHeader, I18N_MIME_B64, i18n_mime_encode_header_b64,
        encode_exactly<i18n_mime::HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>},
};
