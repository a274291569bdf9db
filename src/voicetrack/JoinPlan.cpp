#include "voicetrack/JoinPlan.h"

#include <algorithm>

#include "platform/PreviewChain.h"
#include "platform/Recorder.h"
#include "platform/SoundChain.h"
#include "station/Station.h"
#include "voicetrack/VoiceTrackParts.h"

namespace zemo {

namespace {

constexpr int32_t kFarthestMs = 86400000;  // no element is as long: such a track is never heard

}  // namespace

JoinPlan PlanOf(const VoiceTrackEditor& editor, int32_t fadeMs) {
  JoinPlan plan;
  plan.exitMs = VoiceTracks::ExitOfBefore(editor);
  plan.beforeToMs = std::min(plan.exitMs + std::max(0, fadeMs), editor.beforeLengthMs);
  plan.hasTrack = !editor.FileVoiceTrack.empty() && editor.trackLengthMs > 0;
  plan.hasAfter = !editor.FileApres.empty();
  plan.ducks = plan.hasTrack && !editor.CheckCut;
  plan.trackFromMs =
      editor.CheckCut ? plan.exitMs : std::clamp(editor.LblPositionVT, -kFarthestMs, kFarthestMs);
  plan.trackToMs = plan.trackFromMs + (plan.hasTrack ? editor.trackLengthMs : 0);
  plan.afterFromMs = plan.exitMs;
  if (editor.CheckCut && plan.hasTrack)
    plan.afterFromMs = plan.trackToMs - std::clamp(editor.PointSortie, 0, editor.trackLengthMs);
  plan.introToMs = plan.afterFromMs + std::max(0, editor.LblIntro) * 1000;
  return plan;
}

std::optional<int32_t> TimeToFillMs(const VoiceTrackEditor& editor) {
  if (editor.CheckCut || editor.FileApres.empty()) return std::nullopt;
  const JoinPlan plan = PlanOf(editor, 0);
  const bool placed = plan.hasTrack && editor.LblPositionVT > 0;
  return plan.introToMs - (placed ? plan.trackFromMs : plan.exitMs);
}

int32_t VoiceTracks::FadeMs(Station& station) {
  constexpr int64_t kMostFadeMs = 60000;  // of a base that another program wrote
  return static_cast<int32_t>(
      std::clamp<int64_t>(station.base.CnfInt(Cnf::kFadeOut), 0, kMostFadeMs));
}

std::optional<int32_t> VoiceTracks::HeardAtMs(const Station& station,
                                              const VoiceTrackEditor& editor) {
  if (!editor.join.on || !station.platform.preview) return std::nullopt;
  const SoundChain& sound = station.platform.preview->Sound();
  const JoinPlan plan = PlanOf(editor, 0);
  if (editor.join.afterStarted) return plan.afterFromMs + sound.Position(JoinProgress::kAfter);
  if (editor.CheckCut && editor.join.trackStarted)
    return plan.trackFromMs + sound.Position(JoinProgress::kTrack);
  return sound.Position(JoinProgress::kBefore);
}

std::optional<int32_t> VoiceTracks::CountdownMs(const Station& station,
                                                const VoiceTrackEditor& editor) {
  const auto fill = TimeToFillMs(editor);
  if (!fill) return std::nullopt;
  if (const auto heard = HeardAtMs(station, editor)) return PlanOf(editor, 0).introToMs - *heard;
  if (!IsRecording(station)) return std::nullopt;
  return *fill - static_cast<int32_t>(station.platform.recorder->RecordedMs());
}

}  // namespace zemo
