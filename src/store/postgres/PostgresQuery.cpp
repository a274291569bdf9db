// The clauses of a query. What the file's translation does in steps (store/Dialect.cpp) is done
// here while reading: TOP, the order of texts, the rows' numbers among equals, "*" as the columns
// that the table shows.
#include "store/postgres/PostgresQuery.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "store/Names.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresExpression.h"

namespace zemo {

namespace {

using Expression = PostgresExpression;

class Clauses final : public PostgresExpressions {
 public:
  using PostgresExpressions::PostgresExpressions;

  PostgresQuery Run() {
    if (Is("SELECT")) {
      Expression none;
      made_.sql = Select(false, none, "");
      made_.givesRows = true;
    } else if (Take("INSERT")) {
      Insert();
    } else if (Take("UPDATE")) {
      Update();
    } else if (Take("DELETE")) {
      Delete();
    } else if (AtEnd()) {
      throw StoreError(kErrSyntax, "a query must be one statement: " + query_);
    }
    if (Is(";")) throw StoreError(kErrSyntax, "a query must be one statement: " + query_);
    if (!AtEnd() || made_.sql.empty()) FailHere();
    return std::move(made_);
  }

 private:
  // --- SELECT ---

  // Where the word stands outside of further parentheses, from `from` up to the end of this SELECT;
  // that end where it does not.
  size_t FindClause(std::string_view word, size_t from) const {
    const int depth = tokens_[from].depth;
    size_t at = from;
    for (; at < tokens_.size() && tokens_[at].depth >= depth; ++at)
      if (tokens_[at].depth == depth && tokens_[at].Is(word)) return at;
    return at;
  }
  bool Has(std::string_view word, size_t from) const {
    const size_t at = FindClause(word, from);
    return at < tokens_.size() && tokens_[at].Is(word);
  }

  std::string Subquery(Expression& column, std::string_view wrap) override {
    return Select(true, column, wrap);
  }

  // Only one column where `one` is set, told in `column` and put in the place of # in `wrap`.
  std::string Select(bool one, Expression& column, std::string_view wrap) {
    const size_t begin = at_;
    Expect("SELECT");
    const bool distinct = Take("DISTINCT");
    const std::string top = Top();
    const size_t list = at_;
    const size_t from = FindClause("FROM", begin);
    scopes_.emplace_back();
    std::string tables;
    if (from < tokens_.size() && tokens_[from].Is("FROM")) {
      at_ = from + 1;
      tables = " FROM " + Tables();
    }
    const size_t behindTables = at_;
    const bool plain = IsPlain(begin, list, from, behindTables, distinct);
    if (distinct || Has("GROUP", begin))
      NoteGroups(distinct ? list : FindClause("GROUP", begin) + 2);
    at_ = list;
    std::string sql = "SELECT " + (storing_ ? StoredColumns() : List(one, column, wrap));
    if (!tables.empty()) {
      if (at_ != from) FailHere();
      at_ = behindTables;
    }
    sql += tables + Conditions(distinct);
    sql += Order(plain, !top.empty());
    if (!top.empty()) sql += " LIMIT " + top;
    scopes_.pop_back();
    return sql;
  }

  // Where none is given, or a negative one, all rows.
  std::string Top() {
    if (!Is("TOP") || at_ + 1 >= tokens_.size()) return {};
    const Token& count = tokens_[at_ + 1];
    if (count.kind != TokenKind::kNumber && count.kind != TokenKind::kValue) return {};
    at_ += 2;
    const std::string rows = count.kind == TokenKind::kNumber
                                 ? count.text
                                 : Place(std::stoul(count.text.substr(1)), PostgresPlace::kWhole);
    return "nullif(greatest(" + rows + ", -1), -1)";
  }

  std::string Tables() {
    std::string sql = OneTable();
    for (;;) {
      if (Take(",")) {
        sql += ", " + OneTable();
      } else if (Is("JOIN") || Is("INNER") || Is("LEFT")) {
        const bool left = Take("LEFT");
        if (!left) Take("INNER");
        Take("OUTER");
        Expect("JOIN");
        sql += (left ? " LEFT JOIN " : " JOIN ") + OneTable();
        Expect("ON");
        sql += " ON " + Condition();
      } else {
        return sql;
      }
    }
  }
  std::string OneTable() {
    const std::string name = TakeName();
    const auto table = TableOf(name);
    std::string alias = name;
    static constexpr std::string_view kClauses[] = {"WHERE", "GROUP", "ORDER", "HAVING", "JOIN",
                                                    "INNER", "LEFT",  "ON",    "LIMIT",  "UNION"};
    const bool as = Take("AS");
    const bool named = !AtEnd() && tokens_[at_].IsName() &&
                       std::none_of(std::begin(kClauses), std::end(kClauses),
                                    [this](std::string_view word) { return Is(word); });
    if (as || named) alias = TakeName();
    scopes_.back().sources.push_back({alias, table});
    return SourceOf(*table) + " AS " + QuotedName(alias);
  }

  static std::string SourceOf(const TableDef& table) {
    if (!table.IsStandIn) return QuotedName(table.Name);
    std::string sql;
    for (const Field& field : table.Fields)
      sql += (sql.empty() ? "(SELECT " : ", ") +
             (field.ReadAs.empty() ? "" : field.ReadAs + " AS ") + QuotedName(field.Name);
    // A number that no field is.
    if (NumberColumn(table) == kHiddenNumber) sql += std::string(", ") + kHiddenNumber;
    return sql + " FROM " + QuotedName(table.Name) + ')';
  }

  // Rows of one table, as they are: only these have an order of insertion.
  bool IsPlain(size_t begin, size_t list, size_t from, size_t behindTables, bool distinct) const {
    if (scopes_.back().sources.size() != 1 || distinct || Has("GROUP", begin)) return false;
    for (size_t at = list; at < from; ++at)
      if (tokens_[at].Is("(")) return false;
    return std::none_of(tokens_.begin() + static_cast<std::ptrdiff_t>(from),
                        tokens_.begin() + static_cast<std::ptrdiff_t>(behindTables),
                        [](const Token& token) { return token.Is(",") || token.Is("JOIN"); });
  }

  void NoteGroups(size_t at) {
    at_ = at;
    groupBy_.clear();
    std::vector<std::string> grouped;
    do {
      const Expression e = ReadExpression();
      if (!e.column) Fail(kErrSyntax, "rows are put together by columns only");
      groupBy_ += (groupBy_.empty() ? "" : ", ") +
                  (HoldsText(*e.column) ? "lower(" + e.sql + " COLLATE \"C\")" : e.sql);
      grouped.push_back(e.sql);
    } while (Take(","));
    scopes_.back().grouped = std::move(grouped);
    scopes_.back().isGrouped = true;
  }

  std::string List(bool one, Expression& column, std::string_view wrap) {
    std::string sql;
    do {
      if (!sql.empty()) {
        if (one) FailHere();
        sql += ", ";
      }
      const bool ofOne = !AtEnd() && tokens_[at_].IsName() && Is(".", 1) && Is("*", 2);
      if (Is("*") || ofOne) {
        if (one) FailHere();
        const std::string source = ofOne ? TakeName() : "";
        at_ += ofOne ? 2 : 1;
        sql += AllColumns(source);
        continue;
      }
      const size_t begin = at_;
      column = ReadExpression();
      std::string read = AsRead(column);
      const size_t hash = wrap.find('#');
      if (hash != std::string_view::npos)
        read = std::string(wrap.substr(0, hash)) + read + std::string(wrap.substr(hash + 1));
      std::string name = column.column ? column.column->Name : TextFrom(begin);
      if (Take("AS")) name = TakeName();
      sql += one ? read : read + " AS " + QuotedName(name);
    } while (Take(","));
    return sql;
  }
  std::string TextFrom(size_t begin) const {
    return JoinTokens({tokens_.begin() + static_cast<std::ptrdiff_t>(begin),
                       tokens_.begin() + static_cast<std::ptrdiff_t>(at_)});
  }
  std::string AllColumns(const std::string& source) {
    std::string sql;
    for (const auto& [alias, table] : scopes_.back().sources) {
      if (!source.empty() && !SameName(alias, source)) continue;
      for (const Field& field : table->Fields)
        sql += (sql.empty() ? "" : ", ") + QuotedName(alias) + "." + QuotedName(field.Name);
    }
    if (sql.empty()) FailHere();
    return sql;
  }

  std::string Conditions(bool distinct) {
    std::string sql;
    if (Take("WHERE")) sql += " WHERE " + Condition();
    if (Take("GROUP")) {
      Expect("BY");
      do ReadExpression();  // noted already
      while (Take(","));
      sql += " GROUP BY " + groupBy_;
    } else if (distinct) {
      sql += " GROUP BY " + groupBy_;
    }
    if (Take("HAVING")) sql += " HAVING " + Condition();
    return sql;
  }

  // Null stands below everything.
  static std::string Directed(const std::string& sql, bool down) {
    return sql + (down ? " DESC NULLS LAST" : " ASC NULLS FIRST");
  }

  std::string Order(bool plain, bool top) {
    const auto& sources = scopes_.back().sources;
    const TableDef* table = sources.empty() ? nullptr : sources.front().table.get();
    const std::string number =
        table ? QuotedName(sources.front().name) + "." + QuotedName(NumberColumn(*table)) : "";
    if (!Take("ORDER")) return plain ? " ORDER BY " + number : "";
    Expect("BY");
    std::string sql;
    bool keyIsNamed = false;
    do {
      const bool position =
          !AtEnd() && tokens_[at_].kind == TokenKind::kNumber &&
          (at_ + 1 >= tokens_.size() || Is(",", 1) || Is("ASC", 1) || Is("DESC", 1) || Is(")", 1));
      const std::string written = position ? tokens_[at_].text : "";
      const Expression e = ReadExpression();
      const bool down = Take("DESC");
      if (!down) Take("ASC");
      if (!sql.empty()) sql += ", ";
      if (position) {
        sql += Directed(written, down);
      } else if (e.column && HoldsText(*e.column)) {
        const bool listed = table && table->FindField(e.column->Name);
        sql += listed ? Directed("zemo.letters(" + e.sql + ") COLLATE \"C\"", down) + ", " +
                            Directed("zemo.accents(" + e.sql + ") COLLATE \"C\"", down)
                      : Directed("lower(" + e.sql + " COLLATE \"C\")", down);
      } else if (e.type == Expression::kText) {
        sql += Directed("(" + AsTextSql(e) + ") COLLATE \"C\"", down);
      } else if (plain && e.column && e.column->AutoIncrement) {
        // Never Null: said of it, the index on the number would not serve.
        sql += AsRead(e) + (down ? " DESC" : "");
        keyIsNamed = true;
      } else {
        sql += Directed(AsRead(e), down);
      }
    } while (Take(","));
    if (plain && !keyIsNamed) sql += ", " + number + (top ? " DESC" : "");
    return " ORDER BY " + sql;
  }

  // --- Writing ---

  std::shared_ptr<const TableDef> Written() {
    auto table = TableOf(TakeName());
    made_.written = table->Name;
    return table;
  }
  static std::string Returning(const TableDef& table) {
    return " RETURNING " + QuotedName(NumberColumn(table));
  }
  const Field& FieldOf(const TableDef& table, const std::string& name) {
    const Field* field = table.FindField(name);
    if (!field) Fail(kErrNoSuchField, "table " + table.Name + " has no column named " + name);
    return *field;
  }

  void Insert() {
    Expect("INTO");
    const auto table = Written();
    made_.inserts = true;
    made_.sql = "INSERT INTO " + QuotedName(table->Name);
    if (Take("DEFAULT")) {
      Expect("VALUES");
      made_.sql += " DEFAULT VALUES" + Returning(*table);
      return;
    }
    std::vector<const Field*> fields;
    if (Take("(")) {
      do fields.push_back(&FieldOf(*table, TakeName()));
      while (Take(","));
      Expect(")");
    } else if (Is("SELECT") && Is("*", 1) && Is("FROM", 2)) {
      CopyByName(*table);
      return;
    } else {
      for (const Field& field : table->Fields) fields.push_back(&field);
    }
    std::string names;
    for (const Field* field : fields)
      if (!field->Missing) names += (names.empty() ? "" : ", ") + QuotedName(field->Name);
    made_.sql += " (" + names + ")";
    if (Is("SELECT")) {
      storing_.emplace(table.get(), &fields);  // each column in the type of its field
      Expression none;
      made_.sql += " " + Select(false, none, "");
    } else {
      Expect("VALUES");
      made_.sql += " VALUES ";
      std::string rows;
      do {
        Expect("(");
        rows += rows.empty() ? "(" : ", (";
        rows += StoredList(*table, fields);
        Expect(")");
        rows += ")";
      } while (Take(","));
      made_.sql += rows;
    }
    made_.sql += Returning(*table);
  }

  std::string StoredColumns() {
    const auto [table, fields] = *storing_;
    storing_.reset();
    return StoredList(*table, *fields);
  }
  // An expression a field; what is stored into a missing column is lost.
  std::string StoredList(const TableDef& table, const std::vector<const Field*>& fields) {
    std::string list;
    for (size_t i = 0; i < fields.size(); ++i) {
      if (i > 0) Expect(",");
      const Expression e = ReadExpression();
      if (!fields[i]->Missing) list += (list.empty() ? "" : ", ") + AsStored(table, *fields[i], e);
    }
    return list;
  }

  // Fields that only one of the two has stay out.
  void CopyByName(const TableDef& table) {
    at_ += 3;
    const size_t source = at_;
    const auto from = TableOf(TakeName());
    at_ = source;
    scopes_.emplace_back();
    const std::string tables = Tables();
    std::string names;
    std::string values;
    for (const Field& field : table.Fields) {
      const Field* theirs = from->FindField(field.Name);
      if (!theirs || field.Missing) continue;
      Expression e;
      e.sql = QuotedName(theirs->Name);
      e.column = theirs;
      e.type = HoldsText(*theirs) ? Expression::kText : Expression::kNumber;
      names += (names.empty() ? "" : ", ") + QuotedName(field.Name);
      values += (values.empty() ? "" : ", ") + AsStored(table, field, e);
    }
    made_.sql += " (" + names + ") SELECT " + values + " FROM " + tables + Conditions(false) +
                 Order(scopes_.back().sources.size() == 1, false) + Returning(table);
    scopes_.pop_back();
  }

  void Update() {
    const auto table = Written();
    Begin(table);
    Expect("SET");
    std::string assignments;
    do {
      const Field& field = FieldOf(*table, TakeName());
      if (!Take("=")) Expect("==");
      const Expression e = ReadExpression();
      if (field.Missing) continue;
      made_.movesKeys = made_.movesKeys || field.AutoIncrement;
      assignments += (assignments.empty() ? "" : ", ") + QuotedName(field.Name) + " = " +
                     AsStored(*table, field, e);
    } while (Take(","));
    if (assignments.empty()) {
      const std::string number = QuotedName(NumberColumn(*table));
      assignments = number + " = " + number;
    }
    made_.sql = "UPDATE " + QuotedName(table->Name) + " SET " + assignments + Where(*table);
  }

  void Delete() {
    Take("*");
    Expect("FROM");
    const auto table = Written();
    Begin(table);
    made_.sql = "DELETE FROM " + QuotedName(table->Name) + Where(*table);
  }

  void Begin(const std::shared_ptr<const TableDef>& table) {
    scopes_.emplace_back();
    scopes_.back().sources.push_back({table->Name, table});
    scopes_.back().isWritten = true;
  }
  std::string Where(const TableDef& table) {
    return (Take("WHERE") ? " WHERE " + Condition() : "") + Returning(table);
  }

  std::string groupBy_;
  // What the SELECT under way is stored as.
  std::optional<std::pair<const TableDef*, const std::vector<const Field*>*>> storing_;
};

}  // namespace

PostgresQuery TranslateForPostgres(std::string_view query, const TableLookup& tables,
                                   const Values& values) {
  return Clauses(query, tables, values).Run();
}

PostgresParameters ParametersOf(const PostgresQuery& query, const Values& values) {
  PostgresParameters parameters;
  for (const PostgresPlace& place : query.places) {
    std::string text;
    if (InForm(place.form, values[place.value], text))
      parameters.emplace_back(std::move(text));
    else
      parameters.emplace_back();
  }
  return parameters;
}

}  // namespace zemo
