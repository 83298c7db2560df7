"""The texts that travel through the mails, 60 in each of 11 languages, and where each goes."""
import random
import unicodedata

# Eight words and a sentence each. Between them they have combining marks, joiners, several planes,
# and both directions of writing. The first kana alternate with "a" so that a word in ISO-2022-JP
# cannot end between them without padding.
LANGUAGES = {
    "English": ("report naïve budget résumé meeting coöperate Zoë tomorrow",
                "The “quick” brown fox — 12 % faster — jumps over the lazy dog’s café."),
    "German": ("Grüße Straße Köln Brötchen Ärger Übermut Öl Maß",
               "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich."),
    "French": ("élève Noël garçon cœur déjà œuvre été français",
               "Dès Noël, où un zéphyr haï me vêt de glaçons würmiens, je dîne d’exquis rôtis."),
    "Russian": ("привет мир отчёт завтра письмо Йошкар-Ола объём щука",
                "Съешь же ещё этих мягких французских булок, да выпей чаю."),
    "Greek": ("γειά σου Ἀθῆναι ὦ μῆλον αύριο έκθεση ΰαλος",
              "Ξεσκεπάζω τὴν ψυχοφθόρα βδελυγμία· γαζέες καὶ μυρτιὲς δὲν θὰ βρῶ πιά."),
    "Japanese": ("報告書 会議 ありがとう 東京 カタカナ が\u3099 明日 吾輩は猫",
                 "aaいaろaはaにaほaへと、散りぬるを。我が世誰ぞ、常ならむ。有為の奥山、今日越えて。"),
    "Chinese": ("報告 中文 北京 𠮷野家 明天 會議 学习 謝謝",
                "天地玄黃,宇宙洪荒。日月盈昃,辰宿列張。寒來暑往,秋收冬藏。"),
    "Korean": ("보고서 안녕 한글 한국 내일 회의 감사 훈민정음",
               "키스의 고유조건은 입술끼리 만나야 하고 특별한 기술은 필요치 않다."),
    "Arabic": ("تقرير مرحبا عَرَبِيّ غدًا اجتماع \u202bشكرا\u202c ١٢٣ لا",
               "صِف خَلقَ خَودِ كَمِثلِ الشَمسِ إِذ بَزَغَت — يَحظى الضَجيعُ بِها نَجلاءَ مِعطارِ."),
    "Hindi": ("नमस्ते रिपोर्ट हिन्दी क्षत्रिय कल बैठक धन्यवाद श्री",
              "ऋषियों को सताने वाले दुष्ट राक्षसों के राजा रावण का सर्वनाश करने वाले।"),
    "Emoji": ("👩‍👩‍👧‍👦 🇩🇪🇯🇵 👍🏽 e\u0301\u0323 שלום ภาษาไทย ❤️ 🏴"
              "\U000e0067\U000e0062\U000e0065\U000e006e\U000e0067\U000e007f",
              "👨‍👩‍👧‍👦👨‍👩‍👧‍👦 went to 🇧🇷, said שָׁלוֹם and สวัสดี, Tiê\u0301ng Viê\u0323t 👩🏾‍🚀…"),
}

# {0} to {7} are the words, {s} the sentence, {l} all words without a blank between them.
SHAPES = [
    "{0}", "{0} {1}", "{s}", "{l}", "{l}{l}{l}{l}", "{s} " * 30 + "{0}",
    # blanks: outer, double, lone, between words plain and not
    " {0}", "{0} ", " {0} ", "   {1}   ", "{0}  {1}", "a  b", "  a b", "a b  ", " ", "<{0}>",
    "{0}   plain   {1}", "plain  {0}  plain", "plain {0} plain {1} plain", "a {0} b {1} c {2} d",
    "{0} and then a tail of quite plain words that goes on for more than one line of the mail {1}",
    "plain words that go on for more than one line of the mail, and another, before {2}",
    "one plain word, then many: " + "plain " * 40 + "end", "x" * 150, "{3} " + "y" * 200 + " {4}",
    "\t{0}", "{0}\t", "{0}\t{1}", "a\tb", "\t", "{0} \t {1}", "{0}\u00a0{1}", "\u3000{0}\u3000",
    # what looks like an encoded word, and what ends one
    "=", "=?", "?=", "{0}=", "={0}", "=?{0}", "{0}?=", "=?UTF-8?Q?{0}?=", "=?UTF-8?Q?plain?=",
    "=?utf-8?b?YWJj?= =?utf-8?b?ZGVm?=", "a =? b ?= c", "{0}=20{1}", "a=3Db_c", "{0}_{1}?{2}",
    # what splits lists of addresses, quotes strings, opens comments, and looks like a parameter
    "{0}, {1}", "\"{0}\" {1}", "{0} \"", "({0})", "Dr. {0} <{1}>", "a@b; {0}: [{1}]",
    "back\\slash {0}\\",
    "Klein, J. (\"plain\")", "%41 {0} 100 %", "{0}'{1}''{2}",
    # characters that some drop
    "\ufeff{0}", "{0}\u200b{1}\u00ad{2}\u200e", "{0}\u2027{1}\x7f\x01",
]
assert len(SHAPES) == 60 and len(LANGUAGES) == 11

# Bodies: {t} is the text, {u} the sentence.
BODIES = [
    "{t}", "{t}\n", "\n{t}\n\n", "{t}\r\n{u}\r\n", "{t}\r{u}\r\r", "", "\n", "\n\n\n",
    "From {t}\nFrom me\n>From you\n", ".\n..\n.{t}\n", "{t} \n{u}\t\n \n\t\n", "{u}\n" * 30 + "{t}",
    "plain\n", "plain", "From plain\n.plain\nplain \n", "{t}\n-- \n{u}\n",
    "--\n--{t}--\n={t}=\n=20\n",
    # what would end the part, and begin another
    "plain\n--=_1_=\nContent-Disposition: attachment; filename=x\n\nplain\n--=_1_=--\n",
]

# Charsets of further mails, without attachment, by language.
CHARSETS = {
    "English": ["windows-1252"], "French": ["windows-1252"],
    "German": ["ISO-8859-1", "ISO-8859-15"],
    "Russian": ["KOI8-R", "windows-1251", "ISO-8859-5"],
    "Japanese": ["ISO-2022-JP", "Shift_JIS", "EUC-JP"], "Chinese": ["GB18030", "Big5"],
    "Korean": ["EUC-KR"], "Emoji": ["GB18030"], "Hindi": ["UTF-8"],
}

DATE = 1795438800
REFERENCES = ("<0123456789abcdef0123456789abcdef@example.org>"
              " <0123456789abcdef0123456789abcdef@example.net>")
LOCALS = ["j", "klein.j", "a+b_c-d", "me?!#$%&'*/=^`{|}~"]
DOMAINS = ["example.org", "mail.example.org", "example.net", "b-1.example"]
DOMAINS_BEYOND_ASCII = ["bücher.example", "xn--bcher-kva.example", "例え.example", "Ελλάδα.example"]


def line_ends(text):
    """As a body ends its lines once it was read: each with one LF, the last one, too."""
    text = text.replace("\r\n", "\n").replace("\r", "\n")
    return text if text.endswith("\n") or not text else text + "\n"


def without_format(word):
    """Without the characters that local parts must not have."""
    return "".join(c for c in word if unicodedata.category(c) != "Cf")


def encodable(text, charset):
    try:
        text.encode(charset)
        return True
    except UnicodeEncodeError:
        return False


def mails():
    """What goes into each mail: a dictionary of its charset, subject, names and so on."""
    chance = random.Random(11)
    for place, (language, (words, sentence)) in enumerate(LANGUAGES.items()):
        words = words.split(" ")
        texts = [s.format(*words, s=sentence, l="".join(words)) for s in SHAPES]
        for kind, charset in enumerate(["UTF-8", *CHARSETS.get(language, [])]):
            for number, text in enumerate(texts):
                body = BODIES[(number + place) % len(BODIES)].format(t=text, u=sentence)
                comma = "," if number % 4 == 0 else ""
                names = [text, "", texts[(number + 7) % 60], f"{words[number % 5]}{comma} {number}"]
                if not all(encodable(t, charset) for t in [text, body, *names]):
                    continue
                domains = DOMAINS_BEYOND_ASCII if number % 4 == 1 else DOMAINS
                yield {
                    "label": f"{language} {charset} {number}",
                    "charset": charset,
                    "subject": text,
                    "to": [(name, f"{local}@{domain}")
                           for name, local, domain in zip(names, LOCALS, domains, strict=True)],
                    "cc": [f"{without_format(words[number % 8])}@example.org", '"john doe"@example.org'],
                    "text": body,
                    "filename": text + ".pdf" * (number % 2),
                    "data": chance.randbytes(number * 7 % 200) if kind == 0 else None,
                }
