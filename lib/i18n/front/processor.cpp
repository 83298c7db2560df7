#include "front/processor.h"

namespace i18n_mime {

namespace {
constexpr int block_bytes = 256;
}

Processor::Processor() : buffer(block_bytes) {}
Processor::~Processor() = default;

char* Processor::get_result() {
  process();
  if (is_error()) return nullptr;
  return buffer.copy_content().release();
}

char* Processor::convert(const char* input) {
  borrow_in_str(input);
  return get_result();
}

}  // namespace i18n_mime
