// How two values compare, as on the file:
//   a column of numbers   takes a text as the number that it reads as; one that is none is above
//                         all numbers
//   a column of texts     takes a number as its digits; ASCII letters know no case, and neither
//                         do accented ones where the query's own text has some
//   < and > with a text   the French order
//   anything else         a number is below a text, texts go letter by letter
// The functions of the schema zemo are in PostgresFunctions.
#include "store/postgres/PostgresExpression.h"

#include <algorithm>
#include <charconv>

#include "store/Names.h"
#include "store/Schema.h"
#include "store/SqlText.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresFunctions.h"

namespace zemo {

namespace {

using Expression = PostgresExpression;

Expression Truth(std::string sql) {
  return {"(" + std::move(sql) + ")", Expression::kTruth};
}

Expression Number(std::string sql) {
  return {std::move(sql), Expression::kNumber};
}

// What the query's text writes out.
Expression WrittenText(const std::string& text) {
  Expression e;
  e.type = Expression::kText;
  e.isLiteral = true;
  e.literal = text;
  return e;
}

Expression WrittenNumber(const std::string& digits) {
  Expression e = Number(digits);
  e.isLiteral = true;
  int64_t whole = 0;
  const char* end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, whole).ptr == end)
    e.literal = whole;
  else
    e.literal = AsReal(Value(digits));
  if (const auto* real = std::get_if<double>(&e.literal)) e.sql = SqlNumber(*real);
  return e;
}

Expression WrittenTruth(bool isTrue) {
  Expression e = Number(isTrue ? "(-1)" : "0");
  e.isTrue = isTrue;
  e.isLiteral = true;
  e.literal = int64_t{isTrue ? -1 : 0};
  return e;
}

std::string Plain(const std::string& sql) {
  return "lower(" + sql + " COLLATE \"C\")";
}
std::string Folded(const std::string& sql) {
  return "zemo.folded(" + sql + ")";
}

}  // namespace

PostgresExpressions::PostgresExpressions(std::string_view query, const TableLookup& tables,
                                         const Values& values)
    : query_(query), tokens_(CutQuery(query)), lookup_(tables), values_(values) {
  const auto places = std::count_if(tokens_.begin(), tokens_.end(), [](const Token& token) {
    return token.kind == TokenKind::kValue;
  });
  if (static_cast<size_t>(places) != values_.size())
    throw StoreError(kErrSyntax, "a query with " + std::to_string(places) + " places is given " +
                                     std::to_string(values_.size()) + " values: " + query_);
  if (query_.find('\0') != std::string::npos)
    throw StoreError(kErrSyntax, "a query cannot hold a zero character");
  while (!tokens_.empty() && tokens_.back().Is(";")) tokens_.pop_back();
}

// --- Reading ---

bool PostgresExpressions::Is(std::string_view word, size_t ahead) const {
  return at_ + ahead < tokens_.size() && tokens_[at_ + ahead].Is(word);
}

bool PostgresExpressions::Take(std::string_view word) {
  if (!Is(word)) return false;
  ++at_;
  return true;
}

void PostgresExpressions::Expect(std::string_view word) {
  if (!Take(word)) FailHere();
}

std::string PostgresExpressions::TakeName() {
  if (AtEnd() || !tokens_[at_].IsName()) FailHere();
  return tokens_[at_++].text;
}

void PostgresExpressions::Fail(int number, const std::string& text) const {
  std::string shown = QueryWithValues(query_, values_).substr(0, 200);
  for (char& c : shown)
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  throw StoreError(number, text + ", in: " + shown);
}

void PostgresExpressions::FailHere() const {
  Fail(kErrSyntax,
       AtEnd() ? "incomplete input" : "near \"" + tokens_[at_].text + "\": syntax error");
}

std::shared_ptr<const TableDef> PostgresExpressions::TableOf(const std::string& name) {
  auto table = lookup_(name);
  if (!table) Fail(kErrNoSuchTable, "no such table: " + name);
  return table;
}

std::string PostgresExpressions::Place(size_t value, PostgresPlace::Form form) {
  const char* type = form == PostgresPlace::kNumber  ? "::float8"
                     : form == PostgresPlace::kWhole ? "::bigint"
                                                     : "::text";
  const Value& known = values_[value - 1];
  if (form == PostgresPlace::kNumber && std::holds_alternative<int64_t>(known)) type = "::numeric";
  if (form == PostgresPlace::kNumber && std::holds_alternative<double>(known)) type = "::float8";
  made_.places.push_back({value - 1, form});
  return "$" + std::to_string(made_.places.size()) + type;
}

// --- Forms ---

const Value* PostgresExpressions::KnownValue(const Expression& e) const {
  if (e.place > 0) return &values_[e.place - 1];
  return e.isLiteral ? &e.literal : nullptr;
}

bool PostgresExpressions::IsWide(const Expression& e) const {
  const Value* value = KnownValue(e);
  return value && KindOf(*value) == ValueKind::kWideText;
}

std::string PostgresExpressions::AsNumberSql(const Expression& e) {
  if (e.type == Expression::kNull) return "NULL";
  if (e.place > 0) return Place(e.place, PostgresPlace::kNumber);
  if (e.type == Expression::kTruth) return "(" + e.sql + ")::int";
  if (e.isLiteral && e.type == Expression::kText) return SqlNumber(AsReal(e.literal)) + "::float8";
  if (e.type == Expression::kText) Fail(kErrSyntax, "a text is no number");
  return e.sql;
}

// Whole numbers with whole ones, so that the column's index serves.
std::string PostgresExpressions::AsComparedSql(const Expression& e, const Expression& with) {
  const bool whole = e.place > 0 && std::holds_alternative<int64_t>(values_[e.place - 1]) &&
                     with.column && with.column->Type != FieldType::kFloat64;
  return whole ? Place(e.place, PostgresPlace::kWhole) : AsNumberSql(e);
}

std::string PostgresExpressions::AsTextSql(const Expression& e, PostgresPlace::Form form) {
  const bool pattern = form == PostgresPlace::kPattern;
  if (e.type == Expression::kNull) return "NULL::text";
  if (e.place > 0) return Place(e.place, form);
  if (e.isLiteral) {
    const auto* real = std::get_if<double>(&e.literal);
    const std::string text = real ? TextOfReal(*real) : AsText(e.literal);
    return PostgresLiteral(pattern ? PostgresPattern(text) : text) + "::text";
  }
  std::string text = e.sql;
  if (e.type == Expression::kTruth) text = "(" + e.sql + ")::int::text";
  if (e.type == Expression::kNumber) text = "zemo.digits(" + e.sql + ")";
  return pattern ? "zemo.pattern(" + text + ")" : text;
}

std::string PostgresExpressions::AsTruth(const Expression& e) {
  if (e.type == Expression::kTruth) return e.sql;
  if (e.type == Expression::kNull) return "NULL::boolean";
  if (e.type == Expression::kText && !KnownValue(e)) Fail(kErrSyntax, "a text is no condition");
  return "(" + AsNumberSql(e) + " <> 0)";
}

std::string PostgresExpressions::AsRead(const Expression& e) {
  if (e.type == Expression::kTruth) return "(" + e.sql + ")::int";
  if (e.type == Expression::kNull) return "NULL::text";
  if (e.place > 0) {
    const bool whole = std::holds_alternative<int64_t>(values_[e.place - 1]);
    if (e.type == Expression::kText) return Place(e.place, PostgresPlace::kText);
    return Place(e.place, whole ? PostgresPlace::kWhole : PostgresPlace::kNumber);
  }
  if (!e.isLiteral) return e.sql;
  if (e.type == Expression::kText) return AsTextSql(e);
  return e.sql + (std::holds_alternative<double>(e.literal) ? "::float8" : "::bigint");
}

std::string PostgresExpressions::AsStored(const TableDef& table, const Field& field,
                                          const Expression& e) {
  if (e.type == Expression::kNull) return field.AutoIncrement ? "DEFAULT" : "NULL";
  if (HoldsText(field)) return AsTextSql(e);
  const Value* known = KnownValue(e);
  if (e.type == Expression::kText && (!known || !ReadsAsNumber(*known))) {
    // Told when a row comes to hold it, not before.
    std::string rule = " holds a number, not a text";
    if (field.Type == FieldType::kInt16) rule = " holds whole numbers from -32768 to 32767";
    if (field.Type == FieldType::kInt32 && !field.AutoIncrement)
      rule = " holds whole numbers from -2147483648 to 2147483647";
    const bool range = rule.find(kRangeRule) == 0;
    return "zemo.refuse(" + PostgresLiteral(range ? kRangeState : kKindState) + ", " +
           PostgresLiteral(table.Name + '.' + field.Name + rule) + ")";
  }
  if (field.Type == FieldType::kFloat64) return "(" + AsNumberSql(e) + ")::float8";
  if (e.place > 0) return Place(e.place, PostgresPlace::kWhole);
  if (known) return std::to_string(AsInt(*known)) + "::bigint";
  return "(" + AsNumberSql(e) + ")::bigint";
}

// --- Expressions ---

Expression PostgresExpressions::ReadExpression() {
  Expression left = ReadAnd();
  while (Take("OR")) {
    const std::string a = AsTruth(left);
    left = Truth(a + " OR " + AsTruth(ReadAnd()));
  }
  return left;
}

std::string PostgresExpressions::Condition() {
  return AsTruth(ReadExpression());
}

Expression PostgresExpressions::ReadAnd() {
  Expression left = ReadNot();
  while (Take("AND")) {
    const std::string a = AsTruth(left);
    left = Truth(a + " AND " + AsTruth(ReadNot()));
  }
  return left;
}

Expression PostgresExpressions::ReadNot() {
  if (Take("NOT")) return Truth("NOT " + AsTruth(ReadNot()));
  // A star by itself is every row.
  const bool alone =
      !AtEnd() && tokens_[at_].kind == TokenKind::kText && tokens_[at_].text == "*" && at_ > 0 &&
      (tokens_[at_ - 1].Is("WHERE") || tokens_[at_ - 1].Is("AND") || tokens_[at_ - 1].Is("OR"));
  const bool ends =
      at_ + 1 >= tokens_.size() || Is("AND", 1) || Is("OR", 1) || Is("ORDER", 1) || Is("GROUP", 1);
  if (alone && ends) {
    ++at_;
    return Truth("true");
  }
  return ReadComparison();
}

Expression PostgresExpressions::ReadComparison() {
  Expression left = ReadRelation();
  for (;;) {
    const bool negated = Is("NOT") && (Is("LIKE", 1) || Is("IN", 1) || Is("BETWEEN", 1));
    const size_t begin = at_;
    if (negated) ++at_;
    Expression made;
    if (Take("IS")) {
      const bool isNot = Take("NOT");
      Expect("NULL");
      made = Truth(AsRead(left) + (isNot ? " IS NOT NULL" : " IS NULL"));
    } else if (Take("LIKE")) {
      made = ReadLike(left);
    } else if (Take("IN")) {
      made = ReadIn(left);
    } else if (Take("BETWEEN")) {
      const Expression low = ReadSum();
      Expect("AND");
      const Expression high = ReadSum();
      const std::string from = Compare(left, ">=", low).sql;  // its places first
      made = Truth(from + " AND " + Compare(left, "<=", high).sql);
    } else if (Is("=") || Is("==") || Is("<>") || Is("!=")) {
      const bool equal = Is("=") || Is("==");
      ++at_;
      const Expression right = ReadRelation();
      if (right.isTrue) {
        made = Compare(left, equal ? "<>" : "=", WrittenTruth(false));
      } else {
        made = Compare(left, equal ? "=" : "<>", right);
      }
    } else {
      at_ = begin;
      return left;
    }
    left = negated ? Truth("NOT " + made.sql) : made;
  }
}

Expression PostgresExpressions::ReadRelation() {
  Expression left = ReadSum();
  while (Is("<") || Is(">") || Is("<=") || Is(">=")) {
    const std::string op = tokens_[at_++].text;
    left = Compare(left, op, ReadSum());
  }
  return left;
}

Expression PostgresExpressions::ReadSum() {
  Expression left = ReadProduct();
  while (Is("+") || Is("-")) {
    const std::string op = tokens_[at_++].text;
    const std::string a = AsNumberSql(left);
    left = Number("(" + a + ' ' + op + ' ' + AsNumberSql(ReadProduct()) + ")");
  }
  return left;
}

Expression PostgresExpressions::ReadProduct() {
  Expression left = ReadJoined();
  while (Is("*") || Is("/") || Is("%")) {
    const std::string op = tokens_[at_++].text;
    const std::string a = AsNumberSql(left);
    const std::string b = AsNumberSql(ReadJoined());
    left = Number("(" + a + ' ' + op + ' ' + (op == "*" ? b : "nullif(" + b + ", 0)") + ")");
  }
  return left;
}

Expression PostgresExpressions::ReadJoined() {
  Expression left = ReadPrimary();
  while (Take("||")) {
    const std::string a = AsTextSql(left);
    left = {"(" + a + " || " + AsTextSql(ReadPrimary()) + ")", Expression::kText};
  }
  return left;
}

Expression PostgresExpressions::ReadPrimary() {
  if (AtEnd()) FailHere();
  const Token token = tokens_[at_++];
  switch (token.kind) {
    case TokenKind::kText:
      return WrittenText(token.text);
    case TokenKind::kNumber:
      return WrittenNumber(token.text);
    case TokenKind::kValue:
      return ValueAt(std::stoul(token.text.substr(1)));
    case TokenKind::kName:
      return ReadColumn(token.text);
    default:
      break;
  }
  if (token.Is("(")) return ReadInParentheses();
  if (token.Is("-") || token.Is("+")) return ReadSigned(token.Is("-"));
  if (token.kind == TokenKind::kWord) return ReadWord(token);
  --at_;
  FailHere();
}

Expression PostgresExpressions::ValueAt(size_t place) const {
  Expression e;
  e.place = place;
  const Value& value = values_[place - 1];
  e.type = IsNull(value)                                ? Expression::kNull
           : std::holds_alternative<std::string>(value) ? Expression::kText
                                                        : Expression::kNumber;
  return e;
}

// Behind the one that opens.
Expression PostgresExpressions::ReadInParentheses() {
  Expression e;
  if (Is("SELECT")) {
    const std::string sql = Subquery(e, "");
    Expect(")");
    return {"(" + sql + ")", e.type};
  }
  e = ReadExpression();
  Expect(")");
  if (e.place == 0 && !e.isLiteral) e.sql = "(" + e.sql + ")";
  return e;
}

Expression PostgresExpressions::ReadSigned(bool minus) {
  Expression e = ReadPrimary();
  if (!minus) return e;
  if (!e.isLiteral || e.type != Expression::kNumber) return Number("(- " + AsNumberSql(e) + ")");
  e.sql = "(-" + e.sql + ")";
  if (const auto* real = std::get_if<double>(&e.literal))
    e.literal = -*real;
  else
    e.literal = -AsInt(e.literal);
  return e;
}

Expression PostgresExpressions::ReadWord(const Token& word) {
  if (word.Is("NULL")) return {{}, Expression::kNull};
  const bool isTruth = word.Is("TRUE") || word.Is("FALSE");
  if (isTruth && !Is("(") && !Is(".")) return WrittenTruth(word.Is("TRUE"));
  return Is("(") ? ReadFunction(word.text) : ReadColumn(word.text);
}

Expression PostgresExpressions::ReadFunction(const std::string& name) {
  Expect("(");
  const bool counts = SameName(name, "COUNT");
  const bool extreme = SameName(name, "MAX") || SameName(name, "MIN");
  const bool sums = SameName(name, "SUM") || SameName(name, "AVG");
  Expression made = Number("");
  if (counts || extreme || sums) {
    if (counts && Take("*")) {
      Expect(")");
      return Number("COUNT(*)");
    }
    const bool distinct = Take("DISTINCT");
    std::vector<PostgresScope>& scopes = scopes_;
    if (scopes.empty()) FailHere();
    scopes.back().inAggregate = true;
    const Expression argument = ReadExpression();
    scopes.back().inAggregate = false;
    const bool text = argument.type == Expression::kText;
    const std::string sql = text ? AsTextSql(argument) : AsNumberSql(argument);
    if (counts) {
      made.sql =
          "COUNT(" + std::string(distinct ? "DISTINCT " : "") + (text ? Plain(sql) : sql) + ")";
    } else if (extreme && text) {
      const std::string order = SameName(name, "MAX") ? " DESC" : "";
      made = {"(array_agg(" + sql + " ORDER BY " + Plain(sql) + order + ") FILTER (WHERE " + sql +
                  " IS NOT NULL))[1]",
              Expression::kText};
    } else if (sums && text) {
      FailHere();
    } else if (SameName(name, "SUM")) {
      const bool real = argument.column && argument.column->Type == FieldType::kFloat64;
      made.sql = "SUM(" + sql + ")::" + (real ? "float8" : "bigint");
    } else if (SameName(name, "AVG")) {
      made.sql = "(SUM(" + sql + ")::float8 / nullif(COUNT(" + sql + "), 0))";
    } else {
      made.sql = UpperName(name) + "(" + sql + ")";
    }
  } else if (SameName(name, "LENGTH")) {
    made.sql = "length(" + AsTextSql(ReadExpression()) + ")";
  } else if (SameName(name, "ABS")) {
    made.sql = "abs(" + AsNumberSql(ReadExpression()) + ")";
  } else if (SameName(name, "TRIM")) {
    made = {"btrim(" + AsTextSql(ReadExpression()) + ", ' ')", Expression::kText};
  } else if (SameName(name, "UPPER") || SameName(name, "LOWER")) {
    made = {UpperName(name) + "(" + AsTextSql(ReadExpression()) + " COLLATE \"C\")",
            Expression::kText};
  } else {
    Fail(kErrSyntax, "no such function: " + name);
  }
  Expect(")");
  return made;
}

Expression PostgresExpressions::ReadColumn(const std::string& first) {
  std::string name = first;
  std::string source;
  if (Take(".")) {
    source = first;
    name = TakeName();
  }
  for (size_t level = scopes_.size(); level-- > 0;) {
    const PostgresScope& scope = scopes_[level];
    for (const auto& [alias, table] : scope.sources) {
      if (!source.empty() && !SameName(alias, source)) continue;
      const Field* field = table->FindField(name);
      if (!field && !SameName(name, kHiddenNumber)) continue;
      // Rows are not changed or deleted by what is only read in a column's place.
      if (field && field->Missing && scope.isWritten) continue;
      Expression e;
      e.column = field;
      const std::string stored = field ? field->Name : NumberColumn(*table);
      e.sql =
          (scope.sources.size() > 1 || level + 1 < scopes_.size() ? QuotedName(alias) + "." : "") +
          QuotedName(stored);
      if (field && scope.isWritten && !field->ReadAs.empty()) e.sql = '(' + field->ReadAs + ')';
      if (field && HoldsText(*field)) e.type = Expression::kText;
      const bool put =
          std::find(scope.grouped.begin(), scope.grouped.end(), e.sql) != scope.grouped.end();
      // Texts that differ in case are put together; shown is the one that was stored first.
      if (scope.isGrouped && !scope.inAggregate && put && e.type == Expression::kText)
        e.sql = "(array_agg(" + e.sql + " ORDER BY " + QuotedName(alias) + "." +
                QuotedName(NumberColumn(*table)) + "))[1]";
      return e;
    }
  }
  Fail(kErrNoSuchField, "no such column: " + (source.empty() ? name : source + "." + name));
}

// --- Comparisons ---

Expression PostgresExpressions::Compare(const Expression& a, const std::string& op,
                                        const Expression& b, bool anyCase) {
  if (a.type == Expression::kNull || b.type == Expression::kNull) return Truth("NULL::boolean");
  const bool textA = a.type == Expression::kText, textB = b.type == Expression::kText;
  if (textA && textB) return CompareTexts(a, op, b, anyCase);
  if (!textA && !textB) {
    const std::string left = AsComparedSql(a, b);
    return Truth(left + ' ' + op + ' ' + AsComparedSql(b, a));
  }
  const Expression& text = textA ? a : b;
  const Expression& number = textA ? b : a;
  if (text.column && !number.column) return CompareTexts(a, op, b, anyCase);
  if (text.column && number.column)
    Fail(kErrSyntax, "a column of texts is compared with one of numbers");
  const Value* known = KnownValue(text);
  if (number.column && known && ReadsAsNumber(*known)) {
    const std::string left = AsNumberSql(a);
    return Truth(left + ' ' + op + ' ' + AsNumberSql(b));
  }
  return ByKind(a, op, b, textB);
}

// A number is below any text.
Expression PostgresExpressions::ByKind(const Expression& a, const std::string& op,
                                       const Expression& b, bool leftIsNumber) {
  const bool holds =
      op == "<>" || (leftIsNumber ? op == "<" || op == "<=" : op == ">" || op == ">=");
  std::string known = "true";
  for (const Expression* e : {&a, &b})
    if (!KnownValue(*e)) known += " AND " + e->sql + " IS NOT NULL";
  return Truth("CASE WHEN " + known + " THEN " + (holds ? "true" : "false") + " END");
}

Expression PostgresExpressions::CompareTexts(const Expression& a, const std::string& op,
                                             const Expression& b, bool anyCase) {
  const bool equality = op == "=" || op == "<>";
  const auto isWritten = [this](const Expression& e) {
    return e.type == Expression::kText && KnownValue(e);
  };
  const std::string left = AsTextSql(a);
  if (!equality && (isWritten(a) || isWritten(b))) {
    const auto key = [](const std::string& sql) {
      return "(zemo.letters(" + sql + ") COLLATE \"C\", zemo.accents(" + sql + ") COLLATE \"C\")";
    };
    const std::string right = AsTextSql(b);
    return Truth(key(left) + ' ' + op + ' ' + key(right));
  }
  const std::string right = AsTextSql(b);
  if (equality && (anyCase || IsWide(a) || IsWide(b)))
    return Truth(Folded(left) + ' ' + op + ' ' + Folded(right));
  if (a.column || b.column) return Truth(Plain(left) + ' ' + op + ' ' + Plain(right));
  return Truth("(" + left + ") COLLATE \"C\" " + op + ' ' + right);
}

Expression PostgresExpressions::ReadLike(const Expression& left) {
  const size_t begin = at_;
  const Expression pattern = ReadJoined();
  if (left.type == Expression::kNull || pattern.type == Expression::kNull)
    return Truth("NULL::boolean");
  const bool alone = at_ == begin + 1 && pattern.type == Expression::kText && KnownValue(pattern);
  const std::string text = AsTextSql(left);
  const std::string wanted = AsTextSql(pattern, PostgresPlace::kPattern);
  if (alone && !IsWide(pattern)) return Truth(Plain(text) + " LIKE " + Plain(wanted));
  return Truth(Folded(text) + " LIKE " + Folded(wanted));
}

Expression PostgresExpressions::ReadIn(const Expression& left) {
  Expect("(");
  if (Is("SELECT")) {
    Expression column;
    const size_t places = made_.places.size();
    const size_t begin = at_;
    std::string sql = Subquery(column, "");
    const bool text = left.type == Expression::kText;
    if ((column.type == Expression::kText) != text)
      Fail(kErrSyntax, "a text is sought among numbers, or a number among texts");
    if (text) {
      at_ = begin;
      made_.places.resize(places);
      const std::string sought = Plain(AsTextSql(left));
      sql = Subquery(column, "lower(# COLLATE \"C\")");
      Expect(")");
      return Truth(sought + " IN (" + sql + ")");
    }
    Expect(")");
    return Truth(AsNumberSql(left) + " IN (" + sql + ")");
  }
  std::vector<Expression> list;
  while (!Take(")")) {
    if (!list.empty()) Expect(",");
    list.push_back(ReadExpression());
  }
  const bool wide =
      std::any_of(list.begin(), list.end(), [this](const Expression& e) { return IsWide(e); });
  std::string any = "false";
  for (const Expression& e : list) any += " OR " + Compare(left, "=", e, wide).sql;
  return Truth(any);
}

}  // namespace zemo
