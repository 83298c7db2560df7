// The texts that are worked on.
#include <array>
#include <cstdint>

#include "bench.h"

namespace bench {

namespace {

constexpr size_t sentence_count = 6;
using Sentences = std::array<const char*, sentence_count>;

constexpr std::array<const char*, 7> names = {"English", "German",  "Japanese", "Russian",
                                              "Korean",  "Chinese", "Taiwanese"};

constexpr std::array<Sentences, 7> sentences = {{
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
    {"Все счастливые семьи похожи друг на друга, каждая несчастливая семья несчастлива по-своему.",
     "Мой дядя самых честных правил, когда не в шутку занемог, он уважать себя заставил.",
     "В начале июля, в чрезвычайно жаркое время, под вечер, один молодой человек вышел на улицу.",
     "Мороз и солнце; день чудесный!", "Редкая птица долетит до середины Днепра.",
     "Я помню чудное мгновенье: передо мной явилась ты."},
    {"죽는 날까지 하늘을 우러러 한 점 부끄럼이 없기를, 잎새에 이는 바람에도 나는 괴로워했다.",
     "나 보기가 역겨워 가실 때에는 말없이 고이 보내 드리우리다.", "님은 갔습니다.",
     "별을 노래하는 마음으로 모든 죽어가는 것을 사랑해야지.",
     "산에는 꽃 피네, 꽃이 피네. 갈 봄 여름 없이 꽃이 피네.",
     "넓은 벌 동쪽 끝으로 옛이야기 지줄대는 실개천이 휘돌아 나가고."},
    {"床前明月光，疑是地上霜。举头望明月，低头思故乡。", "学而时习之，不亦说乎？",
     "话说天下大势，分久必合，合久必分。", "道可道，非常道。名可名，非常名。",
     "在我的后园，可以看见墙外有两株树，一株是枣树，还有一株也是枣树。",
     "鲁镇的酒店的格局，是和别处不同的：都是当街一个曲尺形的大柜台。"},
    {"床前明月光，疑是地上霜。舉頭望明月，低頭思故鄉。", "學而時習之，不亦說乎？",
     "話說天下大勢，分久必合，合久必分。", "道可道，非常道。名可名，非常名。",
     "在我的後園，可以看見牆外有兩株樹，一株是棗樹，還有一株也是棗樹。",
     "魯鎮的酒店的格局，是和別處不同的：都是當街一個曲尺形的大櫃臺。"},
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
