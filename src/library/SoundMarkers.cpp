#include "library/SoundMarkers.h"

#include <algorithm>
#include <cstdlib>

#include "platform/SoundSource.h"

namespace zemo {

namespace {

constexpr size_t kMostChanges = 200;
constexpr Mark kMarks[] = {Mark::kIntro, Mark::kExit, Mark::kExtractBegin, Mark::kExtractEnd};

int32_t& ValueOf(SoundMarks& marks, Mark mark) {
  switch (mark) {
    case Mark::kIntro:
      return marks.introSec;
    case Mark::kExtractBegin:
      return marks.extractBeginMs;
    case Mark::kExtractEnd:
      return marks.extractEndMs;
    default:
      return marks.exitMs;
  }
}

int64_t ViewFrames(const SoundMarkers& markers) {
  return markers.toFrame - markers.fromFrame;
}

void SetView(SoundMarkers& markers, int64_t from, int64_t frames) {
  const int64_t length = markers.lengthFrames;
  const int64_t shown = std::clamp(frames, std::min(kClosestFrames, length), length);
  markers.fromFrame = std::clamp<int64_t>(from, 0, length - shown);
  markers.toFrame = markers.fromFrame + shown;
}

void Note(SoundMarkers& markers, Mark mark, bool bySteps) {
  markers.chosen = mark;
  std::vector<SoundMarkers::Change>& changes = markers.changes;
  if (bySteps && !changes.empty() && changes.back().bySteps && changes.back().mark == mark) return;
  if (changes.size() >= kMostChanges) changes.erase(changes.begin());
  changes.push_back({mark, ValueOf(markers.marks, mark), bySteps});
}

// A change that left its mark where it was is none.
void DropIdleChange(SoundMarkers& markers) {
  if (markers.changes.empty()) return;
  const SoundMarkers::Change& last = markers.changes.back();
  if (ValueOf(markers.marks, last.mark) == last.value) markers.changes.pop_back();
}

void PlaceMark(SoundMarkers& markers, Mark mark, int32_t ms) {
  SoundMarks& marks = markers.marks;
  const int32_t length = Markers::LengthMs(markers);
  const int32_t at = std::clamp(ms, 0, length);
  switch (mark) {
    case Mark::kIntro:
      marks.introSec = std::min(at / 1000, kLatestMark);
      break;
    case Mark::kExit:
      marks.exitMs = std::clamp(length - at, 1, kLatestMark);
      break;
    case Mark::kExtractBegin:
      marks.extractBeginMs =
          std::min(at, (marks.extractEndMs > 0 ? marks.extractEndMs : length) - 1);
      break;
    case Mark::kExtractEnd:
      marks.extractEndMs = std::max(at, marks.extractBeginMs + 1);
      break;
    case Mark::kNone:
      break;
  }
}

}  // namespace

int32_t Markers::LengthMs(const SoundMarkers& markers) {
  return static_cast<int32_t>(FramesToMs(markers.lengthFrames));
}

void Markers::SetLength(SoundMarkers& markers, int64_t frames) {
  const bool whole = ViewFrames(markers) == markers.lengthFrames;
  markers.lengthFrames = std::max<int64_t>(0, frames);
  if (whole || markers.toFrame > markers.lengthFrames) SetView(markers, 0, markers.lengthFrames);
  SetCursor(markers, markers.cursorMs);
}

// --- pixels ---

int Markers::XOf(const SoundMarkers& markers, int32_t ms, int width) {
  const int64_t frames = ViewFrames(markers);
  if (frames <= 0) return 0;
  const int64_t ahead = (MsToFrames(ms) - markers.fromFrame) * width;
  // Down to the pixel in which it lies, left of the view as well.
  const int64_t x = ahead >= 0 ? ahead / frames : -((-ahead + frames - 1) / frames);
  return static_cast<int>(std::clamp<int64_t>(x, -width, int64_t{2} * width));
}

int32_t Markers::MsAt(const SoundMarkers& markers, int x, int width) {
  if (width <= 0) return 0;
  const int64_t frame = markers.fromFrame + x * ViewFrames(markers) / width;
  return static_cast<int32_t>(FramesToMs(std::clamp<int64_t>(frame, 0, markers.lengthFrames)));
}

Mark Markers::MarkAt(const SoundMarkers& markers, int x, int width) {
  Mark nearest = Mark::kNone;
  int least = kHitPixels + 1;
  for (const Mark mark : kMarks) {
    const int32_t place = PlaceOf(markers, mark);
    if (place < 0) continue;
    const int away = std::abs(XOf(markers, place, width) - x);
    if (away < least || (away == least && mark == markers.chosen && away <= kHitPixels)) {
      least = away;
      nearest = mark;
    }
  }
  return nearest;
}

// --- view ---

void Markers::Zoom(SoundMarkers& markers, int steps, int32_t ms) {
  const int64_t before = ViewFrames(markers);
  if (before <= 0) return;
  int64_t frames = before;
  for (int step = 0; step < std::abs(steps); ++step) frames = steps > 0 ? frames / 2 : frames * 2;
  frames = std::clamp(frames, std::min(kClosestFrames, markers.lengthFrames), markers.lengthFrames);
  const int64_t held = std::clamp<int64_t>(MsToFrames(ms), markers.fromFrame, markers.toFrame);
  SetView(markers, held - (held - markers.fromFrame) * frames / before, frames);
}

void Markers::Scroll(SoundMarkers& markers, int64_t frames) {
  SetView(markers, markers.fromFrame + frames, ViewFrames(markers));
}

void Markers::BringIntoView(SoundMarkers& markers, int32_t ms) {
  const int64_t frame = std::min(MsToFrames(ms), markers.lengthFrames);
  const int64_t frames = ViewFrames(markers);
  if (frame >= markers.fromFrame && frame <= markers.toFrame) return;
  // What runs out of it to the right finds a whole view ahead of it.
  const bool justBehind = frame > markers.toFrame && frame < markers.toFrame + frames;
  SetView(markers, justBehind ? frame : frame - frames / 2, frames);
}

// --- cursor and marks ---

void Markers::SetCursor(SoundMarkers& markers, int32_t ms) {
  markers.cursorMs = std::clamp(ms, 0, LengthMs(markers));
}

int32_t Markers::PlaceOf(const SoundMarkers& markers, Mark mark) {
  const SoundMarks& marks = markers.marks;
  const int32_t length = LengthMs(markers);
  switch (mark) {
    case Mark::kIntro:
      return marks.introSec > 0 ? marks.introSec * 1000 : -1;
    case Mark::kExit:
      return marks.exitMs > 0 ? std::max(0, length - marks.exitMs) : -1;
    case Mark::kExtractBegin:
      return marks.extractBeginMs > 0 || marks.extractEndMs > 0 ? marks.extractBeginMs : -1;
    case Mark::kExtractEnd:
      return marks.extractEndMs > 0 ? marks.extractEndMs : -1;
    case Mark::kNone:
      break;
  }
  return -1;
}

void Markers::Put(SoundMarkers& markers, Mark mark, int32_t ms) {
  if (mark == Mark::kNone || markers.lengthFrames <= 0) return;
  Note(markers, mark, false);
  PlaceMark(markers, mark, ms);
  DropIdleChange(markers);
}

void Markers::Erase(SoundMarkers& markers, Mark mark) {
  if (mark == Mark::kNone) return;
  Note(markers, mark, false);
  ValueOf(markers.marks, mark) = 0;
  DropIdleChange(markers);
  markers.chosen = Mark::kNone;
}

void Markers::Step(SoundMarkers& markers, int32_t ms) {
  const Mark mark = markers.chosen;
  const int32_t place = PlaceOf(markers, mark);
  if (place < 0) {
    SetCursor(markers, markers.cursorMs + ms);
    return BringIntoView(markers, markers.cursorMs);
  }
  Note(markers, mark, true);
  PlaceMark(markers, mark, place + (mark != Mark::kIntro ? ms : ms < 0 ? -1000 : 1000));
  DropIdleChange(markers);
  if (PlaceOf(markers, mark) >= 0) BringIntoView(markers, PlaceOf(markers, mark));
}

void Markers::TakeMeasuredExit(SoundMarkers& markers) {
  if (markers.measured.exitMs > 0)
    Put(markers, Mark::kExit, LengthMs(markers) - markers.measured.exitMs);
}

void Markers::BeginDrag(SoundMarkers& markers, Mark mark) {
  Note(markers, mark, false);
}

void Markers::DragTo(SoundMarkers& markers, int32_t ms) {
  PlaceMark(markers, markers.chosen, ms);
}

void Markers::EndDrag(SoundMarkers& markers) {
  DropIdleChange(markers);
}

bool Markers::Undo(SoundMarkers& markers) {
  if (markers.changes.empty()) return false;
  const SoundMarkers::Change last = markers.changes.back();
  markers.changes.pop_back();
  ValueOf(markers.marks, last.mark) = last.value;
  markers.chosen = last.mark;
  return true;
}

}  // namespace zemo
