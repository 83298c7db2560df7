// The texts that the benchmarks work on.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

enum class Language { kEnglish, kGerman, kJapanese };

const char* get_name(Language language);

// UTF-8 sentences, a separator after each, in an order that is the same in every run. Ends with a
// whole character and has at most size bytes, fewer by three at most.
std::string make_text(Language language, size_t size, const char* separator = "\n");

// The same in another charset, in which the size is counted.
std::string make_text_in(const char* charset, Language language, size_t size);

}  // namespace bench
