#include "proc.h"

#include <fstream>

#include "pairs.h"

namespace bench {

double read_memory_entry(const char* file, const std::string& name) {
  std::ifstream entries(file);
  std::string word;
  while (entries >> word && word != name) continue;
  double kib = 0;
  entries >> kib;
  require(!entries.fail(), name);
  return kib * 1024;
}

}  // namespace bench
