// The small files of the station's folder, read as the engine reads them.
#include <functional>
#include <optional>

#include "app/check/CheckParts.h"
#include "platform/BoundedRead.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

// Why a line cannot be taken; nullopt where it can.
using LineTest = std::function<std::optional<std::string>(const FieldRecord&)>;

std::optional<std::string> StartStopFault(const FieldRecord& record) {
  if (record.size() != 2) return "should be \"START\" or \"STOP\" and a time";
  const std::string word = UpperAscii(record[0].text);
  if (word != "START" && word != "STOP") return "begins with neither START nor STOP";
  return IsDayTime(UpperAscii(Trim(record[1].text)), word == "STOP")
             ? std::nullopt
             : std::optional<std::string>("has no time of day (hh:mm)");
}

std::optional<std::string> TopageFault(const FieldRecord& record) {
  if (record.size() == 1 && IsClockTime(Trim(record[0].text))) return std::nullopt;
  return "should be one time of day (hh:mm)";
}

// The decoded text; nullopt without the file, and where it cannot be read, which is a finding.
std::optional<std::string> TextOf(const Folder& station, const std::string& name,
                                  Findings& findings) {
  try {
    const std::optional<std::string> bytes = ReadBounded(station, name);
    return bytes ? std::optional(DecodeSideFile(*bytes)) : std::nullopt;
  } catch (const FileError& error) {
    findings.Error("file", name, error.what());
    return std::nullopt;
  }
}

void CheckLines(const Folder& station, const std::string& name, const LineTest& fault,
                Findings& findings) {
  const std::optional<std::string> text = TextOf(station, name, findings);
  if (!text) return;
  const std::vector<std::string> lines = SplitLines(*text);
  for (size_t i = 0; i < lines.size(); ++i) {
    if (Trim(lines[i]).empty()) continue;
    const std::vector<FieldRecord> records = ReadRecords(lines[i]);
    const std::optional<std::string> why = records.empty() ? std::nullopt : fault(records[0]);
    if (why) findings.Error("file", name, "line " + std::to_string(i + 1) + " " + *why);
  }
}

void CheckExclusion(const Folder& station, Findings& findings) {
  const std::optional<std::string> text = TextOf(station, "Exclusion.Txt", findings);
  if (!text) return;
  const std::vector<std::string> lines = SplitLines(*text);
  for (size_t i = 0; i < lines.size(); ++i) {
    const size_t tab = lines[i].find('\t');
    const std::string from = Trim(lines[i].substr(0, tab));
    if (from.empty()) continue;  // an empty row of the filter
    const std::string to = tab == std::string::npos ? "" : Trim(lines[i].substr(tab + 1));
    if (!IsClockTime(from) || !IsClockTime(to)) {
      findings.Error("file", "Exclusion.Txt",
                     "line " + std::to_string(i + 1) + " should be two times of day");
    }
  }
}

void CheckInstrumental(const Folder& station, Findings& findings) {
  const std::optional<std::string> text = TextOf(station, "Instrumental.Txt", findings);
  if (!text) return;
  const size_t fields = ReadFields(*text).size();
  if (fields != 24) {
    findings.Error("file", "Instrumental.Txt",
                   "holds " + std::to_string(fields) + " hours and should hold 24");
  }
}

void CheckWebPage(const Folder& station, const SoundFiles& files, Findings& findings) {
  const std::optional<std::string> text = TextOf(station, "Internet.Txt", findings);
  if (!text) return;
  const std::vector<std::string> lines = SplitLines(*text);
  const std::string page = lines.empty() ? "" : Trim(lines[0]);
  if (!page.empty() && !files.Exists(page)) {
    findings.Warning("file", "Internet.Txt", "its page is missing: " + page);
  }
}

}  // namespace

void CheckSideFiles(const Folder& station, const SoundFiles& files, Findings& findings) {
  for (int day = 0; day < 7; ++day) {
    CheckLines(station, "StartStop." + std::to_string(day), StartStopFault, findings);
    CheckLines(station, "Topage." + std::to_string(day), TopageFault, findings);
  }
  CheckExclusion(station, findings);
  CheckInstrumental(station, findings);
  CheckWebPage(station, files, findings);
  const std::optional<std::string> limit = TextOf(station, "LectureBase.Txt", findings);
  if (limit) {
    const std::vector<SideField> fields = ReadFields(*limit);
    if (fields.empty() || fields[0].AsInt(-1) < 0) {
      findings.Error("file", "LectureBase.Txt", "does not begin with a number");
    }
  }
  for (const char* name : {"Genre.Txt", "Categori.Ini", "Labels.Txt", "CD.Txt", "Decoupe.Ini"}) {
    TextOf(station, name, findings);
  }
}

}  // namespace zemo
