// A title's sound as it is marked: the part of it that is looked at, a cursor, and the marks of its
// card. Without a widget and without a station; each place is clamped to what is there.
#pragma once

#include <cstdint>
#include <vector>

namespace zemo {

enum class Mark { kNone, kIntro, kExit, kExtractBegin, kExtractEnd };

// As card and marks file hold them. 0 is no mark; an extract that has an end may begin at 0.
struct SoundMarks {
  int32_t introSec = 0;        // INTRO: whole seconds
  int32_t exitMs = 0;          // POINTSORTIE: ms before the end
  int32_t extractBeginMs = 0;  // ms from the begin
  int32_t extractEndMs = 0;
  bool operator==(const SoundMarks&) const = default;
};

// What was measured by ear: ms from the begin of the file, the exit as in SoundMarks. All 0: not
// measured.
struct MeasuredMarks {
  int32_t soundBeginMs = 0, soundEndMs = 0, exitMs = 0;
  bool operator==(const MeasuredMarks&) const = default;
};

inline constexpr int64_t kClosestFrames = 220;  // of a view: 5 ms, a frame is a pixel at least
inline constexpr int32_t kStepMs = 10, kLongStepMs = 100;
inline constexpr int32_t kLatestMark = 32767;  // what the fields of intro and exit hold
inline constexpr int kHitPixels = 5;

// Writers: the routines below; `marks` also whoever shows a card.
struct SoundMarkers {
  int64_t lengthFrames = 0;            // 0: no sound
  int64_t fromFrame = 0, toFrame = 0;  // the view; the last is not in it
  int32_t cursorMs = 0;
  Mark chosen = Mark::kNone;  // what the arrows move; none: the cursor
  SoundMarks marks;
  MeasuredMarks measured;

  struct Change {
    Mark mark = Mark::kNone;
    int32_t value = 0;     // before it
    bool bySteps = false;  // the steps that follow belong to it
  };
  std::vector<Change> changes;  // to be taken back, the newest last
};

namespace Markers {

int32_t LengthMs(const SoundMarkers& markers);
// The whole sound is in view unless a part of it was and still is in it.
void SetLength(SoundMarkers& markers, int64_t frames);

// --- pixels of a view that is `width` wide ---
int XOf(const SoundMarkers& markers, int32_t ms, int width);  // may lie outside
int32_t MsAt(const SoundMarkers& markers, int x, int width);
// The mark within kHitPixels, the nearest; the chosen one where two are as near.
Mark MarkAt(const SoundMarkers& markers, int x, int width);

// --- view ---
// Each step halves the view, below 0 doubles it; what is at `ms` stays where it is.
void Zoom(SoundMarkers& markers, int steps, int32_t ms);
void Scroll(SoundMarkers& markers, int64_t frames);
void BringIntoView(SoundMarkers& markers, int32_t ms);  // by as little as can be, or by whole views

// --- cursor and marks ---
void SetCursor(SoundMarkers& markers, int32_t ms);
// ms from the begin; -1 for no mark.
int32_t PlaceOf(const SoundMarkers& markers, Mark mark);
// At that place, and it is the chosen one. An intro is the whole seconds up to there, and none
// within the first; an exit lies 1 to 32767 ms before the end; an extract's begin before its end.
void Put(SoundMarkers& markers, Mark mark, int32_t ms);
void Erase(SoundMarkers& markers, Mark mark);
// The chosen mark, else the cursor, by `ms`; the intro by a second for every step.
void Step(SoundMarkers& markers, int32_t ms);
// The exit as measured; nothing where it was not.
void TakeMeasuredExit(SoundMarkers& markers);

// A drag is one change from its begin to its end.
void BeginDrag(SoundMarkers& markers, Mark mark);
void DragTo(SoundMarkers& markers, int32_t ms);
void EndDrag(SoundMarkers& markers);

// The last change to a mark is taken back; false without one.
bool Undo(SoundMarkers& markers);

}  // namespace Markers

}  // namespace zemo
