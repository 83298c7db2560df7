#include <qorvii18n/i18n.hpp>

namespace i18n {

Error::Error() : flag(false) {}
Error::Error(const Error& other) = default;
Error& Error::operator=(const Error& other) = default;
Error& Error::operator=(Error&& other) noexcept = default;

void Error::set_error() { flag = true; }
bool Error::is_ok() const { return !flag; }
bool Error::is_error() const { return flag; }

}  // namespace i18n
