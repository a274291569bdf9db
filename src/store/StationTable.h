// One of the base's tables for the base's whole life: whoever holds it across a yield finds it closed
// or opened anew, never gone.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "store/Recordset.h"

namespace zemo {

// Hands everything on to the cursor in use. A base opened anew puts a fresh one in, which stands on
// its first row; what the former one was editing is given up.
class StationTable : public Recordset {
 public:
  explicit StationTable(std::unique_ptr<Recordset> cursor) : cursor_(std::move(cursor)) {}
  void Use(std::unique_ptr<Recordset> cursor) { cursor_ = std::move(cursor); }

  void MoveFirst() override { cursor_->MoveFirst(); }
  void MoveLast() override { cursor_->MoveLast(); }
  void MoveNext() override { cursor_->MoveNext(); }
  void MovePrevious() override { cursor_->MovePrevious(); }
  bool Eof() const override { return cursor_->Eof(); }
  bool Bof() const override { return cursor_->Bof(); }
  int32_t RecordCount() override { return cursor_->RecordCount(); }
  int FieldCount() const override { return cursor_->FieldCount(); }
  const std::string& FieldName(int ordinal) const override { return cursor_->FieldName(ordinal); }
  Value Field(std::string_view name) const override { return cursor_->Field(name); }
  Value Field(int ordinal) const override { return cursor_->Field(ordinal); }
  void SetIndex(std::string_view name) override { cursor_->SetIndex(name); }
  void Seek(std::string_view op, const Value& key) override { cursor_->Seek(op, key); }
  bool NoMatch() const override { return cursor_->NoMatch(); }
  void AddNew() override { cursor_->AddNew(); }
  void Edit() override { cursor_->Edit(); }
  void Set(std::string_view name, const Value& value) override { cursor_->Set(name, value); }
  void Update() override { cursor_->Update(); }
  void Delete() override { cursor_->Delete(); }
  void Close() override { cursor_->Close(); }

 private:
  std::unique_ptr<Recordset> cursor_;
};

}  // namespace zemo
