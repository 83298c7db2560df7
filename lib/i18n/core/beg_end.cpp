#include <qorvii18n/i18n.hpp>

namespace i18n {

namespace {
constexpr std::int32_t open_end = -1;
}

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
