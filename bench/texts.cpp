// The texts that are worked on.
#include <array>
#include <cstdint>

#include "bench.h"

namespace bench {

namespace {

constexpr size_t sentence_count = 6;
using Sentences = std::array<const char*, sentence_count>;

constexpr std::array<const char*, 3> names = {"English", "German", "Japanese"};

constexpr std::array<Sentences, 3> sentences = {{
    {"It is a truth universally acknowledged, that a single man must be in want of a wife.",
     "Call me Ishmael.",
     "Alice was beginning to get very tired of sitting by her sister on the bank.",
     "It was the best of times, it was the worst of times, it was the age of wisdom.",
     "Marley was dead: to begin with.",
     "\"What is the use of a book,\" thought Alice, \"without pictures or conversations?\""},
    {"Wer reitet so spät durch Nacht und Wind? Es ist der Vater mit seinem Kind.",
     "Als Gregor Samsa eines Morgens aus unruhigen Träumen erwachte, fand er sich verwandelt.",
     "Ich weiß nicht, was soll es bedeuten, daß ich so traurig bin.",
     "Über allen Gipfeln ist Ruh, in allen Wipfeln spürest du kaum einen Hauch.",
     "Es war einmal ein König, der hatte drei Söhne.",
     "Alle glücklichen Familien gleichen einander."},
    {"吾輩は猫である。名前はまだ無い。", "どこで生れたかとんと見当がつかぬ。",
     "何でも薄暗いじめじめした所でニャーニャー泣いていた事だけは記憶している。",
     "国境の長いトンネルを抜けると、海が見えた。", "親譲りの無鉄砲で小供の時から損ばかりしている。",
     "山路を登りながら、こう考えた。智に働けば角が立つ。"},
}};

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; }

}  // namespace

const char* get_name(Language language) { return names[language]; }

std::string make_text(Language language, const char* separator, size_t size) {
  const Sentences& choices = sentences[language];
  std::string text;
  text.reserve(size + 200);  // no growth: the peak of memory is measured with such a text
  for (uint32_t random = 1; text.size() <= size;) {
    random = random * 1664525 + 1013904223;
    text += choices[(random >> 16) % sentence_count];
    text += separator;
  }
  while (continues_character(text[size])) --size;
  text.resize(size);
  return text;
}

// No charset here needs more bytes for a text than UTF-8.
std::string make_text_in(const char* charset, Language language, const char* separator,
                         size_t size) {
  size_t utf8_size = size;
  for (;;) {
    std::string text = convert("UTF-8", charset, make_text(language, separator, utf8_size));
    if (text.size() + 2 > size) return text;
    utf8_size += size - text.size();
  }
}

}  // namespace bench
