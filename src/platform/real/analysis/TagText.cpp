#include "platform/real/analysis/TagText.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <iterator>

namespace zemo {

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsControl(wchar_t unit) {
  constexpr wchar_t kLineSeparator = 0x2028;
  constexpr wchar_t kParagraphSeparator = 0x2029;
  constexpr wchar_t kByteOrderMark = 0xFEFF;
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == kLineSeparator ||
         unit == kParagraphSeparator || unit == kByteOrderMark;
}

bool IsFirstHalf(wchar_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool IsSecondHalf(wchar_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// UTF-8 that a tag says is Latin-1: each byte has become a character. No other text reads so.
TagLib::String OfItsBytes(const TagLib::String& text) {
  if (!text.isLatin1() || text.isAscii()) return text;
  const TagLib::String read(text.data(TagLib::String::Latin1), TagLib::String::UTF8);
  return read.isEmpty() ? text : read;
}

std::string FirstOf(const TagFields& fields, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const auto field = fields.find(name);
    if (field != fields.end()) return field->second;
  }
  return {};
}

}  // namespace

void AddField(TagFields& fields, const std::string& name, const std::string& text) {
  if (text.empty()) return;
  std::string& field = fields[name];
  field += field.empty() ? text : ", " + text;
}

TagTexts TextsOf(const TagFields& fields) {
  TagTexts texts;
  texts.artist = FirstOf(fields, {"ARTIST"});
  texts.title = FirstOf(fields, {"TITLE"});
  texts.genre = FirstOf(fields, {"GENRE"});
  texts.year = YearText(FirstOf(fields, {"DATE", "YEAR"}));
  texts.album = FirstOf(fields, {"ALBUM"});
  texts.composer = FirstOf(fields, {"COMPOSER"});
  texts.label = FirstOf(fields, {"LABEL", "PUBLISHER", "ORGANIZATION"});
  return texts;
}

TagLib::String TextOfBytes(const TagLib::ByteVector& bytes) {
  const TagLib::String text(bytes, TagLib::String::UTF8);
  return text.isEmpty() ? TagLib::String(bytes, TagLib::String::Latin1) : text;
}

// The units are those of UTF-16.
std::string FieldText(TagLib::String text) {
  text = OfItsBytes(text);
  for (auto unit = text.begin(); unit != text.end(); ++unit) {
    if (IsControl(*unit)) *unit = L' ';
    const bool whole =
        IsFirstHalf(*unit) && std::next(unit) != text.end() && IsSecondHalf(*std::next(unit));
    if (whole) {
      ++unit;
    } else if (IsFirstHalf(*unit) || IsSecondHalf(*unit)) {
      *unit = kReplacement;
    }
  }
  const std::string field = text.to8Bit(true);
  const size_t begin = field.find_first_not_of(' ');
  if (begin == std::string::npos) return {};
  return field.substr(begin, field.find_last_not_of(' ') + 1 - begin);
}

std::string YearText(const std::string& date) {
  constexpr size_t kDigits = 4;
  const auto isDigit = [](unsigned char c) { return std::isdigit(c) != 0; };
  for (auto at = date.begin(); at != date.end();) {
    at = std::find_if(at, date.end(), isDigit);
    const auto end = std::find_if_not(at, date.end(), isDigit);
    if (static_cast<size_t>(end - at) >= kDigits) {
      std::string year(at, at + kDigits);
      return year == "0000" ? "" : year;
    }
    at = end;
  }
  return {};
}

}  // namespace zemo
