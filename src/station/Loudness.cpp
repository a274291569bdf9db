#include "station/Loudness.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <exception>
#include <optional>
#include <string>
#include <system_error>

#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SoundMeasuresTable.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr const char* kTargetValue = "LoudnessTarget";
constexpr double kLeastTarget = -40, kMostTarget = -5;          // LUFS
constexpr int64_t kToldAgainMs = int64_t{24} * 60 * 60 * 1000;  // the same fault, in the log

std::optional<double> NumberIn(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

double GainOfFile(Station& station, double targetLufs, std::string_view storedPath) {
  const auto stamp = station.platform.soundFiles.Stamp(storedPath);
  if (!stamp) return 1;
  const NoLockWait atOnce(station.base.Waiting());
  const auto measures = FindMeasures(station.base.Db(), storedPath, *stamp);
  return measures ? std::pow(10, LoudnessGainDb(targetLufs, *measures) / 20) : 1;
}

}  // namespace

std::optional<double> TargetLoudness(Station& station) {
  const std::string text = Trim(station.platform.localValues.GetText(kTargetValue, ""));
  if (text.empty()) return std::nullopt;
  const std::optional<double> target = NumberIn(text);
  if (target == 0.0) return std::nullopt;
  if (target && *target >= kLeastTarget && *target <= kMostTarget) return target;
  const std::string fault = "\"" + FirstCharacters(OneLine(text), 20) +
                            "\" in Settings.Ini is no loudness from -40 to -5 LUFS: every file "
                            "plays as it is";
  if (!LoggedLately(station, fault, kToldAgainMs)) LogError(station, kTargetValue, kErrFile, fault);
  return std::nullopt;
}

double LoudnessGainDb(double targetLufs, const SoundMeasures& measures) {
  if (!measures.loudnessLufs || !measures.truePeakDb) return 0;
  return std::min(targetLufs - *measures.loudnessLufs, kMostTruePeakDb - *measures.truePeakDb);
}

double LoudnessGain(Station& station, std::string_view storedPath) {
  try {
    const auto target = TargetLoudness(station);
    return target ? GainOfFile(station, *target, storedPath) : 1;
  } catch (const StoreError& error) {
    // Who needs the base for more than this tells that it is out of reach. Of a table that cannot
    // be asked the texts name one file after the other.
    const std::string fault = kTargetValue + std::to_string(error.Number());
    if (!error.MayPass() && !LoggedLately(station, fault, kToldAgainMs))
      LogCurrentException(station, kTargetValue);
  } catch (const std::exception&) {
    LogCurrentException(station, kTargetValue);
  }
  return 1;
}

}  // namespace zemo
