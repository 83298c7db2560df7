#include "text/unicode/kernels.h"

#include <algorithm>

#include "text/unicode/kernels_avx2.h"
#include "transfer/vector.h"

namespace text {

namespace {

template <class... Out>
size_t do_nothing(Out&..., Bytes) {
  return 0;
}

constexpr Kernels all_kernels[] = {
#ifdef HAS_AVX2
    {transfer::has_avx2, skip_ascii_avx2, skip_utf8_avx2, copy_run_avx2, utf8_to_units_avx2,
     utf8_to_latin1_avx2, latin1_to_utf8_avx2, count_units_avx2, count_high_avx2},
#endif
    {[] { return true; }, do_nothing<>, do_nothing<>,
     [](unsigned char*, Bytes, const AsciiSet&) { return size_t{0}; }, do_nothing<char16_t*>,
     do_nothing<unsigned char*>, do_nothing<unsigned char*>, do_nothing<size_t>,
     do_nothing<size_t>}};

}  // namespace

std::span<const Kernels> get_all_kernels() { return all_kernels; }

const Kernels& get_kernels() {
  static const Kernels& best = *std::ranges::find_if(
      all_kernels, [](const Kernels& kernels) { return kernels.are_there(); });
  return best;
}

}  // namespace text
