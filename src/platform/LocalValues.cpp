// NAME=VALUE lines in "Settings.Ini". The file is ours and is edited by hand, so it is UTF-8 and
// every line that is not changed stays byte for byte as it was.
#include "platform/LocalValues.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "platform/NameValueLines.h"

namespace zemo {

namespace {

constexpr std::string_view kFileName = "Settings.Ini";

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char& letter : upper)
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  return upper;
}

// The first line that holds the name counts. The line views `bytes`.
std::optional<NameValueLine> FindLine(std::string_view bytes, std::string_view name) {
  const std::string wanted = Upper(WithoutBlanks(name));
  for (const NameValueLine& line : NameValueLines(bytes))
    if (Upper(line.name) == wanted) return line;
  return std::nullopt;
}

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::optional<int> WholeNumber(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  int number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

// What a line can hold: line ends become blanks.
std::string AsLine(std::string_view text) {
  std::string line(WithoutBlanks(text));
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return line;
}

}  // namespace

std::optional<std::string> LocalValues::Get(std::string_view name) const {
  try {
    const std::optional<std::string> bytes = ReadBounded(machine_, kFileName);
    if (!bytes) return std::nullopt;
    const std::optional<NameValueLine> line = FindLine(*bytes, name);
    return line ? std::optional(std::string(line->value)) : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;  // values that cannot be read count as never set
  }
}

std::string LocalValues::GetText(std::string_view name, std::string_view fallback) const {
  return Get(name).value_or(std::string(fallback));
}

int LocalValues::GetInt(std::string_view name, int fallback) const {
  const std::optional<std::string> text = Get(name);
  return text ? WholeNumber(*text).value_or(fallback) : fallback;
}

bool LocalValues::GetBool(std::string_view name, bool fallback) const {
  const std::optional<std::string> text = Get(name);
  if (!text) return fallback;
  const std::string word = Upper(*text);
  if (IsOneOf(word, {"TRUE", "#TRUE#", "VRAI", "VERDADEIRO", "VERDADERO", "ON", "YES", "OUI"}))
    return true;
  if (IsOneOf(word, {"FALSE", "#FALSE#", "FAUX", "FALSO", "OFF", "NO", "NON"})) return false;
  const std::optional<int> number = WholeNumber(word);
  return number ? *number != 0 : fallback;
}

void LocalValues::Set(std::string_view name, std::string_view value) {
  const std::string key = AsLine(name);
  if (key.empty() || key.find('=') != std::string::npos)
    throw FileError("Settings.Ini: \"" + key + "\" cannot name a value");
  std::string bytes = ReadBounded(machine_, kFileName).value_or(std::string());
  if (const auto line = FindLine(bytes, key)) {
    bytes.replace(line->valueBegin, line->valueLength, AsLine(value));
  } else {
    const char* lineEnd = bytes.empty() || bytes.find('\r') != std::string::npos ? "\r\n" : "\n";
    if (!bytes.empty() && bytes.back() != '\n' && bytes.back() != '\r') bytes += lineEnd;
    bytes += key + "=" + AsLine(value) + lineEnd;
  }
  machine_.WriteDurably(kFileName, bytes);
}

}  // namespace zemo
