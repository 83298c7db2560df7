// i18n_mail_multipart(): one part of several.
#include <algorithm>
#include <charconv>
#include <vector>

#include "mail/call.h"
#include "mail/lines.h"
#include "mail/media_type.h"
#include "mail/names.h"

namespace mail {

namespace {

// No encoding writes the two characters side by side, and texts have no line that begins with
// hyphens: where such a boundary begins a line, a part has parts.
constexpr std::string_view boundary_begin = "=_", boundary_end = "_=", hyphens = "--";

std::string make_boundary(size_t number) {
  return std::string(boundary_begin).append(std::to_string(number)).append(boundary_end);
}

// The number of the boundary that begins a line; 0 when none does.
size_t find_number(std::string_view line) {
  const std::string begin = std::string(hyphens).append(boundary_begin);
  if (!line.starts_with(begin)) return 0;
  size_t number = 0;
  std::from_chars(line.data() + begin.size(), line.data() + line.size(), number);
  return line.substr(hyphens.size()).starts_with(make_boundary(number)) ? number : 0;
}

// Fails unless all of it is ASCII, in lines that all are ended, the first one a field. Appends the
// numbers of the boundaries that it has.
void check_part(std::string_view part, std::vector<size_t>& taken) {
  const size_t name = std::min(part.find(':'), part.size());
  for (size_t i = 0; i < name; ++i) {
    if (!is_of_field_name(part[i])) fail(I18N_MAIL_BAD_VALUE, i);
  }
  if (name == 0 || name == part.size()) fail(I18N_MAIL_BAD_VALUE, name);
  for (size_t begin = 0; begin < part.size();) {
    const std::string_view line = part.substr(begin, part.find_first_of(line_end, begin) - begin);
    for (size_t i = 0; i < line.size(); ++i) {
      const bool is_high = static_cast<unsigned char>(line[i]) >= 0x80;
      if (is_high || i == longest_line) fail(I18N_MAIL_BAD_VALUE, begin + i);
    }
    const size_t end = begin + line.size();
    if (!part.substr(end).starts_with(line_end)) fail(I18N_MAIL_BAD_VALUE, end);
    if (const size_t number = find_number(line)) taken.push_back(number);
    begin = end + line_end.size();
  }
}

size_t find_free_number(std::vector<size_t> taken) {
  std::ranges::sort(taken);
  size_t number = 1;
  for (const size_t one : taken) number += one == number ? 1 : 0;
  return number;
}

std::string make_multipart(const char* subtype, const char* const* parts, size_t count) {
  const MediaType type = read_media_type(view(subtype), TypeNames::kSubtype, "boundary");
  if (count == 0) fail(I18N_MAIL_BAD_VALUE);
  std::vector<size_t> taken;
  size_t size = 0;
  for (size_t i = 0; i < count; ++i) {
    try {
      check_part(view(parts[i]), taken);
    } catch (Failure& failure) {
      failure.item = i;
      throw;
    }
    size += view(parts[i]).size();
  }
  const std::string boundary = make_boundary(find_free_number(taken));
  const std::string delimiter = std::string(hyphens).append(boundary);
  std::string result =
      make_content_type("multipart/", type, "boundary=\"" + boundary + '"').append("\r\n\r\n");
  result.reserve(result.size() + size + (count + 1) * (delimiter.size() + 2 * line_end.size()));
  for (size_t i = 0; i < count; ++i) {
    result.append(delimiter).append(line_end).append(parts[i]).append(line_end);
  }
  return result.append(delimiter).append(hyphens).append(line_end);
}

}  // namespace

}  // namespace mail

char* i18n_mail_multipart(const char* subtype, const char* const* parts, size_t count,
                          i18n_mail_error_t* error) {
  return mail::call(error, [&] { return mail::make_multipart(subtype, parts, count); });
}
