#include "i18n_mime_encoding/qp_form.h"

namespace i18n_mime {

namespace {

constexpr Forms make_literals() {
  Forms literals{};
  for (unsigned value = 0; value < literals.size(); ++value) {
    literals[value] = {static_cast<char>(value)};
  }
  return literals;
}

constexpr Forms make_escapes() {
  constexpr char digits[] = "0123456789ABCDEF";
  Forms escapes{};
  for (unsigned value = 0; value < escapes.size(); ++value) {
    escapes[value] = {'=', digits[value >> 4], digits[value & 15]};
  }
  return escapes;
}

}  // namespace

constexpr std::array<Forms, 2> forms = {make_literals(), make_escapes()};

}  // namespace i18n_mime
