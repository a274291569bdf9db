// The bytes of side files and the texts in them: encoding, lines, and the fields of field files.
// Any bytes can be read; nothing here throws on what a file holds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

// Bytes to UTF-8: as UTF-8 when they begin with a byte order mark (taken off) or are valid UTF-8,
// else as Windows-1252. A byte that has no character there becomes the control character of its
// number, so that it is written back as it was.
std::string DecodeSideFile(std::string_view bytes);

// UTF-8 to bytes: Windows-1252 when every character fits, else UTF-8 behind a byte order mark. The
// latter also for the rare text whose Windows-1252 bytes would be read back as something else.
std::string EncodeSideFile(std::string_view utf8);
// The encoding of a text that comes in parts, cut behind line ends: all of them are looked at
// first.
class SideFileEncoding {
 public:
  void Look(std::string_view utf8);                 // the next part
  std::string Mark() const;                         // ahead of the first part
  std::string Encode(std::string_view utf8) const;  // a part

 private:
  bool Windows1252() const { return fits_ && (ascii_ || (!readAsUtf8_ && !beginsAsMark_)); }

  bool first_ = true;
  bool fits_ = true, ascii_ = true;  // every character
  bool readAsUtf8_ = true;           // its bytes in Windows-1252 would be
  bool beginsAsMark_ = false;        // they would begin as the mark does
};
// The same without the mark, for a line that is appended to a file.
std::string EncodeAppended(std::string_view utf8);

bool IsValidUtf8(std::string_view bytes);

// Lines ended by CR LF; LF and CR alone are taken as well. No line behind the last end.
std::vector<std::string> SplitLines(std::string_view text);
std::string_view TakeLine(std::string_view& text);  // the first of them, off a text that has one
std::string JoinLines(const std::vector<std::string>& lines);  // CR LF behind each
// The text made one line: line ends and tabs become a blank each.
std::string OneLine(std::string_view text);

// One field of a field file.
struct SideField {
  std::string text;  // without its quotes
  bool quoted = false;

  bool AsBool(bool fallback) const;  // #TRUE#, #FALSE#, the bare words, a number; else the fallback
  std::optional<int32_t> Number() const;  // when all of the field is one whole number
  int32_t AsInt(int32_t fallback) const { return Number().value_or(fallback); }
};

// Reads decoded text. Fields are separated by commas and by line ends, blanks around a field do not
// count; a quote inside a quoted text stands doubled; a quote left open ends with its line. What
// stands between a closing quote and the next comma is passed over. Blank lines hold no field.
using FieldRecord = std::vector<SideField>;
std::vector<FieldRecord> ReadRecords(std::string_view text);  // by line
std::vector<SideField> ReadFields(std::string_view text);     // all fields in a row

// Fields as they are written; join them with commas, a record a line.
std::string QuotedField(std::string_view text);  // line ends become blanks
std::string BoolField(bool value);

}  // namespace zemo
