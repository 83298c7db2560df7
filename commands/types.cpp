#include "types.h"

#include <strings.h>
#include <algorithm>
#include <fstream>
#include <sstream>

namespace {

bool is_same(const std::string& left, const std::string& right) {
  return strcasecmp(left.c_str(), right.c_str()) == 0;
}

// Lines such as `image/jpeg jpeg jpg`.
std::string find_in_mime_types(const std::string& extension) {
  std::ifstream file("/etc/mime.types");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string type;
    words >> type;
    for (std::string word; words >> word;) {
      if (is_same(word, extension)) return type;
    }
  }
  return "";
}

// Lines such as `50:image/jpeg:*.jpg`, the best first.
std::string find_in_database(const std::string& extension) {
  std::ifstream file("/usr/share/mime/globs2");
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string weight, type, pattern;
    std::getline(fields, weight, ':');
    std::getline(fields, type, ':');
    std::getline(fields, pattern, ':');
    if (is_same(pattern, "*." + extension)) return type;
  }
  return "";
}

}  // namespace

std::string find_type(const std::string& file_name) {
  const std::string name = file_name.substr(file_name.rfind('/') + 1);
  const size_t dot = name.rfind('.');
  std::string type;
  if (dot != name.npos && dot + 1 < name.size()) {
    const std::string extension = name.substr(dot + 1);
    type = find_in_mime_types(extension);
    if (type.empty()) type = find_in_database(extension);
  }
  const std::string kind = type.substr(0, type.find('/'));
  if (type.empty() || is_same(kind, "message") || is_same(kind, "multipart")) {
    return "application/octet-stream";
  }
  return type;
}
