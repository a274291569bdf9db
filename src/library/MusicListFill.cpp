#include "library/MusicListFill.h"

#include <algorithm>
#include <utility>

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Collation.h"
#include "store/Database.h"
#include "store/RowView.h"

namespace zemo {

namespace {

// "yyyy/mm/dd hh:mm:ss"; empty for a card that never played.
std::string PlayedText(double serial) {
  std::string text = LastPlayedText(serial);
  if (const size_t blanks = text.find("  "); blanks != std::string::npos) text.erase(blanks, 1);
  return text;
}

}  // namespace

Cells MusicCells(const RowView& row) {
  Cells cells;
  cells[DiscoCol::kArtist] = row.Text(0);
  cells[DiscoCol::kTitle] = row.Text(1);
  cells[DiscoCol::kLength] = FormatDuration(row.Int(2));
  cells[DiscoCol::kGenre] = row.Text(3);
  cells[DiscoCol::kVariety] = row.Text(4);
  cells[DiscoCol::kCode] = std::to_string(row.Int(5));
  cells[DiscoCol::kLastPlayed] = PlayedText(row.Real(6));
  return cells;
}

bool MusicListFill::Slice(Database& db) {
  if (MergeIsDue())
    MergeLastRuns();
  else
    ReadRun(db);
  if (!complete_ || runs_.size() > 1) return false;
  list_.Show(std::move(filled_));
  return true;
}

// By key from the last row on: no slice holds the file between two of them, and none has the base
// sort the table.
void MusicListFill::ReadRun(Database& db) {
  const size_t begin = filled_.Count();
  db.ReadRows(std::string("SELECT TOP ? ") + kMusicRowColumns +
                  " FROM Discotheque WHERE Auteur LIKE '*' AND Code > ? ORDER BY Code",
              {kSliceRows, lastCode_}, [&](const RowView& row) {
                lastCode_ = row.Int(5);
                filled_.Append(MusicCells(row), static_cast<int32_t>(lastCode_));
              });
  complete_ = filled_.Count() - begin < kSliceRows;
  runs_.push_back(begin);
  std::sort(At(begin), filled_.order.end(), [&](uint32_t a, uint32_t b) { return Before(a, b); });
}

// Rows meet as often as in any sort by merging: runs are about twice as long as the one behind.
bool MusicListFill::MergeIsDue() const {
  if (runs_.size() < 2) return false;
  const size_t last = runs_.back(), beforeLast = runs_[runs_.size() - 2];
  return complete_ || last - beforeLast <= filled_.Count() - last;
}

void MusicListFill::MergeLastRuns() {
  const size_t last = runs_.back();
  runs_.pop_back();
  std::inplace_merge(At(runs_.back()), At(last), filled_.order.end(),
                     [&](uint32_t a, uint32_t b) { return Before(a, b); });
}

bool MusicListFill::Before(uint32_t a, uint32_t b) const {
  const PackedRows& texts = filled_.texts;
  const int artists =
      CompareFrenchOrder(texts.Cell(a, DiscoCol::kArtist), texts.Cell(b, DiscoCol::kArtist));
  return artists != 0 ? artists < 0 : texts.Code(a) < texts.Code(b);
}

}  // namespace zemo
