// The status holder and the pair of indices.
#include <unicode/utypes.h>
#include <qorvii18n/i18n.hpp>

namespace i18n {

namespace {
constexpr std::int32_t open_end = -1;
}

UcnvErrorHandler::UcnvErrorHandler() : status(U_ZERO_ERROR) {}
UcnvErrorHandler::UcnvErrorHandler(const UcnvErrorHandler& other) = default;
UcnvErrorHandler& UcnvErrorHandler::operator=(const UcnvErrorHandler& other) = default;
UcnvErrorHandler& UcnvErrorHandler::operator=(UcnvErrorHandler&& other) noexcept = default;

void UcnvErrorHandler::ucnv_set_ok() { status = U_ZERO_ERROR; }
bool UcnvErrorHandler::ucnv_is_ok() const { return ucnv_is_total_ok() || has_next(); }
bool UcnvErrorHandler::has_next() const { return status == U_BUFFER_OVERFLOW_ERROR; }
bool UcnvErrorHandler::ucnv_is_total_ok() const { return status <= U_ZERO_ERROR; }

BegEnd::BegEnd() : begin(0), end(0) {}
BegEnd::BegEnd(int begin_index, int end_index) : begin(begin_index), end(end_index) {}
BegEnd::BegEnd(const BegEnd& other) = default;
BegEnd& BegEnd::operator=(const BegEnd& other) = default;

void BegEnd::add(int n) {
  begin += n;
  if (end != open_end) end += n;
}

int BegEnd::size() const { return end - begin; }

}  // namespace i18n
