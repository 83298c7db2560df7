// The message catalog.
#include <cstddef>
#include <iterator>

#include <qorvii18n/i18n_catalog.h>
#include <qorviks.h>

static_assert(sizeof(void*) != 8 ||
                  (offsetof(imsg_catalog_t, short_facility) == 8 &&
                   offsetof(imsg_catalog_t, catalog_number) == 16 &&
                   offsetof(imsg_catalog_t, message_count) == 18 &&
                   offsetof(imsg_catalog_t, reserved) == 20 &&
                   offsetof(imsg_catalog_t, texts) == 24 && offsetof(imsg_catalog_t, ids) == 32 &&
                   sizeof(imsg_catalog_t) == 40),
              "another libqorviks reads the record by its layout");

namespace {

constexpr const char* texts[] = {
    "Unable to open a UConverter for charset %s",

    "Error converting input to Unicode\n"
    "The first several bytes starting at the beginning of the problematic MB character have the "
    "following hexadecimal representation: %s.\n"
    "The beginning of the problematic MB character is %d bytes away from the beginning of the "
    "input string.\n",

    "Error converting unicode to output.\n"
    "The problematic wide character has the following hexadecimal representation: %s.\n"
    "It is %d wide characters away from the beginning of the Unicode sequence.\n",

    "Error converting unicode to output.\n"
    "The hexadecimal representation of the problematic MB character is: %s.\n"
    "It is %d bytes away from the beginning of the input string\n"
    "Its unicode hexadecimal representation is %s.\n",

    "Character set alias %s is invalid",
};

constexpr uint16_t ids[] = {1, 2, 3, 4, 5};
static_assert(std::size(texts) == std::size(ids));

constexpr imsg_catalog_t catalog = {
    .long_facility = "i18n_lib",
    .short_facility = "i18n",
    .catalog_number = 9,
    .message_count = std::size(texts),
    .reserved = 0,
    .texts = texts,
    .ids = ids,
};

}  // namespace

const imsg_catalog_t* _i18n_i18n_msg_table_adr() { return &catalog; }
