// The lines are kept in memory as they stand in the file, so that a request costs one short append.
#include "scheduling/ChoiceLog.h"

#include <charconv>
#include <string_view>

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "station/IsoMoments.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kMostInFile = 2 * kChoicesKept;         // titles; above this the file is written anew
constexpr std::string_view kTitleMark = "\"code\":";  // once a title, and in no text

// --- the line ---

void Append(std::string& out, std::string_view text) {
  constexpr char kHex[] = "0123456789abcdef";
  const std::string readable = IsValidUtf8(text) ? std::string(text) : DecodeSideFile(text);
  out += '"';
  for (const char c : readable) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20) {
      out += "\\u00";
      out += kHex[byte >> 4];
      out += kHex[byte & 15];
      continue;
    }
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  out += '"';
}

void Append(std::string& out, int number) {
  out += std::to_string(number);
}

// Two decimals at most.
void Append(std::string& out, double number) {
  char digits[64];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 2);
  std::string_view text(digits, static_cast<size_t>(end.ptr - digits));
  if (end.ec != std::errc()) text = "0";
  if (text.size() > 3 && text.substr(text.size() - 3) == ".00") text.remove_suffix(3);
  out += text;
}

template <typename Value>
void Member(std::string& out, const char* name, const Value& value) {
  if (out.back() != '{') out += ',';
  out += '"';
  out += name;
  out += "\":";
  Append(out, value);
}

void AppendTitle(std::string& out, const ChosenTitle& title, bool percentage) {
  const ChoiceReason& reason = title.reason;
  out += '{';
  Member(out, "code", title.code);
  Member(out, "artist", title.artist);
  Member(out, "title", title.title);
  Member(out, "genre", title.genre);
  Member(out, "variety", title.variety);
  Member(out, "place", reason.place);
  if (percentage) {
    Member(out, "percent", reason.percent);
    Member(out, "share_before", reason.shareBefore);
    Member(out, "share_after", reason.shareAfter);
    Member(out, "budget_s", reason.budgetSec);
  } else {
    Member(out, "position", reason.position);
    Member(out, "pass", reason.pass);
  }
  out += '}';
}

// --- the file ---

int TitlesIn(std::string_view line) {
  int titles = 0;
  for (size_t at = line.find(kTitleMark); at != std::string_view::npos;
       at = line.find(kTitleMark, at + 1))
    ++titles;
  return titles;
}

// Oldest requests go while as many titles as are to be kept stay without them.
void Shorten(KeptChoices& kept) {
  while (!kept.lines.empty() && kept.titles - kept.lines.front().titles >= kChoicesKept) {
    kept.titles -= kept.lines.front().titles;
    kept.lines.pop_front();
  }
}

void Load(Folder& machine, KeptChoices& kept) {
  kept.loaded = true;
  kept.writeAnew = machine.SizeBytes(kChoicesFile) > kMostTextBytes;  // it shall not grow
  const auto bytes = ReadBounded(machine, kChoicesFile);
  if (!bytes) return;
  // A file cut in its last line is made whole by writing it anew.
  kept.writeAnew = !bytes->empty() && bytes->back() != '\n';
  std::string_view rest = *bytes;
  while (!rest.empty()) {
    const size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const int titles = TitlesIn(line);
    if (titles == 0 || !line.ends_with('}')) continue;
    kept.lines.push_back({std::string(line), titles});
    kept.titles += titles;
  }
  kept.titlesInFile = kept.titles;
  Shorten(kept);
}

void Write(Folder& machine, KeptChoices& kept, int newTitles) {
  if (!kept.writeAnew && kept.titlesInFile + newTitles <= kMostInFile) {
    kept.writeAnew = true;  // until the append is done
    machine.Append(kChoicesFile, kept.lines.back().line + "\r\n");
    kept.titlesInFile += newTitles;
  } else {
    kept.writeAnew = true;
    std::string text;
    for (const KeptChoices::Line& line : kept.lines) text += line.line + "\r\n";
    machine.Write(kChoicesFile, text);
    kept.titlesInFile = kept.titles;
  }
  kept.writeAnew = false;
}

}  // namespace

std::string ChoicesLine(const RequestSeen& request) {
  std::string out = "{";
  Member(out, "at", IsoMoment(request.at, 'T'));
  Member(out, "kind", request.kind);
  Member(out, "hour", request.hour);
  Member(out, "weekday", request.weekday);
  Member(out, "minutes", request.minutes);
  Member(out, "candidates", request.candidates);
  Member(out, "offered", request.offered);
  Member(out, "refused", request.refused);
  out += ",\"refusals\":[";
  for (const std::string& line : request.refusals) {
    if (out.back() != '[') out += ',';
    Append(out, line);
  }
  out += "],\"titles\":[";
  for (const ChosenTitle& title : request.titles) {
    if (out.back() != '[') out += ',';
    AppendTitle(out, title, request.kind == "percentage");
  }
  return out + "]}";
}

void KeepChoices(Station& station, const RequestSeen& request) {
  if (request.titles.empty()) return;
  KeptChoices& kept = station.requests.choices;
  Folder& machine = station.platform.machineFolder;
  try {
    const std::string line = ChoicesLine(request);
    if (kept.heard) kept.heard(line);
    if (!kept.loaded) Load(machine, kept);
    const auto titles = static_cast<int>(request.titles.size());
    kept.lines.push_back({line, titles});
    kept.titles += titles;
    Shorten(kept);
    Write(machine, kept, titles);
    kept.failing = false;
  } catch (const std::exception&) {
    if (!kept.failing) LogCurrentException(station, "KeepChoices");
    kept.failing = true;
  }
}

}  // namespace zemo
