#include "store/RowNotes.h"

#include <algorithm>

#include "store/Names.h"

namespace zemo {

std::vector<int64_t> RowNotes::Take(size_t most) {
  std::sort(rows_.begin(), rows_.end());
  rows_.erase(std::unique(rows_.begin(), rows_.end()), rows_.end());
  const auto end = rows_.begin() + static_cast<std::ptrdiff_t>(std::min(most, rows_.size()));
  std::vector<int64_t> taken(rows_.begin(), end);
  rows_.erase(rows_.begin(), end);
  return taken;
}

void RowNotes::Clear() {
  all_ = false;
  rows_.clear();
}

void RowNotes::Note(int64_t row) {
  if (all_) return;
  if (!rows_.empty() && rows_.back() == row) return;  // an edit after the other
  rows_.push_back(row);
  if (rows_.size() > kMostRows) NoteAll();
}

void RowNotes::NoteAll() {
  all_ = true;
  rows_ = {};
}

std::shared_ptr<RowNotes> RowNoteBook::Begin(std::string_view table) {
  std::erase_if(readers_, [](const auto& reader) { return reader.expired(); });
  auto notes = std::make_shared<RowNotes>(std::string(table));
  readers_.push_back(notes);
  return notes;
}

void RowNoteBook::Note(std::string_view table, int64_t row) {
  for (const auto& reader : readers_) {
    const auto notes = reader.lock();
    if (notes && SameName(notes->Table(), table)) notes->Note(row);
  }
}

void RowNoteBook::NoteAll() {
  for (const auto& reader : readers_)
    if (const auto notes = reader.lock()) notes->NoteAll();
}

}  // namespace zemo
