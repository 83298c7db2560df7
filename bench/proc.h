// What the system says about memory.
#pragma once

#include <string>

namespace bench {

// The entry of that name, its colon included, in a file such as /proc/meminfo; in bytes.
double read_memory_entry(const char* file, const std::string& name);

}  // namespace bench
