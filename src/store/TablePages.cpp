#include "store/TablePages.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "store/Connection.h"

namespace zemo {

namespace {

constexpr int64_t kHeadBytes = 100;  // of the file, on its first page
constexpr int kInnerPage = 0x05, kLeafPage = 0x0D;
constexpr size_t kInnerCells = 12, kLeafCells = 8;  // where the cells' places begin
constexpr int kDeepest = 20;                        // floors of a tree; real ones have five
constexpr int64_t kLongestRow = std::numeric_limits<int32_t>::max();  // bytes
constexpr uint64_t kFirst = 0x9E3779B97F4A7C15, kSecond = 0xD6E8FEB86659FD93;

// What does not look as the form has it. The pages cannot be told then.
struct OddForm {};

using Page = std::vector<unsigned char>;

uint32_t Big(const Page& page, size_t at, size_t bytes) {
  if (at + bytes > page.size()) throw OddForm();
  uint32_t number = 0;
  for (size_t i = 0; i < bytes; ++i) number = number << 8 | page[at + i];
  return number;
}

// Seven bits a byte, the highest first; the ninth byte counts as a whole.
int64_t TakeNumber(const Page& page, size_t& at) {
  uint64_t number = 0;
  for (int i = 0; i < 9; ++i) {
    if (at >= page.size()) throw OddForm();
    const unsigned char byte = page[at++];
    if (i == 8) return static_cast<int64_t>(number << 8 | byte);
    number = number << 7 | (byte & 0x7F);
    if (!(byte & 0x80)) break;
  }
  return static_cast<int64_t>(number);
}

uint64_t Stirred(uint64_t number) {
  number ^= number >> 32;
  number *= kFirst;
  number ^= number >> 29;
  number *= kSecond;
  return number ^ number >> 32;
}

// While a read lock is held.
class Walk {
 public:
  // `made` is the query that made the table.
  Walk(sqlite3_file* file, std::string made, int64_t afterKey, const Database::TakePage& take)
      : file_(file), afterKey_(afterKey), take_(take) {
    if (file_->pMethods->xFileSize(file_, &fileBytes_) != SQLITE_OK) throw OddForm();
    Page head = ReadBytes(0, kHeadBytes);
    const uint32_t bytes = Big(head, 16, 2);
    pageBytes_ = bytes == 1 ? 65536 : bytes;
    if (pageBytes_ < 512 || (pageBytes_ & (pageBytes_ - 1)) != 0) throw OddForm();
    usable_ = pageBytes_ - Big(head, 20, 1);
    if (usable_ < 480) throw OddForm();
    if (Big(head, 18, 2) != 0x0101) throw OddForm();  // another journal than the rollback journal
    structure_ = {Big(head, 40, 4), 0};
    made.resize((made.size() + kMarkedBytes - 1) / kMarkedBytes * kMarkedBytes);
    AddToMark(structure_, made);
  }

  // False where `take` wants no more.
  bool Below(uint32_t number, int64_t lastKey, int floor) {
    if (floor > kDeepest) throw OddForm();
    const Page page = ReadPage(number);
    const size_t head = number == 1 ? kHeadBytes : 0;
    const uint32_t kind = Big(page, head, 1);
    if (kind == kLeafPage) return Leaf(page, head, lastKey);
    if (kind != kInnerPage) throw OddForm();
    const uint32_t cells = Big(page, head + 3, 2);
    int64_t before = std::numeric_limits<int64_t>::min();
    for (uint32_t cell = 0; cell < cells; ++cell) {
      size_t at = Big(page, head + kInnerCells + size_t{2} * cell, 2);
      const uint32_t child = Big(page, at, 4);
      at += 4;
      const int64_t key = TakeNumber(page, at);
      if ((cell > 0 && key <= before) || key > lastKey) throw OddForm();
      before = key;
      if (key > afterKey_ && !Below(child, key, floor + 1)) return false;
    }
    return Below(Big(page, head + 8, 4), lastKey, floor + 1);
  }

 private:
  Page ReadBytes(int64_t from, int64_t bytes) const {
    Page page(static_cast<size_t>(bytes));
    if (file_->pMethods->xRead(file_, page.data(), static_cast<int>(bytes), from) != SQLITE_OK)
      throw OddForm();
    return page;
  }
  Page ReadPage(uint32_t number) const {
    if (number == 0) throw OddForm();
    return ReadBytes(int64_t{number - 1} * pageBytes_, pageBytes_);
  }

  static std::string_view Bytes(const Page& page) {
    return {reinterpret_cast<const char*>(page.data()), page.size()};
  }

  bool Leaf(const Page& page, size_t head, int64_t lastKey) {
    const uint32_t cells = Big(page, head + 3, 2);
    TablePage told{lastKey, static_cast<int>(cells), structure_};
    AddToMark(told.mark, Bytes(page));
    for (uint32_t cell = 0; cell < cells; ++cell)
      AddOverflow(page, Big(page, head + kLeafCells + size_t{2} * cell, 2), told);
    return take_(told);
  }

  // Of a row that is longer than its share of the page.
  void AddOverflow(const Page& page, size_t at, TablePage& told) const {
    const int64_t payload = TakeNumber(page, at);
    TakeNumber(page, at);  // its key
    // A chain that leads back to itself ends as a row that the file has no room for.
    if (payload < 0 || payload > std::min<int64_t>(kLongestRow, fileBytes_)) throw OddForm();
    if (payload <= usable_ - 35) return;
    const int64_t least = (usable_ - 12) * 32 / 255 - 23;
    const int64_t most = least + (payload - least) % (usable_ - 4);
    const int64_t here = most <= usable_ - 35 ? most : least;
    uint32_t next = Big(page, at + static_cast<size_t>(here), 4);
    for (int64_t left = payload - here; left > 0; left -= usable_ - 4) {
      const Page more = ReadPage(next);
      AddToMark(told.mark, Bytes(more));
      ++told.filePages;
      next = Big(more, 0, 4);
    }
  }

  sqlite3_file* file_;
  int64_t afterKey_;
  const Database::TakePage& take_;
  int64_t pageBytes_ = 0, usable_ = 0;
  sqlite3_int64 fileBytes_ = 0;
  // Of the table's form and of the count of the base's changes: by them the same bytes may read
  // otherwise.
  PageMark structure_{};
};

}  // namespace

// Four lanes, so that the processor need not wait for one of them.
void AddToMark(PageMark& mark, std::string_view bytes) {
  std::array<uint64_t, 4> lanes{mark[0], mark[1], ~mark[0], ~mark[1]};
  for (size_t at = 0; at + sizeof lanes <= bytes.size(); at += sizeof lanes) {
    std::array<uint64_t, 4> words;
    std::memcpy(words.data(), bytes.data() + at, sizeof words);
    for (size_t lane = 0; lane < lanes.size(); ++lane) {
      const uint64_t mixed = (lanes[lane] ^ words[lane]) * kFirst;
      lanes[lane] = (mixed << 27 | mixed >> 37) + kSecond;
    }
  }
  mark = {kSecond, kFirst};
  for (const uint64_t lane : lanes)
    mark = {Stirred(mark[0] ^ lane), Stirred(mark[1] + (lane ^ kSecond))};
}

bool ReadTablePages(Connection& connection, std::string_view table, int64_t afterKey,
                    const Database::TakePage& take) {
  if (connection.InTransaction()) return false;
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(connection.Handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file) !=
          SQLITE_OK ||
      !file || !file->pMethods)
    return false;
  Statement root = connection.Prepare(
      "SELECT rootpage, sql FROM sqlite_schema WHERE type = 'table' AND name = ?1 COLLATE NOCASE");
  root.Bind(1, std::string(table));
  if (!root.Step()) return false;  // else the read lock is held until the end of this scope
  try {
    Walk(file, root.Text(1), afterKey, take)
        .Below(static_cast<uint32_t>(root.Int(0)), std::numeric_limits<int64_t>::max(), 0);
    return true;
  } catch (const OddForm&) {
    return false;
  }
}

}  // namespace zemo
