#include "scheduling/LibraryIndex.h"

#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/BoundQuery.h"
#include "store/Collation.h"
#include "store/Database.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kArtist = 0, kTitle = 1, kRowLength = 2, kGenre = 3, kVariety = 4, kFile = 5,
              kRowCode = 6, kRowExit = 7, kRowIntro = 8, kLastPlayed = 9;
constexpr int kGenreCell = 3;

// By key from the last one on: no slice holds the file between two of them, and table order is the
// order of the keys.
BoundQuery SliceQuery(bool first, int64_t lastCode) {
  BoundQuery query{
      "SELECT TOP ? Auteur ,Titre ,Duree ,Genre ,Variete ,FileName ,Code ,POINTSORTIE ,Intro "
      ",LastDiff FROM Discotheque ",
      {LibraryIndex::kSliceRows}};
  if (!first) query.Add("WHERE Code > ? ", {lastCode});
  return query.Add("ORDER BY Code");
}

// The columns of the pool of a request, so that a row can go to PL as it stands.
void CellsOf(const RowView& row, Cells& cells) {
  const int64_t lengthMs = row.Int(kRowLength);
  cells[0] = row.Text(kArtist);
  cells[1] = row.Text(kTitle);
  cells[2] = FormatDuration(lengthMs);
  cells[kGenreCell] = row.Text(kGenre);
  cells[4] = row.Text(kVariety);
  cells[5] = row.Text(kFile);
  cells[6] = std::to_string(row.Int(kRowCode));
  cells[7] = std::to_string(lengthMs);
  cells[8] = row.Text(kRowExit);
  cells[9] = row.Text(kRowIntro);
  cells[10] = LastPlayedText(row.Real(kLastPlayed));
}

}  // namespace

void LibraryIndex::ReadSlice(Database& db) {
  if (complete_) return;
  int read = 0;
  Cells cells;
  std::string joined;
  const BoundQuery query = SliceQuery(Count() == 0, lastCode_);
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    const bool noGenre = row.IsNull(kGenre);
    CellsOf(row, cells);
    joined.assign(cells[0]).append(cells[1]);
    lastCode_ = row.Int(kRowCode);
    capitals_ += UpperLatin(joined);
    capitalsEnd_.push_back(static_cast<uint32_t>(capitals_.size()));
    genreIsNull_.push_back(noGenre);
    rows_->Add(cells, static_cast<int32_t>(lastCode_));
    ++read;
  });
  complete_ = read < kSliceRows;
}

std::string_view LibraryIndex::Capitals(uint32_t row) const {
  const uint32_t begin = row == 0 ? 0 : capitalsEnd_[row - 1];
  return std::string_view(capitals_).substr(begin, capitalsEnd_[row] - begin);
}

bool LibraryIndex::GenreIsLike(uint32_t row, std::string_view pattern) const {
  return !genreIsNull_[row] && MatchesPattern(rows_->Cell(row, kGenreCell), pattern);
}

}  // namespace zemo
