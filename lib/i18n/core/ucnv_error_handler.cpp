#include <unicode/utypes.h>
#include <qorvii18n/i18n.hpp>

namespace i18n {

UcnvErrorHandler::UcnvErrorHandler() : status(U_ZERO_ERROR) {}
UcnvErrorHandler::UcnvErrorHandler(const UcnvErrorHandler& other) = default;
UcnvErrorHandler& UcnvErrorHandler::operator=(const UcnvErrorHandler& other) = default;
UcnvErrorHandler& UcnvErrorHandler::operator=(UcnvErrorHandler&& other) noexcept = default;

void UcnvErrorHandler::ucnv_set_ok() { status = U_ZERO_ERROR; }
bool UcnvErrorHandler::ucnv_is_ok() const { return ucnv_is_total_ok() || has_next(); }
bool UcnvErrorHandler::has_next() const { return status == U_BUFFER_OVERFLOW_ERROR; }
bool UcnvErrorHandler::ucnv_is_total_ok() const { return status <= U_ZERO_ERROR; }

}  // namespace i18n
