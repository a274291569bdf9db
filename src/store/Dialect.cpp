// The translation, in steps over the cut query. Each step knows one peculiarity of the dialect.
//
//  DELETE * FROM t            DELETE FROM t
//  WHERE '*'                  all rows
//  TOP n                      LIMIT n at the end; among equals the newest (highest CODE) first
//  LIKE 'x*?'                 LIKE 'x%_'; REGEXP, our own pattern match, where letters beyond ASCII
//  or
//                             computed patterns are compared
//  = IN NOT IN                columns compare without case by themselves (NOCASE); a literal with
//                             letters beyond ASCII gets our own comparison
//  ?                          ?1, ?2, ...: treated as the literal of its value would be
//  True False                 -1 and 0; a comparison with True is one with "not 0"
//  "text"                     'text'
//  INSERT INTO t SELECT * FROM u    fields matched by name
//  ORDER BY text              French order; equal keys by CODE
//  SELECT ... FROM t          without ORDER BY: insertion order, whichever index serves the query
#include "store/Dialect.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "store/Collation.h"
#include "store/DialectTokens.h"
#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

using Tokens = std::vector<Token>;

Token Word(std::string text) {
  return {TokenKind::kWord, std::move(text)};
}
Token Comma() {
  return {TokenKind::kSymbol, ",", 0, false};
}
Token Quoted(std::string text) {
  return {TokenKind::kText, std::move(text)};
}

bool IsAny(const Token& token, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(), [&](auto word) { return token.Is(word); });
}

constexpr char kEscape = '\\';

ValueKind KindOfText(std::string_view text) {
  if (!IsAscii(text)) return ValueKind::kWideText;
  return text.find_first_of("%_") == std::string_view::npos ? ValueKind::kText
                                                            : ValueKind::kPercentText;
}

class Translation {
 public:
  Translation(std::string_view query, const TableLookup& tables,
              const std::vector<ValueKind>& values)
      : tokens_(CutQuery(query)), lookup_(tables), values_(values) {
    const auto places = std::count_if(tokens_.begin(), tokens_.end(), [](const Token& token) {
      return token.kind == TokenKind::kValue;
    });
    if (static_cast<size_t>(places) != values_.size())
      throw StoreError(kErrSyntax, "a query with " + std::to_string(places) + " places is given " +
                                       std::to_string(values_.size()) +
                                       " values: " + std::string(query));
  }

  TranslatedQuery Run() {
    while (!tokens_.empty() && tokens_.back().Is(";")) tokens_.pop_back();
    DropStarOfDelete();
    WriteBehindStandIn();
    MatchFieldsByName();
    FindClauses();
    TakeTop();
    OrderRows();
    TranslateConditions();
    if (!top_.empty()) Append({Word("LIMIT"), Word(top_)});
    return {JoinTokens(tokens_), std::move(patterns_)};
  }

 private:
  size_t Size() const { return tokens_.size(); }
  bool Is(size_t at, std::string_view word) const { return at < Size() && tokens_[at].Is(word); }
  bool IsValue(size_t at) const { return at < Size() && tokens_[at].kind == TokenKind::kValue; }
  // From 0.
  size_t ValueAt(size_t at) const {
    return static_cast<size_t>(std::stoul(tokens_[at].text.substr(1))) - 1;
  }
  // Of a literal or a value; anything else is no text.
  ValueKind Kind(size_t at) const {
    if (IsValue(at)) return values_[ValueAt(at)];
    if (at < Size() && tokens_[at].kind == TokenKind::kText) return KindOfText(tokens_[at].text);
    return ValueKind::kNumber;
  }
  bool IsText(size_t at) const { return Kind(at) != ValueKind::kNumber; }
  bool IsWide(size_t at) const { return Kind(at) == ValueKind::kWideText; }
  void Insert(size_t at, Tokens more) {
    tokens_.insert(tokens_.begin() + static_cast<std::ptrdiff_t>(at),
                   std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
  }
  void Append(Tokens more) { Insert(Size(), std::move(more)); }
  void Erase(size_t at, size_t count = 1) {
    const auto first = tokens_.begin() + static_cast<std::ptrdiff_t>(at);
    tokens_.erase(first, first + static_cast<std::ptrdiff_t>(count));
  }
  // The first such word outside parentheses at or behind `from`; Size() when there is none.
  size_t Find(std::string_view word, size_t from = 0) const {
    while (from < Size() && !(tokens_[from].depth == 0 && tokens_[from].Is(word))) ++from;
    return from;
  }

  void DropStarOfDelete() {
    if (Is(0, "DELETE") && Is(1, "*")) Erase(1);
  }

  // A stand-in is read only: what writes goes to the table behind it, without the columns that it
  // lacks. A condition on one of them is left, and fails: nothing is deleted by guessing.
  void WriteBehindStandIn() {
    const size_t at = Is(0, "INSERT") && Is(1, "INTO")   ? 2
                      : Is(0, "DELETE") && Is(1, "FROM") ? 2
                      : Is(0, "UPDATE")                  ? 1
                                                         : Size();
    if (at >= Size() || !tokens_[at].IsName()) return;
    const auto table = lookup_(tokens_[at].text);
    if (!table) return;
    if (Is(0, "INSERT")) FitInsertion(*table, at + 1);
    if (Is(0, "UPDATE")) FitAssignments(*table, at + 2);
    if (!table->IsStandIn) return;
    for (Token& token : tokens_)
      if (token.IsName() && KeyIsMissing(*table, token.text)) token = Word("rowid");
    Insert(at, {Word("main"), Token{TokenKind::kSymbol, ".", 0, false}});
  }

  static bool IsMissing(const TableDef& table, const std::string& name) {
    const Field* field = table.FindField(name);
    return field && field->Missing;
  }
  static bool KeyIsMissing(const TableDef& table, const std::string& name) {
    const Field* field = table.FindField(name);
    return field && field->Missing && field->AutoIncrement;
  }

  // The terms between commas from `at` up to the one that ends them, each with where it ends.
  std::vector<std::pair<size_t, size_t>> Terms(size_t at, int depth, size_t end) const {
    std::vector<std::pair<size_t, size_t>> terms;
    for (size_t from = at; from < end;) {
      size_t to = from;
      while (to < end && !(tokens_[to].depth == depth && tokens_[to].Is(","))) ++to;
      terms.emplace_back(from, to);
      from = to + 1;
    }
    return terms;
  }
  // With the comma on one side of it.
  void EraseTerm(std::pair<size_t, size_t> term) {
    if (Is(term.second, ","))
      Erase(term.first, term.second - term.first + 1);
    else if (term.first > 0 && Is(term.first - 1, ","))
      Erase(term.first - 1, term.second - term.first + 1);
    else
      Erase(term.first, term.second - term.first);
  }
  size_t Closing(size_t opening) const {
    size_t at = opening;
    for (int open = 0; at < Size(); ++at) {
      open += Is(at, "(") ? 1 : Is(at, ")") ? -1 : 0;
      if (open == 0) break;
    }
    return at;
  }

  // INSERT INTO t (fields) VALUES (values), the fields beginning at `open`.
  void FitInsertion(const TableDef& table, size_t open) {
    if (!Is(open, "(")) return;
    const size_t close = Closing(open);
    const size_t openValues = close + 2;
    if (!Is(close + 1, "VALUES") || !Is(openValues, "(")) return;
    const auto fields = Terms(open + 1, 1, close);
    const auto values = Terms(openValues + 1, 1, Closing(openValues));
    if (fields.size() != values.size()) return;
    for (size_t i = values.size(); i-- > 0;)
      if (IsMissing(table, tokens_[fields[i].first].text)) EraseTerm(values[i]);
    for (size_t i = fields.size(); i-- > 0;)
      if (IsMissing(table, tokens_[fields[i].first].text)) EraseTerm(fields[i]);
    if (!table.LostKey.empty()) NumberTheRow(table, open);
  }

  void NumberTheRow(const TableDef& table, size_t open) {
    const size_t close = Closing(open);
    const Tokens number = CutQuery("(SELECT coalesce(MAX([" + table.LostKey +
                                   "]), 0) + 1 FROM main.[" + table.Name + "]), ");
    Insert(close + 3, number);
    Insert(open + 1, {{TokenKind::kName, table.LostKey, 1}, {TokenKind::kSymbol, ",", 1, false}});
  }

  // UPDATE t SET assignments, beginning at `set` + 1.
  void FitAssignments(const TableDef& table, size_t at) {
    if (!Is(at, "SET")) at = Find("SET");
    const auto terms = Terms(at + 1, 0, Find("WHERE", at));
    for (size_t i = terms.size(); i-- > 0;)
      if (IsMissing(table, tokens_[terms[i].first].text)) EraseTerm(terms[i]);
  }

  // INSERT INTO t SELECT * FROM u: fields that only one of the two has stay out.
  void MatchFieldsByName() {
    if (!Is(0, "INSERT") || !Is(1, "INTO") || Size() < 7 || !tokens_[2].IsName()) return;
    if (!Is(3, "SELECT") || !Is(4, "*") || !Is(5, "FROM") || !tokens_[6].IsName()) return;
    const auto target = lookup_(tokens_[2].text);
    const auto source = lookup_(tokens_[6].text);
    if (!target || !source) return;
    Tokens fields;
    for (const Field& field : target->Fields) {
      if (!source->FindField(field.Name)) continue;
      if (!fields.empty()) fields.push_back(Comma());
      fields.push_back({TokenKind::kName, field.Name});
    }
    if (fields.empty()) return;
    Tokens columns = fields;
    for (Token& column : columns) column.depth = 1;
    columns.front().spaced = false;
    columns.insert(columns.begin(), Token{TokenKind::kSymbol, "("});
    columns.push_back({TokenKind::kSymbol, ")", 0, false});
    Erase(4);
    Insert(4, std::move(fields));
    Insert(3, std::move(columns));
  }

  // Notes the query's only SELECT outside parentheses, and the table it reads.
  void FindClauses() {
    select_ = Find("SELECT");
    from_ = Find("FROM", select_);
    if (from_ + 1 < Size() && tokens_[from_ + 1].IsName())
      table_ = lookup_(tokens_[from_ + 1].text);
    // Rows of one table, as they are: only these have an order of insertion.
    plain_ = table_ && Find("GROUP") == Size() && Find("UNION") == Size() &&
             Find("JOIN") == Size() && !Is(select_ + 1, "DISTINCT");
    for (size_t i = select_ + 1; plain_ && i < from_; ++i) {
      plain_ = !tokens_[i].Is("(");  // COUNT(*) and its like
    }
    const size_t endOfFrom = std::min(Find("WHERE", from_), Find("ORDER", from_));
    for (size_t i = from_; plain_ && i < endOfFrom; ++i) plain_ = !tokens_[i].Is(",");
  }

  void TakeTop() {
    if (!Is(select_ + 1, "TOP") || select_ + 2 >= Size()) return;
    if (tokens_[select_ + 2].kind != TokenKind::kNumber && !IsValue(select_ + 2)) return;
    top_ = tokens_[select_ + 2].text;
    Erase(select_ + 1, 2);
  }

  // The field of the order term at `at`, and where the term's field ends.
  const Field* OrderField(size_t at, size_t& end) const {
    if (at >= Size() || !tokens_[at].IsName()) return nullptr;
    end = at + 1;
    if (Is(end, ".") && end + 1 < Size() && tokens_[end + 1].IsName()) end += 2;
    const bool wholeTerm = end == Size() || IsAny(tokens_[end], {",", "ASC", "DESC"});
    return wholeTerm && table_ ? table_->FindField(tokens_[end - 1].text) : nullptr;
  }

  void OrderRows() {
    if (select_ == Size()) return;
    const Field* key = table_ ? table_->AutoField() : nullptr;
    // A view has no row numbers, and its rows their order by themselves.
    const bool numbered = !table_ || key || !table_->IsStandIn;
    const std::string last = key ? QuotedName(key->Name) : "rowid";
    const size_t order = Find("ORDER", select_);
    if (order == Size() || !Is(order + 1, "BY")) {
      if (plain_ && numbered) Append({Word("ORDER"), Word("BY"), Word(last)});
      return;
    }
    bool keyIsNamed = false;
    for (size_t at = order + 2; at < Size(); at = Find(",", at) + 1) {
      size_t end = at;
      const Field* field = OrderField(at, end);
      if (!field) continue;
      keyIsNamed = keyIsNamed || field->AutoIncrement;
      if (field->Type == FieldType::kText || field->Type == FieldType::kMemo) {
        Insert(end, {Word("COLLATE"), Word(kFrenchOrder)});
      }
    }
    if (!plain_ || keyIsNamed || !numbered) return;
    Append({Comma(), Word(last)});
    if (!top_.empty()) Append({Word("DESC")});
  }

  void TranslateConditions() {
    bool condition = false;
    for (size_t at = 0; at < Size(); ++at) {
      const Token& token = tokens_[at];
      if (IsAny(token, {"WHERE", "HAVING", "ON"})) condition = true;
      if (IsAny(token, {"SELECT", "GROUP", "ORDER", "SET", "VALUES"})) condition = false;
      if (token.Is("TRUE") || token.Is("FALSE")) {
        TranslateTruth(at, condition);
      } else if (condition && token.Is("LIKE")) {
        TranslateLike(at);
      } else if (condition && token.Is("IN")) {
        at = TranslateIn(at);
      } else if (condition && IsText(at)) {
        TranslateText(at);
      }
    }
  }

  void TranslateTruth(size_t at, bool condition) {
    const bool truth = tokens_[at].Is("TRUE");
    std::string value = truth ? "-1" : "0";
    if (truth && condition && at > 0) {
      Token& sign = tokens_[at - 1];
      if (IsAny(sign, {"=", "==", "<>", "!="})) {
        sign.text = IsAny(sign, {"=", "=="}) ? "<>" : "=";
        value = "0";
      }
    }
    tokens_[at].text = value;
  }

  void TranslateLike(size_t at) {
    const bool alone = IsText(at + 1) && !Is(at + 2, "&") && !Is(at + 2, "||");
    if (!alone || IsWide(at + 1)) {
      tokens_[at].text = "REGEXP";
      return;
    }
    const bool escaped = Kind(at + 1) == ValueKind::kPercentText;
    if (IsValue(at + 1))
      patterns_.push_back(ValueAt(at + 1));
    else
      tokens_[at + 1].text = LikePattern(tokens_[at + 1].text);
    if (escaped) Insert(at + 2, {Word("ESCAPE"), Quoted(std::string(1, kEscape))});
  }

  // Returns the place to go on from.
  size_t TranslateIn(size_t at) {
    if (!Is(at + 1, "(") || Is(at + 2, "SELECT")) return at;
    size_t end = at + 2;
    bool ascii = true;
    while (end < Size() && !tokens_[end].Is(")")) {
      ascii = ascii && !IsWide(end);
      ++end;
    }
    if (ascii) return end;
    const size_t operand = at > 0 && Is(at - 1, "NOT") ? at - 1 : at;
    Insert(operand, {Word("COLLATE"), Word(kFrenchCase)});
    return end + 2;
  }

  void TranslateText(size_t at) {
    Token& text = tokens_[at];
    const bool alone =
        at > 0 && IsAny(tokens_[at - 1], {"WHERE", "AND", "OR"}) &&
        (at + 1 == Size() || IsAny(tokens_[at + 1], {"AND", "OR", "ORDER", "GROUP"}));
    if (alone && text.kind == TokenKind::kText && text.text == "*") {
      text = Token{TokenKind::kNumber, "1", text.depth};
      return;
    }
    const auto comparedBy = [&](std::initializer_list<std::string_view> signs) {
      return (at > 0 && IsAny(tokens_[at - 1], signs)) ||
             (at + 1 < Size() && IsAny(tokens_[at + 1], signs));
    };
    if (comparedBy({"=", "==", "<>", "!="}) && IsWide(at)) {
      CompareWithoutCase(at);
    } else if (comparedBy({"<", ">", "<=", ">="})) {
      Insert(at + 1, {Word("COLLATE"), Word(kFrenchOrder)});
    }
  }

  // Of several equalities between ORs SQLite makes one IN, by the comparison of the column and not
  // by the one that is told here. It does so neither with a "not different" nor with a signed
  // column.
  void CompareWithoutCase(size_t at) {
    const bool behind = at > 0 && IsAny(tokens_[at - 1], {"=", "==", "<>", "!="});
    if (!behind) Insert(at + 2, {{TokenKind::kSymbol, "+"}});
    const bool equal = behind && IsAny(tokens_[at - 1], {"=", "=="});
    if (equal) {
      tokens_[at - 1].text = "<>";
      Insert(at + 1, {{TokenKind::kSymbol, "="}, {TokenKind::kNumber, "0"}});
    }
    Insert(at + 1, {Word("COLLATE"), Word(kFrenchCase)});
  }

  Tokens tokens_;
  const TableLookup& lookup_;
  const std::vector<ValueKind>& values_;
  std::vector<size_t> patterns_;
  size_t select_ = 0;
  size_t from_ = 0;
  std::shared_ptr<const TableDef> table_;  // behind FROM; null: unknown
  bool plain_ = false;
  std::string top_;
};

}  // namespace

ValueKind KindOf(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return text ? KindOfText(*text) : ValueKind::kNumber;
}

TranslatedQuery TranslateQuery(std::string_view query, const TableLookup& tables,
                               const std::vector<ValueKind>& values) {
  return Translation(query, tables, values).Run();
}

std::string LikePattern(std::string_view written) {
  const bool escaped = KindOfText(written) == ValueKind::kPercentText;
  std::string pattern;
  for (const char c : written) {
    if (escaped && (c == '%' || c == '_' || c == kEscape)) pattern += kEscape;
    pattern += c == '*' ? '%' : c == '?' ? '_' : c;
  }
  return pattern;
}

}  // namespace zemo
