// A converter for whoever asks, with a message when there is none.
#include <qorvii18n/i18n.hpp>

#include "charset/diagnostics.h"
#include "text/icu/converter.h"

namespace i18n {

UConverter* open_ucnv_converter(const char* name) {
  text::ConverterPtr converter = text::open_converter(name);
  if (!converter) {
    print_message(Message::kCannotOpenConverter, name);
    return nullptr;
  }
  text::make_strict(converter.get());
  return converter.release();
}

}  // namespace i18n
