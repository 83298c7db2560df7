// Charset handles and strict converters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_charset.h>
#include <unicode/ucnv.h>
#include <qorvii18n/i18n.hpp>

#include <memory>

#include "charset/charset.h"
#include "charset/converter.h"
#include "support/default_charset.h"
#include "support/diagnostics.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(Charset, AliasesShareOneHandleInAnyOrder) {
  struct {
    const char* first;
    const char* second;
    const char* preferred;
  } cases[] = {
      {"utf8", "UTF-8", "UTF-8"},
      {"ISO-8859-2", "latin2", "ISO-8859-2"},  // the canonical name is neither
      {"cp1047", "ibm-1047", "IBM1047"},
      {"KOI8-R", "KOI8-R", "KOI8-R"},
  };
  for (const auto& c : cases) {
    i18n_charset_t* handle = i18n_charset_open(c.first);
    ASSERT_NE(handle, nullptr) << c.first;
    EXPECT_EQ(i18n_charset_open(c.second), handle) << c.second;
    EXPECT_EQ(i18n_charset_open(c.first), handle) << c.first;
    EXPECT_STREQ(i18n_charset_get_name(handle), c.preferred);
  }
}

TEST(Charset, UnknownNamesAreNullEachTimeAndSilent) {
  EXPECT_EQ(i18n_charset_open("no-such-charset"), nullptr);
  EXPECT_EQ(i18n_charset_open("no-such-charset"), nullptr);
  EXPECT_THAT(take_diagnostics(), IsEmpty());
}

TEST(Charset, SelectorsOpenTheirCharset) {
  EXPECT_EQ(i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF8), i18n_charset_open("UTF-8"));
  EXPECT_EQ(i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF16),
            i18n_charset_open("UTF16_PlatformEndian"));
  EXPECT_EQ(i18n_charset_open_special(I18N_CHARSET_SPECIAL_UTF32),
            i18n_charset_open("UTF32_PlatformEndian"));
  EXPECT_EQ(i18n_charset_open_special(-1), nullptr);
  EXPECT_EQ(i18n_charset_open_special(4), nullptr);
}

TEST(Charset, TheDefaultStaysTheOneFirstOpened) {
  set_default_charset("KOI8-R");
  i18n_charset_t* handle = i18n_charset_open_special(I18N_CHARSET_SPECIAL_DEFAULT);
  EXPECT_EQ(handle, i18n_charset_open("KOI8-R"));
  set_default_charset("UTF-8");
  EXPECT_EQ(i18n_charset_open_special(I18N_CHARSET_SPECIAL_DEFAULT), handle);
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

TEST(Converter, IsStrictInBothDirections) {
  // Fullwidth A has a fallback mapping in windows-1252, which is none for a strict converter.
  UConverter* handles[] = {i18n::open_ucnv_converter("windows-1252"),
                           i18n_charset_open("windows-1252")->converter};
  i18n::ConverterPtr owned(handles[0]);
  for (UConverter* converter : handles) {
    UErrorCode status = U_ZERO_ERROR;
    char bytes[8];
    ucnv_fromUChars(converter, bytes, sizeof bytes, u"\uff21", 1, &status);
    EXPECT_EQ(status, U_INVALID_CHAR_FOUND);
  }
  UErrorCode status = U_ZERO_ERROR;
  i18n::ConverterPtr utf8(i18n::open_ucnv_converter("UTF-8"));
  UChar units[8];
  ucnv_toUChars(utf8.get(), units, 8, "a\xff", 2, &status);
  EXPECT_TRUE(U_FAILURE(status));
}

TEST(Converter, ThatCannotBeOpenedIsReported) {
  EXPECT_EQ(i18n::open_ucnv_converter("no-such-charset"), nullptr);
  EXPECT_THAT(take_diagnostics(),
              ElementsAre("6: Unable to open a UConverter for charset no-such-charset"));
}

}  // namespace
