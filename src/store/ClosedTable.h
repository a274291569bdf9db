// What stands in the place of a table cursor that is not open: each use is one clear error.
#pragma once

#include <string>
#include <utility>

#include "store/Recordset.h"
#include "store/StoreError.h"

namespace zemo {

class ClosedTable : public Recordset {
 public:
  ClosedTable(int number, std::string reason) : number_(number), reason_(std::move(reason)) {}

  void MoveFirst() override { Fail(); }
  void MoveLast() override { Fail(); }
  void MoveNext() override { Fail(); }
  void MovePrevious() override { Fail(); }
  bool Eof() const override { Fail(); }
  bool Bof() const override { Fail(); }
  int32_t RecordCount() override { Fail(); }
  int FieldCount() const override { Fail(); }
  const std::string& FieldName(int) const override { Fail(); }
  Value Field(std::string_view) const override { Fail(); }
  Value Field(int) const override { Fail(); }
  void SetIndex(std::string_view) override { Fail(); }
  void Seek(std::string_view, const Value&) override { Fail(); }
  bool NoMatch() const override { Fail(); }
  void AddNew() override { Fail(); }
  void Edit() override { Fail(); }
  void Set(std::string_view, const Value&) override { Fail(); }
  void Update() override { Fail(); }
  void Delete() override { Fail(); }
  void Close() override {}

 private:
  [[noreturn]] void Fail() const { throw StoreError(number_, reason_); }

  int number_;
  std::string reason_;
};

}  // namespace zemo
