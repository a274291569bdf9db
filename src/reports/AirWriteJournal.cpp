#include "reports/AirWriteJournal.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string_view>

#include "platform/Folder.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

// In the order of AirWrite::Kind.
constexpr const char* kKinds[] = {"REPORT", "MUSIC", "TITLE",     "JINGLE",
                                  "OTHER",  "LAST",  "LAST INTRO"};
constexpr const char* kWritten = "WRITTEN";
constexpr std::string_view kLineEnd = ",END\r\n";  // a line without it was cut
constexpr size_t kWriteFields = 15;                // with the end
constexpr int64_t kMostBytes = 32 << 20;           // several times what the most rows take
constexpr double kLastDay = 2958465;               // 31/12/9999, as a day serial

// The texts of a row, in the order of the file.
constexpr std::string ReportRow::*kTexts[] = {
    &ReportRow::LADATE,  &ReportRow::HEURE,     &ReportRow::AUTEURCOMPOSITEUR,
    &ReportRow::AUTEUR,  &ReportRow::TITRE,     &ReportRow::GENRE,
    &ReportRow::VARIETE, &ReportRow::REFERENCE, &ReportRow::LABEL};

template <typename Number>
std::optional<Number> NumberOf(const std::string& text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

std::string HeadLine(const Station& station) {
  return QuotedField(station.base.Path()) + std::string(kLineEnd);
}

std::string WriteLine(const AirWrite& write) {
  std::string line = QuotedField(kKinds[static_cast<size_t>(write.kind)]);
  line += ',' + std::to_string(write.code) + ',' + AsText(write.row.DATENUM);
  for (const auto text : kTexts) line += ',' + QuotedField(write.row.*text);
  line += ',' + QuotedField(write.where) + ',' + QuotedField(write.detail);
  return line += kLineEnd;
}

std::optional<AirWrite> ReadWrite(const FieldRecord& fields) {
  if (fields.size() != kWriteFields) return std::nullopt;
  const auto kind = std::find(std::begin(kKinds), std::end(kKinds), fields[0].text);
  const auto code = NumberOf<int64_t>(fields[1].text);
  const auto moment = NumberOf<double>(fields[2].text);
  if (kind == std::end(kKinds) || !code || !moment) return std::nullopt;
  if (!(*moment >= 0 && *moment <= kLastDay)) return std::nullopt;  // nor what is no number
  AirWrite write;
  write.kind = static_cast<AirWrite::Kind>(kind - std::begin(kKinds));
  write.code = *code;
  write.row.DATENUM = *moment;
  size_t field = 3;
  for (const auto text : kTexts) write.row.*text = fields[field++].text;
  write.where = fields[field++].text;
  write.detail = fields[field].text;
  return write;
}

bool Complete(const FieldRecord& fields) {
  return !fields.empty() && !fields.back().quoted && fields.back().text == "END";
}

// How many of the oldest that line says are written; 0 for another line.
size_t WrittenCount(const FieldRecord& fields) {
  if (fields.size() != 3 || fields[0].text != kWritten) return 0;
  return NumberOf<size_t>(fields[1].text).value_or(0);
}

}  // namespace

// The station's path tells the files of several stations on one machine apart.
std::string JournalName(const Station& station) {
  return "KeptRows-" + HexMark(station.base.Path()) + ".Txt";
}

void JournalKept(Station& station, const std::deque<AirWrite>& kept, size_t from) {
  Folder& folder = station.platform.machineFolder;
  const std::string name = JournalName(station);
  std::string text = folder.Exists(name) ? "" : HeadLine(station);
  for (size_t i = from; i < kept.size(); ++i) text += WriteLine(kept[i]);
  folder.AppendDurably(name, text);
}

void JournalWritten(Station& station, size_t oldest) {
  station.platform.machineFolder.AppendDurably(
      JournalName(station),
      QuotedField(kWritten) + ',' + std::to_string(oldest) + std::string(kLineEnd));
}

void JournalAnew(Station& station, const std::deque<AirWrite>& kept) {
  Folder& folder = station.platform.machineFolder;
  const std::string name = JournalName(station);
  if (kept.empty()) return folder.Remove(name);
  std::string text = HeadLine(station);
  for (const AirWrite& write : kept) text += WriteLine(write);
  folder.WriteDurably(name, text);
}

std::deque<AirWrite> ReadJournal(Station& station, int& damaged) {
  damaged = 0;
  std::deque<AirWrite> kept;
  Folder& folder = station.platform.machineFolder;
  const std::string name = JournalName(station);
  if (folder.SizeBytes(name) > kMostBytes) throw FileError(name + " is too large to be read");
  const auto text = folder.Read(name);
  if (!text) return kept;
  const std::vector<std::string> lines = SplitLines(*text);
  for (size_t i = 1; i < lines.size(); ++i) {  // behind the head
    const std::vector<FieldRecord> records = ReadRecords(lines[i]);
    if (records.empty()) continue;
    const FieldRecord& fields = records.front();
    if (const size_t written = Complete(fields) ? WrittenCount(fields) : 0) {
      kept.erase(kept.begin(),
                 kept.begin() + static_cast<std::ptrdiff_t>(std::min(written, kept.size())));
    } else if (auto write = Complete(fields) ? ReadWrite(fields) : std::nullopt) {
      kept.push_back(std::move(*write));
    } else {
      ++damaged;
    }
  }
  return kept;
}

std::string SetJournalAside(Station& station) {
  Folder& folder = station.platform.machineFolder;
  const std::string name = JournalName(station);
  try {
    if (!folder.Exists(name)) return {};
    folder.Rename(name, name + ".unread");
    return name + ".unread";
  } catch (const FileError&) {
    return {};  // whoever could not read it tells
  }
}

}  // namespace zemo
