#include "store/postgres/PostgresCopy.h"

#include <charconv>
#include <cmath>
#include <utility>

#include "store/Names.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresRow.h"

namespace zemo {

namespace {

constexpr size_t kSentBytes = 64 * 1024;
constexpr int kPortion = 2000;  // rows of one question

std::string FieldsOf(const TableDef& table) {
  std::string fields;
  for (const Field& field : table.Fields)
    fields += (fields.empty() ? "" : ", ") + QuotedName(field.Name);
  return fields;
}

void AppendCopied(std::string_view text, std::string& rows) {
  for (const char c : text) {
    switch (c) {
      case '\\':
        rows += "\\\\";
        break;
      case '\n':
        rows += "\\n";
        break;
      case '\r':
        rows += "\\r";
        break;
      case '\t':
        rows += "\\t";
        break;
      default:
        rows += c;
    }
  }
}

std::string RealText(double real) {
  if (std::isinf(real)) return real < 0 ? "-Infinity" : "Infinity";
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, real).ptr;
  return {text, end};
}

}  // namespace

PostgresRowSink::PostgresRowSink(std::shared_ptr<PostgresConnection> connection,
                                 std::shared_ptr<const TableDef> table)
    : connection_(std::move(connection)), table_(std::move(table)) {
  // Replicas of what the base was are made anew: it is not told to them row by row.
  connection_->Run("SELECT zemo.begin_filling()", {}, true);
  connection_->BeginCopy("COPY " + QuotedName(table_->Name) + " (" + FieldsOf(*table_) +
                         ") FROM STDIN");
}

PostgresRowSink::~PostgresRowSink() {
  if (open_) connection_->GiveUpCopy();
}

void PostgresRowSink::AddValue(const RowView& row, int field) {
  const Field& column = table_->Fields[static_cast<size_t>(field)];
  const auto kind = row.KindOf(field);
  const bool texts = HoldsText(column);
  const bool reals = column.Type == FieldType::kFloat64;
  if (kind == RowView::Kind::kNull) {
    rows_ += "\\N";
  } else if (texts && kind == RowView::Kind::kText) {
    const std::string_view text = row.Text(field);
    AppendCopied(text, rows_);
  } else if (!texts && kind == RowView::Kind::kInteger) {
    rows_ += std::to_string(row.Int(field));
  } else if (reals && kind == RowView::Kind::kReal) {
    rows_ += RealText(row.Real(field));
  } else {
    throw StoreError(kErrValueRefused, table_->Name + '.' + column.Name + " holds a " +
                                           (texts   ? "text"
                                            : reals ? "number"
                                                    : "whole number") +
                                           " on a server, and something else in row " +
                                           std::to_string(count_ + 1) + " of the table");
  }
}

void PostgresRowSink::Add(const RowView& row) {
  for (int field = 0; field < static_cast<int>(table_->Fields.size()); ++field) {
    if (field > 0) rows_ += '\t';
    AddValue(row, field);
  }
  rows_ += '\n';
  ++count_;
  if (rows_.size() < kSentBytes) return;
  connection_->PutCopy(rows_);
  rows_.clear();
}

void PostgresRowSink::Finish() {
  connection_->PutCopy(rows_);
  open_ = false;
  connection_->EndCopy();
}

void ReadPostgresTable(PostgresConnection& connection, const TableDef& table,
                       const Database::TakeRow& take) {
  const std::string number = QuotedName(NumberColumn(table));
  const std::string sql = "SELECT " + FieldsOf(table) + ", " + number + " FROM " +
                          QuotedName(table.Name) + " WHERE " + number + " > $1::bigint ORDER BY " +
                          number + " LIMIT " + std::to_string(kPortion);
  const int numberAt = static_cast<int>(table.Fields.size());
  std::string last = "-9223372036854775808";
  for (;;) {
    const PostgresResult rows = connection.Run(sql, {last}, false);
    for (int row = 0; row < rows.Rows(); ++row) take(PostgresRow(rows, row));
    if (rows.Rows() < kPortion) return;
    last = rows.Text(kPortion - 1, numberAt);
  }
}

}  // namespace zemo
