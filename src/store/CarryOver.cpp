#include "store/CarryOver.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/Reading.h"
#include "store/RowView.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

// FNV-1a of 64 bits. A value goes in as its kind and a form that is the same on every engine: a
// number that is whole counts as a whole one, however it is kept.
class Checksum {
 public:
  void AddRow(const RowView& row, int fields) {
    for (int field = 0; field < fields; ++field) AddValue(row, field);
    AddByte('\n');
  }
  uint64_t Sum() const { return sum_; }

 private:
  void AddValue(const RowView& row, int field) {
    switch (row.KindOf(field)) {
      case RowView::Kind::kNull:
        return AddByte('-');
      case RowView::Kind::kInteger:
        return AddNumber(row.Int(field));
      case RowView::Kind::kReal:
        return AddReal(row.Real(field));
      default:
        AddText(row.Text(field));
    }
  }
  void AddReal(double real) {
    constexpr double kMostExact = 9007199254740992.0;  // whole numbers have doubles of their own
    if (std::abs(real) < kMostExact && real == std::floor(real))
      return AddNumber(static_cast<int64_t>(real));
    AddNumber(real);
  }
  template <typename Number>
  void AddNumber(Number number) {
    char text[32];
    AddByte('n');
    const char* end = std::to_chars(text, text + sizeof text, number).ptr;
    for (const char* c = text; c != end; ++c) AddByte(*c);
  }
  void AddText(std::string_view text) {
    AddByte('t');
    AddNumber(static_cast<int64_t>(text.size()));  // so that no text runs into the next one
    for (const char c : text) AddByte(c);
  }
  void AddByte(char c) {
    constexpr uint64_t kPrime = 1099511628211U;
    sum_ = (sum_ ^ static_cast<unsigned char>(c)) * kPrime;
  }

  uint64_t sum_ = 14695981039346656037U;
};

TableSum ReadSum(Database& base, const TableDef& table, RowSink* sink) {
  Checksum checksum;
  TableSum sum;
  sum.table = table.Name;
  base.ReadTable(table.Name, [&](const RowView& row) {
    checksum.AddRow(row, static_cast<int>(table.Fields.size()));
    ++sum.rows;
    if (sink) sink->Add(row);
  });
  sum.checksum = checksum.Sum();
  sum.lastNumber = base.Tables().LastNumber(table.Name);
  return sum;
}

TableSum CarryTable(Database& from, Database& to, const TableDef& table) {
  to.Tables().Append(table);
  const std::unique_ptr<RowSink> sink = to.FillTable(table.Name);
  TableSum sum = ReadSum(from, table, sink.get());
  sink->Finish();
  const TableDef made = to.Tables().Item(table.Name);  // its key is an index by itself
  for (const Index& index : table.Indexes)
    if (!made.FindIndex(index.Name)) to.Tables().AppendIndex(table.Name, index);
  to.Tables().KeepNumbersAbove(table.Name, sum.lastNumber);
  return sum;
}

std::string DescribeField(const Field& field) {
  return field.Name + ' ' + std::to_string(static_cast<int>(field.Type)) + ' ' +
         std::to_string(field.Size) + (field.AutoIncrement ? " key " : " ") +
         (IsNull(field.DefaultValue) ? "" : "= " + AsText(field.DefaultValue));
}

std::vector<std::string> Description(const TableDef& table) {
  std::vector<std::string> lines;
  for (const Index& index : table.Indexes)
    lines.push_back("index " + index.Name + " on " + index.Field + (index.Unique ? " unique" : ""));
  std::sort(lines.begin(), lines.end());
  for (const Field& field : table.Fields) lines.push_back("field " + DescribeField(field));
  return lines;
}

void CompareStructure(const TableDef& wanted, const TableDef& made) {
  const std::vector<std::string> a = Description(wanted);
  const std::vector<std::string> b = Description(made);
  const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (left == a.end() && right == b.end()) return;
  throw StoreError(kErrOther, "the table " + wanted.Name + " cannot be carried over as it is: " +
                                  (left != a.end() ? *left : *right));
}

}  // namespace

std::vector<TableSum> CarryOver(Database& from, Database& to, const TableDone& done) {
  if (to.Tables().Count() != 0)
    throw StoreError(
        kErrTableExists,
        "the base that is to be filled holds tables already, such as " + to.Tables().Item(0).Name);
  std::vector<TableSum> carried;
  StructureTransaction all(to.Tables());
  for (int i = 0; i < from.Tables().Count(); ++i) {
    carried.push_back(CarryTable(from, to, from.Tables().Item(i)));
    if (done) done(carried.back());
  }
  all.Commit();
  return carried;
}

void ReadOverToFile(Database& from, const std::string& path) {
  const std::unique_ptr<Database> file = DBEngine::CreateDatabase(path);
  file->Execute("PRAGMA synchronous = OFF");
  const Reading moment(from);
  CarryOver(from, *file, nullptr);
}

void VerifyCarried(Database& from, Database& to, const std::vector<TableSum>& carried) {
  for (const TableSum& sum : carried) {
    const TableDef made = to.Tables().Item(sum.table);
    CompareStructure(from.Tables().Item(sum.table), made);
    const TableSum again = ReadSum(to, made, nullptr);
    if (again.rows != sum.rows)
      throw StoreError(kErrOther, "the table " + sum.table + " has " + std::to_string(again.rows) +
                                      " rows after it was carried over, and had " +
                                      std::to_string(sum.rows));
    if (again.checksum != sum.checksum)
      throw StoreError(kErrOther,
                       "the table " + sum.table + " has other values after it was carried over");
    if (again.lastNumber != sum.lastNumber)
      throw StoreError(kErrOther, "the table " + sum.table + " has given the number " +
                                      std::to_string(again.lastNumber) +
                                      " after it was carried over, and had given " +
                                      std::to_string(sum.lastNumber));
  }
}

}  // namespace zemo
