// The sizes of the exported classes, which programs compile in. They do not depend on which string
// class of the standard library a program uses: this file is compiled with each of them.
#include <qorvii18n/i18n_mime.hpp>

#if UINTPTR_MAX > 0xffffffff
static_assert(sizeof(i18n::Error) == 1);
static_assert(sizeof(i18n::UcnvErrorHandler) == 4);
static_assert(sizeof(i18n::BegEnd) == 8);
static_assert(sizeof(i18n::LineCycle) == 72);
static_assert(sizeof(i18n_mime::HeaderLineCycle) == 72);
static_assert(sizeof(i18n_mime::QPEncodingTable) == 8);
static_assert(sizeof(i18n_mime::QPBodyEncodingTable) == 8);
static_assert(sizeof(i18n_mime::QPHeaderEncodingTable) == 8);
static_assert(sizeof(i18n_mime::GenericEncoder) == 32);
static_assert(sizeof(i18n_mime::QPBodyEncoder) == 112);
static_assert(sizeof(i18n_mime::B64BodyEncoder) == 112);
static_assert(sizeof(i18n_mime::QPHeaderEncoder) == 112);
static_assert(sizeof(i18n_mime::B64HeaderEncoder) == 104);
#endif
