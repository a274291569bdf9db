// A base with a look at the moment ahead of each reading.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/Database.h"
#include "store/TablePages.h"

namespace zemo::test {

class InterruptedBase final : public Database {
 public:
  explicit InterruptedBase(Database& base) : base_(base) {}
  std::function<void()> beforeRows;   // once
  std::function<void()> behindPages;  // once
  bool pagesUntold = false;
  std::vector<TablePage> pages;  // told in place of those of the file; empty: these
  int rows = 0;                  // read

  void ReadRows(std::string_view sql, const Values& values, const TakeRow& take) override {
    if (const auto act = std::exchange(beforeRows, nullptr)) act();
    base_.ReadRows(sql, values, [&](const RowView& row) {
      ++rows;
      take(row);
    });
  }
  std::unique_ptr<Recordset> OpenRecordset(std::string_view sql, const Values& values) override {
    return base_.OpenRecordset(sql, values);
  }
  std::shared_ptr<const StoredTable> FindTable(std::string_view name) override {
    return base_.FindTable(name);
  }
  void Execute(std::string_view sql, const Values& values) override { base_.Execute(sql, values); }
  void BeginTrans() override { base_.BeginTrans(); }
  void CommitTrans() override { base_.CommitTrans(); }
  void RollbackTrans() override { base_.RollbackTrans(); }
  bool InTransaction() const override { return base_.InTransaction(); }
  void BeginReading() override { base_.BeginReading(); }
  void ReadTable(std::string_view table, const TakeRow& take) override {
    base_.ReadTable(table, take);
  }
  std::unique_ptr<RowSink> FillTable(std::string_view table) override {
    return base_.FillTable(table);
  }
  bool CompactInPlace() override { return base_.CompactInPlace(); }
  TableDefs& Tables() override { return base_.Tables(); }
  std::vector<std::string> PutStandIns() override { return base_.PutStandIns(); }
  bool HasColumn(std::string_view table, std::string_view column) override {
    return base_.HasColumn(table, column);
  }
  bool IsReadAsStored(std::string_view table) override { return base_.IsReadAsStored(table); }
  void Open(bool create) override { base_.Open(create); }
  void Close() override { base_.Close(); }
  bool IsOpen() const override { return base_.IsOpen(); }
  int64_t ChangeCounter() override { return base_.ChangeCounter(); }
  int64_t ForeignCounter() override { return base_.ForeignCounter(); }
  std::shared_ptr<RowNotes> NoteRows(std::string_view table) override {
    return base_.NoteRows(table);
  }
  bool ReadPages(std::string_view table, int64_t afterKey, const TakePage& take) override {
    const bool told = !pagesUntold && (pages.empty() ? base_.ReadPages(table, afterKey, take)
                                                     : Tell(afterKey, take));
    if (const auto act = std::exchange(behindPages, nullptr)) act();
    return told;
  }
  int64_t LastInsertCode() const override { return base_.LastInsertCode(); }
  LockWait& Waiting() override { return base_.Waiting(); }
  void KeepAlone() override { base_.KeepAlone(); }
  void LetOthersIn() override { base_.LetOthersIn(); }
  bool IsAlone() const override { return base_.IsAlone(); }
  bool FileIsLost() const override { return base_.FileIsLost(); }

 private:
  bool Tell(int64_t afterKey, const TakePage& take) const {
    for (const TablePage& page : pages)
      if (page.lastKey > afterKey && !take(page)) break;
    return true;
  }

  Database& base_;
};

}  // namespace zemo::test
