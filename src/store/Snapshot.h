// The rows of a query as they were when it was opened, packed in memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/Recordset.h"
#include "store/RowView.h"

namespace zemo {

// A library of 100,000 cards must fit into a snapshot: values lie packed one behind the other, and
// a text equal to the one above it in its column is stored once.
class Snapshot : public Recordset {
 public:
  explicit Snapshot(std::vector<std::string> names);
  ~Snapshot() override;
  void Add(const RowView& row);  // behind the others; for whoever fills it

  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  bool Eof() const override { return row_ >= Rows(); }
  bool Bof() const override { return row_ < 0 || Rows() == 0; }
  int32_t RecordCount() override { return static_cast<int32_t>(Rows()); }
  int FieldCount() const override { return static_cast<int>(names_.size()); }
  const std::string& FieldName(int ordinal) const override;
  Value Field(std::string_view name) const override;
  Value Field(int ordinal) const override;

  // A snapshot is read only and has no index: these throw.
  void SetIndex(std::string_view name) override;
  void Seek(std::string_view op, const Value& key) override;
  bool NoMatch() const override;
  void AddNew() override;
  void Edit() override;
  void Set(std::string_view name, const Value& value) override;
  void Update() override;
  void Delete() override;

  void Close() override;

 private:
  // A stretch of packed rows; a row lies in one block as a whole, so that addresses stay.
  struct Block {
    std::unique_ptr<char[]> bytes;
    size_t used = 0;
    size_t size = 0;
  };

  int64_t Rows() const { return static_cast<int64_t>(rows_.size()); }
  const char* Store(const std::string& packedRow);

  class Packer;

  std::vector<std::string> names_;
  std::unique_ptr<Packer> packer_;
  std::vector<const char*> rows_;  // where each row begins
  std::vector<Block> blocks_;
  int64_t row_ = 0;  // -1 before the first, Rows() behind the last
};

}  // namespace zemo
