// Comparison of UTF-8 texts: Latin letters by table, the order in two levels.
#include "store/Collation.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zemo {

namespace {

using CodePoint = char32_t;

// Takes one code point off the front of `text` (not empty). A stray byte comes as 0xDC00 + byte, a
// value that no valid text holds.
CodePoint TakeCodePoint(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const int length = lead < 0x80   ? 1
                     : lead < 0xC2 ? 0
                     : lead < 0xE0 ? 2
                     : lead < 0xF0 ? 3
                     : lead < 0xF5 ? 4
                                   : 0;
  if (length == 1) {
    text.remove_prefix(1);
    return lead;
  }
  CodePoint point = length == 2 ? lead & 0x1Fu : length == 3 ? lead & 0x0Fu : lead & 0x07u;
  bool valid = length != 0 && text.size() >= static_cast<size_t>(length);
  for (size_t i = 1; valid && i < static_cast<size_t>(length); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    valid = (byte & 0xC0u) == 0x80u;
    point = (point << 6) | (byte & 0x3Fu);
  }
  text.remove_prefix(valid ? static_cast<size_t>(length) : 1);
  return valid ? point : 0xDC00u + lead;
}

}  // namespace

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char32_t FoldCase(char32_t c) {
  if (c < 0x80) return c >= 'A' && c <= 'Z' ? c + 32 : c;
  if (c >= 0xC0 && c <= 0xDE) return c == 0xD7 ? c : c + 32;
  if (c >= 0x100 && c <= 0x17F) {
    if (c == 0x130) return 'i';
    if (c == 0x178) return 0xFF;
    if (c == 0x17F) return 's';
    if (c == 0x131 || c == 0x138 || c == 0x149) return c;
    const bool oddCapitals = (c >= 0x139 && c <= 0x148) || c >= 0x179;
    return ((c & 1u) != 0) == oddCapitals ? c + 1 : c;
  }
  if (c >= 0x391 && c <= 0x3A9) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if (c >= 0x1E00 && c <= 0x1EFF && (c < 0x1E96 || c > 0x1E9F)) return c | 1u;
  return c;
}

namespace {

// Plain letters of U+0100 to U+017F, in order.
constexpr std::string_view kPlainExtended =
    "aaaaaa"
    "cccccccc"
    "dddd"
    "eeeeeeeeee"
    "gggggggg"
    "hhhh"
    "iiiiiiiiii"
    "ii"
    "jj"
    "kkk"
    "llllllllll"
    "nnnnnnnnn"
    "oooooo"
    "oo"
    "rrrrrr"
    "ssssssss"
    "tttttt"
    "uuuuuuuuuuuu"
    "ww"
    "yyy"
    "zzzzzz"
    "s";
static_assert(kPlainExtended.size() == 0x80);

// Plain letters of U+00E0 to U+00FF, in order; the division sign stands for itself.
constexpr std::string_view kPlainLatin1 = "aaaaaaaceeeeiiiidnooooo/ouuuuyty";
static_assert(kPlainLatin1.size() == 0x20);

}  // namespace

LetterWeights WeightsOf(char32_t character) {
  const CodePoint c = FoldCase(character);
  if (c < 0x80) return {c == 0 ? 1 : c, 0, 0};  // 0 marks the end of a text
  if (c == 0xDF) return {'s', 's', c};
  if (c == 0xE6) return {'a', 'e', c};
  if (c == 0xFE) return {'t', 'h', c};
  if (c == 0x133) return {'i', 'j', c};
  if (c == 0x153) return {'o', 'e', c};
  if (c >= 0xE0 && c <= 0xFF && c != 0xF7) {
    return {static_cast<char32_t>(kPlainLatin1[c - 0xE0]), 0, c};
  }
  if (c >= 0x100 && c <= 0x17F) return {static_cast<char32_t>(kPlainExtended[c - 0x100]), 0, c};
  return {c, 0, 0};
}

namespace {

bool IsCombiningMark(CodePoint c) {
  return c >= kFirstMark && c <= kLastMark;
}

// Gives the plain letters of a text one by one, then 0 for ever.
class PlainLetters {
 public:
  explicit PlainLetters(std::string_view text) : rest_(text) {}

  CodePoint Next() {
    if (pending_ != 0) {
      const CodePoint letter = pending_;
      pending_ = 0;
      return letter;
    }
    while (!rest_.empty()) {
      const CodePoint c = TakeCodePoint(rest_);
      if (IsCombiningMark(c)) {
        accented_ = true;
        continue;
      }
      const LetterWeights weights = WeightsOf(c);
      accented_ = accented_ || weights.accent != 0;
      pending_ = weights.second;
      return weights.first;
    }
    return 0;
  }
  bool Accented() const { return accented_; }  // of what was given so far

 private:
  std::string_view rest_;
  CodePoint pending_ = 0;
  bool accented_ = false;
};

// One accent (0 for none) for each plain letter of the text.
std::vector<CodePoint> AccentsOf(std::string_view text) {
  std::vector<CodePoint> accents;
  while (!text.empty()) {
    const CodePoint c = TakeCodePoint(text);
    if (IsCombiningMark(c)) {
      if (!accents.empty()) accents.back() = c;
      continue;
    }
    const LetterWeights weights = WeightsOf(c);
    accents.push_back(weights.accent);
    if (weights.second != 0) accents.push_back(weights.accent);
  }
  return accents;
}

int Sign(CodePoint a, CodePoint b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

// Most texts are decided by their ASCII letters. Takes the equal ones off the front of both; what
// is left differs in a way that has to be looked at closely, unless `sign` says otherwise.
bool DecidedByAscii(std::string_view& a, std::string_view& b, int& sign) {
  const auto plain = [](char c) { return static_cast<signed char>(c) > 0; };
  const size_t shorter = std::min(a.size(), b.size());
  size_t i = 0;
  for (; i < shorter && plain(a[i]) && plain(b[i]); ++i) {
    if (a[i] == b[i]) continue;
    const CodePoint letterA = FoldCase(static_cast<CodePoint>(a[i]));
    const CodePoint letterB = FoldCase(static_cast<CodePoint>(b[i]));
    if (letterA != letterB) {
      // A mark of its own behind either letter would not change its place either.
      sign = Sign(letterA, letterB);
      return true;
    }
  }
  a.remove_prefix(i);
  b.remove_prefix(i);
  sign = Sign(a.empty() ? 0 : 1, b.empty() ? 0 : 1);
  return (a.empty() || plain(a.front())) && (b.empty() || plain(b.front()));
}

}  // namespace

int CompareFrenchOrder(std::string_view a, std::string_view b) {
  const std::string_view wholeA = a;
  const std::string_view wholeB = b;
  int sign = 0;
  if (DecidedByAscii(a, b, sign)) return sign;
  PlainLetters lettersA(a);
  PlainLetters lettersB(b);
  for (;;) {
    const CodePoint letterA = lettersA.Next();
    const CodePoint letterB = lettersB.Next();
    if (letterA != letterB) return Sign(letterA, letterB);
    if (letterA == 0) break;
  }
  if (!lettersA.Accented() && !lettersB.Accented()) return 0;
  const auto accentsA = AccentsOf(wholeA);
  const auto accentsB = AccentsOf(wholeB);
  for (size_t i = accentsA.size(); i-- > 0;) {  // as many in both: their letters are the same
    if (accentsA[i] != accentsB[i]) return Sign(accentsA[i], accentsB[i]);
  }
  return 0;
}

int CompareFrenchCase(std::string_view a, std::string_view b) {
  int sign = 0;
  if (DecidedByAscii(a, b, sign)) return sign;
  while (!a.empty() && !b.empty()) {
    const CodePoint letterA = FoldCase(TakeCodePoint(a));
    const CodePoint letterB = FoldCase(TakeCodePoint(b));
    if (letterA != letterB) return Sign(letterA, letterB);
  }
  return Sign(a.empty() ? 0 : 1, b.empty() ? 0 : 1);
}

bool MatchesPattern(std::string_view text, std::string_view pattern) {
  // On a mismatch the last `*` takes one character more; earlier ones need never be tried again.
  bool starred = false;
  std::string_view textAtStar;
  std::string_view patternBehindStar;
  while (!text.empty() || !pattern.empty()) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      starred = true;
      textAtStar = text;
      patternBehindStar = pattern;
      continue;
    }
    if (!pattern.empty() && !text.empty()) {
      std::string_view patternRest = pattern;
      std::string_view textRest = text;
      const CodePoint wanted = TakeCodePoint(patternRest);
      const CodePoint found = TakeCodePoint(textRest);
      if (wanted == '?' || FoldCase(wanted) == FoldCase(found)) {
        pattern = patternRest;
        text = textRest;
        continue;
      }
    }
    if (!starred || textAtStar.empty()) return false;
    TakeCodePoint(textAtStar);
    text = textAtStar;
    pattern = patternBehindStar;
  }
  return true;
}

}  // namespace zemo
