#include "text/stream/stream_converter.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>
#include <utility>

#include <unicode/utf16.h>

namespace text {

namespace {

// Without branches, so that compilers make vector code of it.
bool has_surrogates(std::u16string_view units) {
  unsigned count = 0;
  for (const char16_t unit : units) count += U16_IS_SURROGATE(unit);
  return count > 0;
}

// The index of the first half of a pair that has no other half beside it.
size_t find_lone_surrogate(std::u16string_view units) {
  if (!has_surrogates(units)) return units.size();
  for (size_t index = 0; index < units.size();) {
    const size_t begin = index;
    UChar32 character;
    U16_NEXT(units.data(), index, units.size(), character);
    if (U_IS_SURROGATE(character)) return begin;
  }
  return units.size();
}

}  // namespace

StreamConverter::StreamConverter(Source source, Target target, Shortcut shortcut)
    : source_(std::move(source)), target_(std::move(target)), shortcut_(shortcut) {}

i18n_text_status_t StreamConverter::convert(Input& input, Output& output, bool is_last) noexcept {
  const char* const input_begin = input.next;
  const char* const output_begin = output.next;
  try {
    while (hand_out(output)) {
      if (stage_ == Stage::over) {
        if (error_.status != I18N_TEXT_OK || input.next == input.end) return error_.status;
        return I18N_TEXT_ENDED;
      } else if (stage_ == Stage::reset) {
        begin();
      } else if (!is_checked_) {
        check();
      } else if (unit_ != units_end_ || has_more_output_) {
        write(output);
      } else if (failure_) {
        fail();
      } else if (stage_ == Stage::finish) {
        finish_writing();
      } else if (has_more_units_ || input.next != input.end) {
        if (!take_shortcut(input, output)) read(input);
      } else if (is_last) {
        finish_reading();
      } else {
        return I18N_TEXT_OK;
      }
    }
    return I18N_TEXT_FULL;
  } catch (const std::bad_alloc&) {
    // What was done before stays done: the next call says the same again if it must.
    const bool has_begun = input.next != input_begin || output.next != output_begin;
    return has_begun ? I18N_TEXT_FULL : I18N_TEXT_OUT_OF_MEMORY;
  }
}

// Output that the caller had no room for.
bool StreamConverter::hand_out(Output& output) {
  const auto size = std::min(kept_end_ - kept_, output.end - output.next);
  output.next = std::copy_n(kept_, size, output.next);
  kept_ += size;
  return kept_ == kept_end_;
}

void StreamConverter::keep(const char* begin, const char* end) {
  kept_ = begin;
  kept_end_ = end;
}

void StreamConverter::begin() {
  source_.reset();
  target_.reset();
  stage_ = Stage::read;
}

// As far as it leads. What stops it is often one character, so the converters take but a little
// then.
bool StreamConverter::take_shortcut(Input& input, Output& output) {
  if (has_more_units_ || now_.lead != 0 || !source_.is_between_characters() ||
      !target_.is_between_characters()) {
    return false;
  }
  const char* const begin = input.next;
  while (input.next != input.end &&
         output.end - output.next >= static_cast<ptrdiff_t>(Shortcut::least_room)) {
    const Shortcut::Step step = shortcut_.convert(as_bytes({input.next, input.end}),
                                                  {reinterpret_cast<unsigned char*>(output.next),
                                                   reinterpret_cast<unsigned char*>(output.end)},
                                                  now_.place);
    if (step.read == 0) break;
    input.next += step.read;
    now_.bytes += step.read;
    output.next += step.written;
    now_.written += step.written;
  }
  constexpr size_t least_read = 64;
  if (input.next == begin) return false;
  most_read_ = least_read;
  return true;
}

void StreamConverter::read(Input& input) {
  if (history_.is_losing_lead(now_)) now_.lead_begin = find_lead(now_, history_, source_);
  history_.prepare(now_, source_, target_);
  const char* const begin = input.next;
  // The shortcut begins again after the character that is being read.
  const size_t wanted = source_.is_inside_character() ? 1 : most_read_;
  const auto most = std::min(input.end - begin, static_cast<ptrdiff_t>(wanted));
  most_read_ = std::min(2 * most_read_, History::max_read);
  char16_t* end = units_;
  if (now_.lead != 0) *end++ = now_.lead;
  const Source::Result result = source_.read(input.next, begin + most, end, std::end(units_));
  history_.append(begin, static_cast<size_t>(input.next - begin));
  now_.bytes += static_cast<size_t>(input.next - begin);
  accept(end, result);
}

void StreamConverter::finish_reading() {
  char16_t* end = units_;
  if (now_.lead != 0) *end++ = now_.lead;
  const Source::Result result = source_.finish(end, std::end(units_));
  if (result != Source::Result::more) stage_ = Stage::finish;
  accept(end, result);
}

void StreamConverter::accept(char16_t* end, Source::Result result) {
  const bool is_good = result == Source::Result::all || result == Source::Result::more;
  const bool goes_on = is_good && stage_ == Stage::read;
  now_.lead = goes_on && end != units_ && U16_IS_LEAD(end[-1]) ? *--end : u'\0';
  unit_ = units_;
  units_end_ = end;
  is_checked_ = false;
  has_more_units_ = result == Source::Result::more;
  if (!is_good) {
    failure_ = {result == Source::Result::invalid ? I18N_TEXT_INVALID : I18N_TEXT_INCOMPLETE,
                now_.units + static_cast<size_t>(end - units_)};
  }
}

// What comes before the first unit that is no character, or that would be written and then be read
// as another.
void StreamConverter::check() {
  std::u16string_view units(unit_, units_end_);
  const size_t all = units.size();
  auto status = I18N_TEXT_INVALID;
  units = units.substr(0, find_lone_surrogate(units));
  if (const size_t size = target_.find_one_way(units); size < units.size()) {
    units = units.substr(0, size);
    status = I18N_TEXT_LACKING;
  }
  if (units.size() < all) failure_ = {status, now_.units + units.size()};
  now_.place.advance(units);
  now_.units += units.size();
  if (!units.empty()) now_.lead_begin.reset();
  units_end_ = unit_ + units.size();
  is_checked_ = true;
}

void StreamConverter::write(Output& output) {
  const bool is_roomy = output.end - output.next >= static_cast<ptrdiff_t>(sizeof room_);
  char* const begin = is_roomy ? output.next : room_;
  char* end = begin;
  const Target::Result result =
      target_.write(unit_, units_end_, end, is_roomy ? output.end : std::end(room_));
  has_more_output_ = result == Target::Result::more;
  if (result == Target::Result::lacking) return note_lacking();
  now_.written += static_cast<size_t>(end - begin);
  if (is_roomy) {
    output.next = end;
  } else {
    keep(begin, end);
  }
}

void StreamConverter::finish_writing() {
  char* end = room_;
  const Target::Result result = target_.finish(end, std::end(room_));
  if (result == Target::Result::lacking) return note_lacking();
  now_.written += static_cast<size_t>(end - room_);
  keep(room_, end);
  if (result == Target::Result::all) {
    error_ = {};
    stage_ = Stage::over;
  }
}

// Nothing that the target wrote in this call counts.
void StreamConverter::note_lacking() {
  const size_t after = target_.count_unwritten() + static_cast<size_t>(units_end_ - unit_);
  failure_ = {I18N_TEXT_LACKING, now_.units - std::min<std::uint64_t>(after, now_.units)};
  unit_ = units_end_;
}

void StreamConverter::fail() {
  Verdict verdict = judge(*failure_, history_, source_, target_, now_.written);
  error_ = verdict.error;
  failure_output_ = std::move(verdict.output);
  keep(failure_output_.data(), failure_output_.data() + failure_output_.size());
  failure_.reset();
  stage_ = Stage::over;
}

void StreamConverter::stop() noexcept {
  reset();
  error_ = {I18N_TEXT_STOPPED, 0, 0, 0, 0};
  stage_ = Stage::over;
}

void StreamConverter::reset() noexcept {
  history_.clear();
  now_ = Mark();
  stage_ = Stage::reset;
  has_more_units_ = has_more_output_ = false;
  unit_ = units_end_ = units_;
  is_checked_ = true;
  failure_.reset();
  keep(room_, room_);
  error_ = {};
}

i18n_text_error_t StreamConverter::error() const {
  return stage_ == Stage::over && kept_ == kept_end_ ? error_ : i18n_text_error_t();
}

}  // namespace text
