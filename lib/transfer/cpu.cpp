// What the processor at hand can do.
#include "transfer/vector.h"

namespace transfer {

bool has_avx2() {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("popcnt") != 0;
}

}  // namespace transfer
