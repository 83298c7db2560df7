// Tables of charsets beside ICU's strict converter: what they take of any bytes, and of any text,
// is what ICU makes of it.
#include "support/beside_icu.h"

#include <map>

#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  static std::map<std::string, BesideIcu> all;
  fuzz::Input input(data, size);
  const char* const charset = input.charset(false);
  BesideIcu& both = all.try_emplace(charset, charset).first->second;
  if (!both.has_table()) return 0;
  fuzz::check(both.agrees_on_bytes(input.text(charset, "UTF-8")), "bytes are read as by ICU");
  const std::string any = input.text("UTF-8", charset);
  const std::string text = any.substr(0, text::find_invalid(any));
  for (const auto invisible : {text::Invisible::kRefused, text::Invisible::kDropped}) {
    fuzz::check(both.agrees_on_text(text, invisible), "text is written as by ICU");
  }
  return 0;
}
