// How much of a text is converted at once. The sizes show in where long headers are cut:
// docs/architecture.md says why they are what they are.
#pragma once

namespace i18n {

constexpr int chunk_bytes = 256;  // of the target charset

// UTF-16 units before that. Text of up to three bytes a unit then needs about one call of the
// second stage for each call of the first.
constexpr int get_unit_chunk(int bytes) { return bytes / 3 + 1; }

}  // namespace i18n
