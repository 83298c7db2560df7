// What the processor at hand can do.
#pragma once

namespace i18n_mime {

#if defined(__x86_64__) && defined(__GNUC__)
inline bool has_avx2() {
  static const bool supported = __builtin_cpu_supports("avx2") != 0;
  return supported;
}
#endif

}  // namespace i18n_mime
