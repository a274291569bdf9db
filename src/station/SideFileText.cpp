// Encoding, lines and fields of the side files.
#include "station/SideFileText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Windows-1252 from 0x80 to 0x9F; every other byte is the character of its own number, and so are
// the five bytes that the table leaves undefined.
constexpr std::array<char32_t, 32> kWindows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char32_t CharacterOfByte(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80u] : byte;
}

std::optional<char> ByteOfCharacter(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    return static_cast<char>(character);
  const auto found = std::find(kWindows1252.begin(), kWindows1252.end(), character);
  if (found == kWindows1252.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kWindows1252.begin()));
}

void AppendUtf8(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {  // the table above holds nothing beyond three bytes
    text += static_cast<char>(0xE0 | (character >> 12));
    text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

struct Utf8Character {
  char32_t character = 0;
  size_t length = 0;  // bytes; 0 where no valid character begins
};

// The character at the head of the bytes: no overlong form, no surrogate, nothing above 0x10FFFF.
Utf8Character FirstUtf8(std::string_view bytes) {
  const auto at = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char head = at(0);
  if (head < 0x80) return {head, 1};
  const size_t length = head >= 0xC2 && head <= 0xDF   ? 2
                        : head >= 0xE0 && head <= 0xEF ? 3
                        : head >= 0xF0 && head <= 0xF4 ? 4
                                                       : 0;
  if (length == 0 || bytes.size() < length) return {};
  char32_t character = head & (0xFFu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return {};
    character = (character << 6) | (at(i) & 0x3Fu);
  }
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kLeast[length] || character > 0x10FFFF || surrogate) return {};
  return {character, length};
}

// UTF-8 as far as it is valid; a byte that is not stands for its character in Windows-1252.
std::string RepairUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const Utf8Character first = FirstUtf8(bytes);
    const size_t length = std::max<size_t>(first.length, 1);
    if (first.length > 0) {
      text += bytes.substr(0, length);
    } else {
      AppendUtf8(text, CharacterOfByte(static_cast<unsigned char>(bytes[0])));
    }
    bytes.remove_prefix(length);
  }
  return text;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char byte : bytes) AppendUtf8(text, CharacterOfByte(static_cast<unsigned char>(byte)));
  return text;
}

// nullopt when a character does not fit.
std::optional<std::string> ToWindows1252(std::string_view validUtf8) {
  std::string bytes;
  bytes.reserve(validUtf8.size());
  while (!validUtf8.empty()) {
    const Utf8Character first = FirstUtf8(validUtf8);
    const std::optional<char> byte = ByteOfCharacter(first.character);
    if (!byte) return std::nullopt;
    bytes += *byte;
    validUtf8.remove_prefix(first.length);
  }
  return bytes;
}

bool IsBlank(char letter) {
  return letter == ' ' || letter == '\t';
}

// Reads the field at `at` of the line and leaves `at` on the comma behind it, or on the line's end.
SideField ReadField(std::string_view line, size_t& at) {
  while (at < line.size() && IsBlank(line[at])) ++at;
  SideField field;
  if (at < line.size() && line[at] == '"') {
    field.quoted = true;
    for (++at; at < line.size(); ++at) {
      if (line[at] == '"' && (at + 1 == line.size() || line[++at] != '"')) break;
      field.text += line[at];
    }
    at = std::min(line.find(',', at), line.size());
    return field;
  }
  const size_t end = std::min(line.find(',', at), line.size());
  field.text = line.substr(at, end - at);
  while (!field.text.empty() && IsBlank(field.text.back())) field.text.pop_back();
  at = end;
  return field;
}

}  // namespace

bool IsValidUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const size_t length = FirstUtf8(bytes).length;
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string DecodeSideFile(std::string_view bytes) {
  if (bytes.substr(0, kByteOrderMark.size()) == kByteOrderMark)
    return RepairUtf8(bytes.substr(kByteOrderMark.size()));
  return IsValidUtf8(bytes) ? std::string(bytes) : FromWindows1252(bytes);
}

void SideFileEncoding::Look(std::string_view utf8) {
  if (!fits_ || utf8.empty()) return;
  const auto bytes = ToWindows1252(RepairUtf8(utf8));
  fits_ = bytes.has_value();
  if (!fits_) return;
  if (std::exchange(first_, false)) beginsAsMark_ = bytes->starts_with(kByteOrderMark);
  ascii_ = ascii_ && std::all_of(bytes->begin(), bytes->end(),
                                 [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
  readAsUtf8_ = readAsUtf8_ && IsValidUtf8(*bytes);
}

std::string SideFileEncoding::Mark() const {
  return Windows1252() ? std::string() : std::string(kByteOrderMark);
}

std::string SideFileEncoding::Encode(std::string_view utf8) const {
  std::string text = RepairUtf8(utf8);
  return Windows1252() ? ToWindows1252(text).value_or(text) : text;
}

std::string EncodeSideFile(std::string_view utf8) {
  SideFileEncoding encoding;
  encoding.Look(utf8);
  return encoding.Mark() + encoding.Encode(utf8);
}

std::string EncodeAppended(std::string_view utf8) {
  SideFileEncoding encoding;
  encoding.Look(utf8);
  return encoding.Encode(utf8);
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  lines.reserve(static_cast<size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  while (!text.empty()) lines.emplace_back(TakeLine(text));
  return lines;
}

std::string_view TakeLine(std::string_view& text) {
  const size_t end = std::min(text.find_first_of("\r\n"), text.size());
  const std::string_view line = text.substr(0, end);
  const bool pair = text.substr(end, 2) == "\r\n";
  text.remove_prefix(std::min(text.size(), end + (pair ? 2 : 1)));
  return line;
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    line += text[i] == '\r' || text[i] == '\n' || text[i] == '\t' ? ' ' : text[i];
  }
  return line;
}

bool SideField::AsBool(bool fallback) const {
  const std::string word = UpperAscii(Trim(text));
  if (word == "#TRUE#" || word == "TRUE") return true;
  if (word == "#FALSE#" || word == "FALSE") return false;
  return AsInt(fallback ? 1 : 0) != 0;
}

std::optional<int32_t> SideField::Number() const {
  const std::string digits = Trim(text);
  const char* end = digits.data() + digits.size();
  const char* begin = digits.data() + (digits.size() > 1 && digits[0] == '+' && digits[1] != '-');
  int32_t number = 0;
  const auto result = std::from_chars(begin, end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

std::vector<FieldRecord> ReadRecords(std::string_view text) {
  std::vector<FieldRecord> records;
  for (const std::string& line : SplitLines(text)) {
    if (std::all_of(line.begin(), line.end(), IsBlank)) continue;
    FieldRecord record;
    for (size_t at = 0;; ++at) {  // over the comma
      record.push_back(ReadField(line, at));
      if (at >= line.size()) break;
    }
    records.push_back(std::move(record));
  }
  return records;
}

std::vector<SideField> ReadFields(std::string_view text) {
  std::vector<SideField> fields;
  for (FieldRecord& record : ReadRecords(text))
    std::move(record.begin(), record.end(), std::back_inserter(fields));
  return fields;
}

std::string QuotedField(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    if (letter == '"') quoted += '"';
    quoted += letter == '\r' || letter == '\n' ? ' ' : letter;
  }
  return quoted + "\"";
}

std::string BoolField(bool value) {
  return value ? "#TRUE#" : "#FALSE#";
}

}  // namespace zemo
