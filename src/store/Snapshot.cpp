// Packing and unpacking a snapshot's rows.
#include "store/Snapshot.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr size_t kFirstBlock = 1024;      // bytes; each further one is twice as large
constexpr size_t kLargestBlock = 262144;  // up to this

// A packed value: one byte for its kind, then
enum Kind : char {
  kNull,    // nothing
  kByte,    // 1 byte, signed
  kInt,     // 8 bytes
  kReal,    // 8 bytes
  kString,  // 4 bytes length, the bytes
  kSame,    // 8 bytes: address of a kString elsewhere in the snapshot
};

template <typename T>
void PackBytes(std::string& row, const T& value) {
  row.append(static_cast<const char*>(static_cast<const void*>(&value)), sizeof value);
}

template <typename T>
T Unpack(const char* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

// The packed value behind the one at `at`.
const char* Behind(const char* at) {
  switch (*at) {
    case kByte:
      return at + 2;
    case kInt:
    case kReal:
    case kSame:
      return at + 9;
    case kString:
      return at + 5 + Unpack<uint32_t>(at + 1);
    default:
      return at + 1;
  }
}

std::string_view StringAt(const char* at) {
  return {at + 5, Unpack<uint32_t>(at + 1)};
}

Value ValueAt(const char* at) {
  switch (*at) {
    case kByte:
      return int64_t{static_cast<signed char>(at[1])};
    case kInt:
      return Unpack<int64_t>(at + 1);
    case kReal:
      return Unpack<double>(at + 1);
    case kString:
      return std::string(StringAt(at));
    case kSame:
      return std::string(StringAt(Unpack<const char*>(at + 1)));
    default:
      return {};
  }
}

[[noreturn]] void ReadOnly() {
  throw StoreError(kErrReadOnly, "the rows of a query can be read only");
}

}  // namespace

// Packs the rows of a query one by one.
class Snapshot::Packer {
 public:
  explicit Packer(size_t columns) : above_(columns, nullptr) {}

  const std::string& Pack(const RowView& row) {
    row_.clear();
    fresh_.clear();
    for (size_t column = 0; column < above_.size(); ++column) PackColumn(row, column);
    return row_;
  }

  // The row just packed lies at `stored` from now on.
  void Stored(const char* stored) {
    for (const auto& [column, offset] : fresh_) above_[column] = stored + offset;
  }

 private:
  void PackColumn(const RowView& row, size_t column) {
    const int at = static_cast<int>(column);
    switch (row.KindOf(at)) {
      case RowView::Kind::kNull:
        row_ += kNull;
        break;
      case RowView::Kind::kInteger: {
        const int64_t value = row.Int(at);
        const bool small = value >= -128 && value <= 127;
        row_ += small ? kByte : kInt;
        if (small) {
          PackBytes(row_, static_cast<signed char>(value));
        } else {
          PackBytes(row_, value);
        }
        break;
      }
      case RowView::Kind::kReal:
        row_ += kReal;
        PackBytes(row_, row.Real(at));
        break;
      default:
        PackText(row.Text(at), column);
    }
  }

  void PackText(std::string_view text, size_t column) {
    const auto size = static_cast<uint32_t>(text.size());
    const char* above = above_[column];
    if (above && size > 4 && StringAt(above) == text) {
      row_ += kSame;
      PackBytes(row_, above);
      return;
    }
    fresh_.emplace_back(column, row_.size());
    row_ += kString;
    PackBytes(row_, size);
    row_ += text;
  }

  std::string row_;
  std::vector<const char*> above_;                // the column's last kString
  std::vector<std::pair<size_t, size_t>> fresh_;  // column and offset of this row's kStrings
};

Snapshot::Snapshot(std::vector<std::string> names)
    : names_(std::move(names)), packer_(std::make_unique<Packer>(names_.size())) {}

Snapshot::~Snapshot() = default;

void Snapshot::Add(const RowView& row) {
  rows_.push_back(Store(packer_->Pack(row)));
  packer_->Stored(rows_.back());
}

const char* Snapshot::Store(const std::string& packedRow) {
  if (blocks_.empty() || blocks_.back().size - blocks_.back().used < packedRow.size()) {
    const size_t grown =
        blocks_.empty() ? kFirstBlock : std::min(blocks_.back().size * 2, kLargestBlock);
    Block block;
    block.size = std::max(grown, packedRow.size());
    block.bytes.reset(new char[block.size]);
    blocks_.push_back(std::move(block));
  }
  Block& block = blocks_.back();
  char* at = block.bytes.get() + block.used;
  std::memcpy(at, packedRow.data(), packedRow.size());
  block.used += packedRow.size();
  return at;
}

void Snapshot::MoveFirst() {
  row_ = 0;
}

void Snapshot::MoveLast() {
  row_ = std::max<int64_t>(Rows() - 1, 0);
}

void Snapshot::MoveNext() {
  if (Eof()) throw StoreError(kErrNoCurrentRecord, "no row behind the last");
  ++row_;
}

void Snapshot::MovePrevious() {
  if (Bof()) throw StoreError(kErrNoCurrentRecord, "no row before the first");
  --row_;
}

const std::string& Snapshot::FieldName(int ordinal) const {
  if (ordinal < 0 || ordinal >= FieldCount()) {
    throw StoreError(kErrNoSuchField, "the query has no field number " + std::to_string(ordinal));
  }
  return names_[static_cast<size_t>(ordinal)];
}

Value Snapshot::Field(std::string_view name) const {
  for (size_t i = 0; i < names_.size(); ++i) {
    if (SameName(names_[i], name)) return Field(static_cast<int>(i));
  }
  throw StoreError(kErrNoSuchField, "the query has no field " + std::string(name));
}

Value Snapshot::Field(int ordinal) const {
  FieldName(ordinal);  // throws when there is no such field
  if (Eof() || Bof()) throw StoreError(kErrNoCurrentRecord, "no current row in the query");
  const char* at = rows_[static_cast<size_t>(row_)];
  for (int i = 0; i < ordinal; ++i) at = Behind(at);
  return ValueAt(at);
}

void Snapshot::SetIndex(std::string_view) {
  ReadOnly();
}
void Snapshot::Seek(std::string_view, const Value&) {
  ReadOnly();
}
bool Snapshot::NoMatch() const {
  ReadOnly();
}
void Snapshot::AddNew() {
  ReadOnly();
}
void Snapshot::Edit() {
  ReadOnly();
}
void Snapshot::Set(std::string_view, const Value&) {
  ReadOnly();
}
void Snapshot::Update() {
  ReadOnly();
}
void Snapshot::Delete() {
  ReadOnly();
}

void Snapshot::Close() {
  rows_.clear();
  rows_.shrink_to_fit();
  blocks_.clear();
  blocks_.shrink_to_fit();
  row_ = 0;
}

}  // namespace zemo
