// Expressions of the dialect as PostgreSQL's, with what decides how they compare.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/DialectTokens.h"
#include "store/postgres/PostgresQuery.h"

namespace zemo {

struct PostgresExpression {
  enum Type { kNull, kNumber, kText, kTruth };
  std::string sql{};  // of what is no place
  Type type = kNumber;
  const Field* column = nullptr;  // of a table; null: anything else, which adapts to a column
  size_t place = 0;               // from 1, a value of the query; 0: none
  bool isLiteral = false;         // in the query's text; `literal` is it
  Value literal{};
  bool isTrue = false;  // the word
};

// The tables that names stand for.
struct PostgresScope {
  struct Source {
    std::string name;  // as the query calls it
    std::shared_ptr<const TableDef> table;
  };
  std::vector<Source> sources;
  std::vector<std::string> grouped;  // SQL of the columns by which rows are put together
  bool isGrouped = false;
  bool isWritten = false;  // the table itself is named, and not what stands in for it
  bool inAggregate = false;
};

// Reads tokens one by one, and writes SQL. Throws StoreError.
class PostgresExpressions {
 public:
  PostgresExpressions(std::string_view query, const TableLookup& tables, const Values& values);
  virtual ~PostgresExpressions() = default;

 protected:
  bool Is(std::string_view word, size_t ahead = 0) const;
  bool AtEnd() const { return at_ >= tokens_.size(); }
  bool Take(std::string_view word);
  void Expect(std::string_view word);
  std::string TakeName();
  [[noreturn]] void Fail(int number, const std::string& text) const;
  [[noreturn]] void FailHere() const;

  PostgresExpression ReadExpression();
  std::string Condition();                          // as a truth
  std::string AsRead(const PostgresExpression& e);  // as a result's column
  std::string AsNumberSql(const PostgresExpression& e);
  std::string AsComparedSql(const PostgresExpression& e, const PostgresExpression& with);
  std::string AsTextSql(const PostgresExpression& e,
                        PostgresPlace::Form form = PostgresPlace::kText);
  std::string AsStored(const TableDef& table, const Field& field, const PostgresExpression& e);
  std::shared_ptr<const TableDef> TableOf(const std::string& name);
  std::string Place(size_t value, PostgresPlace::Form form);  // value from 1
  // "a subquery": its SQL with its only column put into `wrap`, and that column's type.
  virtual std::string Subquery(PostgresExpression& column, std::string_view wrap) = 0;

  std::string query_;
  std::vector<Token> tokens_;
  size_t at_ = 0;
  const TableLookup& lookup_;
  const Values& values_;
  std::vector<PostgresScope> scopes_;  // the innermost last
  PostgresQuery made_;

 private:
  PostgresExpression ReadAnd();
  PostgresExpression ReadNot();
  PostgresExpression ReadComparison();
  PostgresExpression ReadRelation();
  PostgresExpression ReadSum();
  PostgresExpression ReadProduct();
  PostgresExpression ReadJoined();
  PostgresExpression ReadPrimary();
  PostgresExpression ValueAt(size_t place) const;
  PostgresExpression ReadInParentheses();
  PostgresExpression ReadSigned(bool minus);
  PostgresExpression ReadWord(const Token& word);
  PostgresExpression ReadFunction(const std::string& name);
  PostgresExpression ReadColumn(const std::string& first);
  PostgresExpression ReadIn(const PostgresExpression& left);
  PostgresExpression ReadLike(const PostgresExpression& left);
  PostgresExpression Compare(const PostgresExpression& a, const std::string& op,
                             const PostgresExpression& b, bool anyCase = false);
  PostgresExpression CompareTexts(const PostgresExpression& a, const std::string& op,
                                  const PostgresExpression& b, bool anyCase);
  PostgresExpression ByKind(const PostgresExpression& a, const std::string& op,
                            const PostgresExpression& b, bool leftIsNumber);
  const Value* KnownValue(const PostgresExpression& e) const;  // null: not known ahead
  bool IsWide(const PostgresExpression& e) const;
  std::string AsTruth(const PostgresExpression& e);
};

}  // namespace zemo
