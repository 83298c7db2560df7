// Catalog messages and formatted lines.
#include <cstdarg>
#include <cstdio>
#include <string>

#include "qorviks.h"

namespace {

const char* format_of(const void* catalog_or_format, int index) {
  if (index == IMSG_FORMAT_INDEX) return static_cast<const char*>(catalog_or_format);
  const auto* catalog = static_cast<const imsg_catalog_t*>(catalog_or_format);
  if (index < 0 || index >= catalog->message_count) return "unknown message";
  return catalog->texts[index];
}

std::string format_text(const char* format, std::va_list args) {
  std::va_list measured;
  va_copy(measured, args);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length < 0) return format;
  std::string text(static_cast<size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
  return text;
}

}  // namespace

[[gnu::weak]] int imsg_print(int /*kind*/, const void* catalog_or_format, int index, ...) {
  std::va_list args;
  va_start(args, index);
  std::string text = format_text(format_of(catalog_or_format, index), args);
  va_end(args);
  if (text.empty() || text.back() != '\n') text += '\n';
  return static_cast<int>(std::fwrite(text.data(), 1, text.size(), stderr));
}

[[gnu::weak]] int imsg_sprintf(char* buffer, int /*kind*/, const void* catalog_or_format, int index,
                               ...) {
  std::va_list args;
  va_start(args, index);
  const int length = std::vsprintf(buffer, format_of(catalog_or_format, index), args);
  va_end(args);
  return length;
}
