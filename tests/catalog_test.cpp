// The message catalog, the version banner, and the kernel services that print them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qorvii18n/i18n_catalog.h>
#include <qorviks.h>

#include "charset/version_banner.h"
#include "support/diagnostics.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace {

TEST(Catalog, HasTheRecordThatTheKernelServicesRead) {
  const auto* catalog = static_cast<const void*>(_i18n_i18n_msg_table_adr());
  const auto* record = static_cast<const imsg_catalog_t*>(catalog);
  EXPECT_STREQ(record->long_facility, "i18n_lib");
  EXPECT_STREQ(record->short_facility, "i18n");
  EXPECT_EQ(record->catalog_number, 9);
  EXPECT_EQ(record->reserved, 0u);
  ASSERT_EQ(record->message_count, 5);
  const char* beginnings[] = {"Unable to open a UConverter for charset %s",
                              "Error converting input to Unicode\nThe first several bytes",
                              "Error converting unicode to output.\nThe problematic wide",
                              "Error converting unicode to output.\nThe hexadecimal",
                              "Character set alias %s is invalid"};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(record->ids[i], i + 1);
    EXPECT_THAT(record->texts[i], testing::StartsWith(beginnings[i]));
  }
}

TEST(Banner, IsOneAlignedLine) {
  const char* line =
      "libqorvii18n {22}[0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+ "
      "\\([A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}\\) 64-bit\n";
  char buffer[128];
  i18n::sprint_verid(buffer);
  EXPECT_THAT(buffer, MatchesRegex(line));
  libqorvii18n_print_verid();
  EXPECT_THAT(take_diagnostics(), ElementsAre(std::string("0: ") + buffer));
}

TEST(KernelServices, TablesKeepTheirSlotsAndCopyTheirKeys) {
  static hash_str_t* const table = hash_str_create(200, 8, 0);  // lives on, by its contract
  std::string key = "key 0";
  uint64_t scratch;
  void** first = nullptr;
  hash_str_enter(table, key.c_str(), &scratch, &first);
  *first = table;
  for (int i = 1; i < 1000; ++i) {
    void** slot;
    key = "key " + std::to_string(i);
    hash_str_enter(table, key.c_str(), &scratch, &slot);
  }
  void** found = nullptr;
  EXPECT_NE(hash_str_lookup(table, "key 0", &scratch, &found), 0);
  EXPECT_EQ(found, first);
  EXPECT_EQ(*found, table);
  EXPECT_EQ(hash_str_lookup(table, "Key 0", &scratch, &found), 0);
  EXPECT_EQ(found, first) << "a miss leaves the slot pointer alone";
}

}  // namespace
