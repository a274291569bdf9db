// Which rows of a table this program has written, so that whoever keeps the table in memory reads
// these again and no others. Of the rows that other programs write nothing is noted here:
// Database::ForeignCounter tells that they did something.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

// Of one table and one reader. Thread: the logic's.
class RowNotes {
 public:
  static constexpr size_t kMostRows = 20000;  // noted one by one; beyond them it is all rows

  explicit RowNotes(std::string table) : table_(std::move(table)) {}

  // True at first, when the base was opened or its structure changed, and where too many rows were
  // written: any row may be another one.
  bool All() const { return all_; }
  size_t Count() const { return rows_.size(); }  // some of them may stand there twice
  // Takes up to `most` rows out of the notes, in ascending order, each once: made, changed or
  // deleted, by their numbers (CODE). Read in a transaction a row may still be taken back.
  std::vector<int64_t> Take(size_t most);
  // Nothing is to be read again. For who begins to read all rows.
  void Clear();

  // --- the store's side ---
  const std::string& Table() const { return table_; }
  void Note(int64_t row);
  void NoteAll();

 private:
  std::string table_;
  bool all_ = true;
  std::vector<int64_t> rows_;
};

// The readers of one base. They hold their notes, the book only knows of them.
class RowNoteBook {
 public:
  std::shared_ptr<RowNotes> Begin(std::string_view table);
  void Note(std::string_view table, int64_t row);
  void NoteAll();  // of every table

 private:
  std::vector<std::weak_ptr<RowNotes>> readers_;
};

}  // namespace zemo
