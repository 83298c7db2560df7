// Both roads of the MIME functions: of what the fast one takes, the exact one writes the same
// bytes, and it has nothing to report.
#include "fast/fast_road.h"
#include "front/front.h"
#include "fuzz.h"

namespace {

template <class ConvEncoder>
std::string take_exact_road(const fast::Work& work, const std::string& text) {
  const i18n::CString mail(PlainConverterEncoder<ConvEncoder>(work.from_charset, work.to_charset)
                               .encode_or_copy(text.c_str()));
  return mail.get();
}

struct Road {
  fast::Form form;
  i18n_mime_encoding_t encoding;
  std::string (*exact)(const fast::Work& work, const std::string& text);
};

constexpr Road roads[] = {
    {fast::Form::kBody, I18N_MIME_QP,
     take_exact_road<i18n_mime::BodyConverterEncoder<i18n_mime::QPBodyEncoder>>},
    {fast::Form::kBody, I18N_MIME_B64,
     take_exact_road<i18n_mime::BodyConverterEncoder<i18n_mime::B64BodyEncoder>>},
    {fast::Form::kHeader, I18N_MIME_QP,
     take_exact_road<i18n_mime::HeaderConverterEncoder<i18n_mime::QPHeaderEncoder>>},
    {fast::Form::kHeader, I18N_MIME_B64,
     take_exact_road<i18n_mime::HeaderConverterEncoder<i18n_mime::B64HeaderEncoder>>},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const char* from = input.charset(true);
  const char* to = input.charset(true);
  const Road& road = roads[input.number(4)];
  const std::string whole = input.text(from, to, 64);
  const std::string text = whole.c_str();  // up to the first NUL

  const fast::Work work = {road.form, road.encoding, from, to};
  const i18n::CString mail = fast::encode(work, text);
  fuzz::check(fuzz::messages.empty() && fuzz::failed_checks == 0, "the fast road is silent");
  if (!mail) return 0;
  const std::string exact = road.exact(work, text);
  fuzz::check(fuzz::messages.empty() && fuzz::failed_checks == 0, "the exact road is silent, too");
  fuzz::check(exact == mail.get(), "both roads give the same");
  return 0;
}
