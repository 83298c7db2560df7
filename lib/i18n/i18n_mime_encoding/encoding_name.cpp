// Display names of the encodings.
#include <iterator>

#include <qorvii18n/i18n_mime.hpp>

namespace {

constexpr char names[][50] = {
    "None",
    "Quoted Printable",
    "Base64",
    "\"Error: No such encoding\"",
};
constexpr unsigned error_name = std::size(names) - 1;

}  // namespace

const char* get_encoding_str(i18n_mime_encoding_t encoding) {
  const auto index = static_cast<unsigned>(encoding);
  return names[index < error_name ? index : error_name];
}
