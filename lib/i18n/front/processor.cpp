#include "front/processor.h"

#include "core/c_string.h"

namespace i18n_mime {

namespace {
constexpr int block_bytes = 256;
}

Processor::Processor() : buffer(block_bytes) {}
Processor::~Processor() = default;

char* Processor::get_result() {
  process();
  if (is_error()) return nullptr;
  i18n::CString result = i18n::allocate_c_string(buffer.get_block_total() + 1);
  buffer.copy_content(result.get());
  result[buffer.get_size()] = '\0';
  return result.release();
}

char* Processor::convert(const char* input) {
  set_in_str(input);
  return get_result();
}

}  // namespace i18n_mime
