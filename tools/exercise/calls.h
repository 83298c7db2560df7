// Every function of the library, on texts in one charset: what comes out, as checksums.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <qorvii18n/i18n_charset.h>

namespace exercise {

class Checksum {
 public:
  void add(std::string_view bytes);
  void add(const char* text) { add(std::string_view(text != nullptr ? text : "null")); }
  void add(std::int64_t number);
  std::uint64_t get() const { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325;
};

struct Results {
  Checksum bytes;  // all that was written and printed, in whichever byte order
  Checksum text;   // what comes back from it as UTF-8, statuses and positions
};

// All of ICU's charsets, and who may use which. One object in a process.
class Charsets {
 public:
  Charsets();

  int size() const { return static_cast<int>(names_.size()); }
  const char* get_name(int index) const { return names_[static_cast<size_t>(index)].c_str(); }

  // Calls everything for a charset. Several threads may do so at once, for the same charset as
  // well: what the thread rules of the library forbid waits.
  Results exercise(int index);

 private:
  using Lock = std::unique_lock<std::mutex>;
  struct Call;
  i18n_charset_t* open(int index);
  std::pair<Lock, Lock> lock_handles(int index, int other_index);
  void convert_from_and_to_utf8(Call& call);
  void convert_from_another(Call& call);

  std::vector<std::string> names_;
  int utf8_;
  std::mutex registry_;
  std::vector<size_t> first_names_;  // of each name, the first one that has the same handle
  std::vector<std::mutex> mutexes_;  // for the handles, by their first names
};

}  // namespace exercise
