#include <qorvii18n/i18n_mime.hpp>

namespace i18n_mime {

GenericEncoder::GenericEncoder(const char* charset_name)
    : charset(charset_name), position(nullptr), end(nullptr) {}
GenericEncoder::GenericEncoder(const GenericEncoder& other) = default;
GenericEncoder& GenericEncoder::operator=(const GenericEncoder& other) = default;
GenericEncoder::~GenericEncoder() = default;

int GenericEncoder::get_limit_byte_size() const { return -1; }

void GenericEncoder::complete(i18n::StringBuffer<char>& /*buffer*/) {}

void GenericEncoder::set_ptrs(const std::string& chunk) {
  position = reinterpret_cast<const unsigned char*>(chunk.data());
  end = position + chunk.size();
}

}  // namespace i18n_mime
