#include "store/postgres/PostgresResult.h"

#include "store/postgres/ClientLibrary.h"

namespace zemo {

namespace {

// Of the server's types.
constexpr Oid kBoolType = 16, kInt8Type = 20, kInt2Type = 21, kInt4Type = 23, kFloat4Type = 700,
              kFloat8Type = 701, kNumericType = 1700;

constexpr char kOutOfTime[] = "57014";
constexpr char kOtherPlan[] = "0A000";

}  // namespace

std::string ServerLine(std::string text) {
  for (char& c : text)
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

PostgresResult::~PostgresResult() {
  Pq().PQclear(result_);
}

// --- How it went ---

bool PostgresResult::Succeeded() const {
  const ExecStatusType status = Pq().PQresultStatus(result_);
  return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK || status == PGRES_EMPTY_QUERY;
}

bool PostgresResult::IsRow() const {
  return Pq().PQresultStatus(result_) == PGRES_SINGLE_TUPLE;
}

bool PostgresResult::IsCopying() const {
  return Pq().PQresultStatus(result_) == PGRES_COPY_IN;
}

std::string PostgresResult::Done() const {
  return result_ ? Pq().PQcmdStatus(result_) : "";
}

// --- Why not ---

bool PostgresResult::IsRefusal() const {
  const std::string state = State();
  return !state.empty() && !state.starts_with("08") && !state.starts_with("57");
}

bool PostgresResult::IsLocked() const {
  const std::string state = State();
  return state == "55P03" || state == "40P01" || state == "40001";
}

bool PostgresResult::IsOutOfTime() const {
  return State() == kOutOfTime;
}

bool PostgresResult::IsOldPlan() const {
  return State() == kOtherPlan;
}

std::string PostgresResult::State() const {
  return Detail(PG_DIAG_SQLSTATE);
}

std::string PostgresResult::Detail(int field) const {
  const char* text = result_ ? Pq().PQresultErrorField(result_, field) : nullptr;
  return text ? text : "";
}

// --- Rows ---

int PostgresResult::Rows() const {
  return Pq().PQntuples(result_);
}

int PostgresResult::Columns() const {
  return Pq().PQnfields(result_);
}

std::string PostgresResult::ColumnName(int column) const {
  const char* name = Pq().PQfname(result_, column);
  return name ? name : "";
}

bool PostgresResult::IsNull(int row, int column) const {
  return Pq().PQgetisnull(result_, row, column) != 0;
}

std::string_view PostgresResult::Text(int row, int column) const {
  return {Pq().PQgetvalue(result_, row, column),
          static_cast<size_t>(Pq().PQgetlength(result_, row, column))};
}

int64_t PostgresResult::Int(int row, int column) const {
  return NumberIn<int64_t>(Text(row, column));
}

RowView::Kind PostgresResult::Kind(int row, int column) const {
  if (IsNull(row, column)) return RowView::Kind::kNull;
  switch (Pq().PQftype(result_, column)) {
    case kBoolType:
    case kInt2Type:
    case kInt4Type:
    case kInt8Type:
      return RowView::Kind::kInteger;
    case kFloat4Type:
    case kFloat8Type:
      return RowView::Kind::kReal;
    case kNumericType:
      return Text(row, column).find('.') == std::string_view::npos ? RowView::Kind::kInteger
                                                                   : RowView::Kind::kReal;
    default:
      return RowView::Kind::kText;
  }
}

Value PostgresResult::Read(int row, int column) const {
  switch (Kind(row, column)) {
    case RowView::Kind::kNull:
      return {};
    case RowView::Kind::kInteger:
      return Int(row, column);
    case RowView::Kind::kReal:
      return NumberIn<double>(Text(row, column));
    default:
      return std::string(Text(row, column));
  }
}

}  // namespace zemo
