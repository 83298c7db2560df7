// The message catalog, the version banner, and the kernel services that print them.
#include <gmock/gmock.h>
#include <qorvii18n/i18n_catalog.h>
#include <qorviks.h>

#include "charset/version_banner.h"
#include "support/testing.h"

// Tests of failures check the other texts.
TEST(Catalog, HasTheRecordThatTheKernelServicesRead) {
  const imsg_catalog_t* record = _i18n_i18n_msg_table_adr();
  EXPECT_STREQ(record->long_facility, "i18n_lib");
  EXPECT_STREQ(record->short_facility, "i18n");
  EXPECT_EQ(record->catalog_number, 9);
  EXPECT_EQ(record->reserved, 0u);
  EXPECT_EQ(std::vector(record->ids, record->ids + record->message_count),
      (std::vector<uint16_t>{1, 2, 3, 4, 5}));
  EXPECT_STREQ(record->texts[4], "Character set alias %s is invalid");
  for (const int index : {-2, int{record->message_count}}) {
    char line[64];
    imsg_sprintf(line, 6, record, index);
    EXPECT_STREQ(line, "unknown message");
  }
}

TEST(Banner, IsOneAlignedLine) {
  char buffer[128];
  i18n::sprint_verid(buffer);
  EXPECT_THAT(buffer,
      testing::MatchesRegex("libqorvii18n {22}[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+ "
                            "\\([A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} "
                            "[0-9]{4}\\) 64-bit\n"));
  libqorvii18n_print_verid();
  EXPECT_EQ(take_diagnostics(), std::string("0: ") + buffer);
}
