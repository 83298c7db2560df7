// Charset handles and strict converters.
#include <qorvii18n/i18n_charset.h>
#include <unicode/ucnv.h>
#include <qorvii18n/i18n.hpp>

#include "charset/charset_handle.h"
#include "support/testing.h"
#include "text/icu/converter.h"

namespace {
int opened_converters;
}
UConverter* ucnv_open(const char* name, UErrorCode* status) {
  ++opened_converters;
  return REAL(ucnv_open)(name, status);
}

TEST(Charset, AliasesShareOneHandleInAnyOrder) {
  const char* cases[][3] = {
      {"utf8", "UTF-8", "UTF-8"},
      {"ISO-8859-2", "latin2", "ISO-8859-2"},      // the canonical name is neither
      {"TIS-620", "windows-874-2000", "TIS-620"},  // of which the canonical name knows nothing
  };
  for (const auto& [first, second, preferred] : cases) {
    i18n_charset_t* handle = i18n_charset_open(first);
    ASSERT_NE(handle, nullptr) << first;
    EXPECT_EQ(i18n_charset_open(second), handle) << second;
    EXPECT_STREQ(i18n_charset_get_name(handle), preferred);
    opened_converters = 0;
    for (const char* name : {first, second}) EXPECT_EQ(i18n_charset_open(name), handle) << name;
    EXPECT_EQ(opened_converters, 0) << "known by both names";
  }
}

TEST(Charset, IsNullEachTimeAndSilentWhenUnknown) {
  opened_converters = 0;
  for (const char* name : {"no-such", "no-such"}) EXPECT_EQ(i18n_charset_open(name), nullptr);
  EXPECT_EQ(opened_converters, 2);
  for (const int selector : {-1, 4}) EXPECT_EQ(i18n_charset_open_special(selector), nullptr);
  EXPECT_EQ(take_diagnostics(), "");
}

TEST(Charset, SelectorsOpenTheirCharset) {
  const char* names[] = {"KOI8-R", "UTF-8", "UTF16_PlatformEndian", "UTF32_PlatformEndian"};
  for (const char* later_default : {"KOI8-R", "UTF-8"}) {
    set_default_charset(later_default);  // the handle stays the one first opened
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(i18n_charset_open_special(i), i18n_charset_open(names[i])) << names[i];
    }
  }
}

TEST(Charset, TheListHoldsEveryConverterByName) {
  i18n_charset_t** all = i18n_charset_open_all();
  EXPECT_EQ(i18n_charset_open_all(), all);
  const int32_t count = ucnv_countAvailable();
  EXPECT_EQ(all[count], nullptr);
  for (int32_t i = 0; i < count; ++i) {
    EXPECT_EQ(all[i], i18n_charset_open(ucnv_getAvailableName(i))) << ucnv_getAvailableName(i);
  }
}

TEST(Converter, HasNoFallbackMappings) {
  const char16_t fullwidth_a = u'\uff21';
  text::ConverterPtr owned(i18n::open_ucnv_converter("windows-1252"));
  for (auto* converter : {owned.get(), i18n_charset_open("windows-1252")->converter}) {
    UErrorCode status = U_ZERO_ERROR;
    char bytes[8];
    ucnv_fromUChars(converter, bytes, sizeof bytes, &fullwidth_a, 1, &status);
    EXPECT_EQ(status, U_INVALID_CHAR_FOUND);
  }
}
