#include "library/ImportedExit.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "library/CardAdding.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "store/SoundMeasuresTable.h"

namespace zemo {

namespace {

// A path may hold the end of a line: a backslash and an n then, and two backslashes for one.
std::string InOneLine(const std::string& path) {
  std::string line;
  for (const char sign : path) {
    if (sign == '\n')
      line += "\\n";
    else
      line += sign == '\\' ? "\\\\" : std::string(1, sign);
  }
  return line;
}

std::string PathIn(std::string_view line) {
  std::string path;
  for (size_t at = 0; at < line.size(); ++at) {
    const bool marked = line[at] == '\\' && at + 1 < line.size();
    if (marked) ++at;
    path += marked && line[at] == 'n' ? '\n' : line[at];
  }
  return path;
}

std::string LineOf(const BareExit& bare) {
  return std::to_string(bare.code) + '\t' + std::to_string(bare.exitMs) + '\t' +
         InOneLine(bare.file) + '\n';
}

std::optional<BareExit> BareExitIn(std::string_view line) {
  const size_t first = line.find('\t'), second = line.find('\t', first + 1);
  if (first == std::string_view::npos || second == std::string_view::npos) return std::nullopt;
  return BareExit{ValInt(std::string(line.substr(0, first))),
                  ValInt(std::string(line.substr(first + 1, second - first - 1))),
                  PathIn(line.substr(second + 1))};
}

}  // namespace

void KeepBareExit(Station& station, const BareExit& bare) {
  station.platform.stationFolder.Append(kExitsToFindFile, LineOf(bare));
}

std::vector<BareExit> KeptBareExits(Station& station) {
  std::vector<BareExit> kept;
  const auto text = station.platform.stationFolder.Read(kExitsToFindFile);
  std::string_view lines = text ? std::string_view(*text) : std::string_view();
  while (!lines.empty()) {
    const size_t end = std::min(lines.find('\n'), lines.size());
    if (auto bare = BareExitIn(lines.substr(0, end))) kept.push_back(std::move(*bare));
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  return kept;
}

void ForgetBareExits(Station& station) {
  station.platform.stationFolder.Remove(kExitsToFindFile);
}

bool TakeKnownMeasures(Station& station, const BareExit& bare, const SoundFileStamp& stamp) {
  const auto known = FindMeasures(station.base.Db(), bare.file, stamp);
  if (known) TakeMeasures(station, bare, stamp, *known);
  return known.has_value();
}

void TakeMeasures(Station& station, const BareExit& bare, const SoundFileStamp& stamp,
                  const SoundMeasures& measures) {
  StoreMeasures(station.base, bare.file, stamp, measures);
  const auto row = station.base.Table("Discotheque");
  if (!SeekCode(*row, bare.code) || Trim(row->Text("FILENAME")) != bare.file ||
      row->Int("POINTSORTIE") != bare.exitMs)
    return;
  row->Edit();
  row->Set("POINTSORTIE", int64_t{measures.exitMs});
  row->Update();
  MusicCard card;
  HourMasks masks;
  TakeMusicCard(*row, card, masks);
  try {
    WriteMus(station, card, masks);
  } catch (const std::exception&) {
    LogCurrentException(station, "ReplaceChampsMusique");
  }
}

}  // namespace zemo
