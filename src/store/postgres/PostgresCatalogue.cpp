#include "store/postgres/PostgresCatalogue.h"

#include <algorithm>
#include <set>
#include <utility>

#include "store/Names.h"
#include "store/Schema.h"
#include "store/StandIns.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresRules.h"

namespace zemo {

namespace {

constexpr size_t kMostTranslations = 512;

class PostgresStandIns final : public StandInSql {
 public:
  std::string Constant(const Field& field, const std::string& literal) const override {
    if (HoldsText(field)) return "CAST(" + literal + " AS text)";
    return "CAST(" + literal +
           (field.Type == FieldType::kFloat64 ? " AS double precision)" : " AS bigint)");
  }
  // A text that begins as a number is that number, as elsewhere.
  std::string InType(const Field& field, const std::string& column) const override {
    if (HoldsText(field)) return "zemo.digits(" + column + ')';
    const std::string number =
        "coalesce(substring(" + column + " from '^ *[-+]?[0-9]+[.]?[0-9]*'), '0')";
    return field.Type == FieldType::kFloat64
               ? "CAST(" + number + " AS double precision)"
               : "CAST(trunc(CAST(" + number + " AS numeric)) AS bigint)";
  }
  std::string Number(const TableDef& present) const override {
    return QuotedName(NumberColumn(present));
  }
  std::string Table(std::string_view name) const override { return QuotedName(name); }
};

// --- What the server tells of a field ---

void TypeOf(std::string_view type, bool identity, Field& field) {
  if (identity) {
    field.AutoIncrement = true;
    field.Type = FieldType::kInt32;
  } else if (type == "int2") {
    field.Type = FieldType::kBool;
  } else if (type == "int8" || type == "int4") {
    field.Type = FieldType::kInt32;
  } else if (type == "float8" || type == "float4" || type == "numeric") {
    field.Type = FieldType::kFloat64;
  } else {
    field.Type = FieldType::kMemo;
  }
}

// 'it''s'::text
std::string TextInQuotes(const std::string& sql) {
  std::string text;
  for (size_t i = 1; i < sql.size(); ++i) {
    if (sql[i] == '\'' && (i + 1 >= sql.size() || sql[i + 1] != '\'')) break;
    if (sql[i] == '\'') ++i;
    text += sql[i];
  }
  return text;
}

// (-1)::bigint
std::string NumberWithType(const std::string& sql) {
  std::string number = sql.substr(0, sql.find(':'));
  number.erase(
      std::remove_if(number.begin(), number.end(), [](char c) { return c == '(' || c == ')'; }),
      number.end());
  return number;
}

Value DefaultIn(const Field& field, const std::string& sql) {
  if (sql.empty()) return {};
  const std::string value = sql.front() == '\'' ? TextInQuotes(sql) : NumberWithType(sql);
  if (HoldsText(field)) return value;
  if (!ReadsAsNumber(value)) return {};
  const double real = AsReal(value);
  const int64_t whole = AsInt(value);
  return static_cast<double>(whole) == real ? Value(whole) : Value(real);
}

// --- Reading the tables ---

using TablesRead = std::vector<std::shared_ptr<TableDef>>;

TableDef* TableAmong(const TablesRead& tables, std::string_view name) {
  for (const auto& table : tables)
    if (table->Name == name) return table.get();
  return nullptr;
}

// What a tool has put beside the station's tables is one of the base's where this role reads it and
// its rows have numbers; else it is passed over. A database without any of the station's shows all.
TablesRead TablesWithFields(const PostgresCatalogue::Ask& ask) {
  const PostgresResult fields = ask(
      "SELECT c.relname, a.attname, t.typname, coalesce(pg_get_expr(d.adbin, d.adrelid), ''), "
      "a.attidentity <> '', has_table_privilege(c.oid, 'SELECT') FROM pg_class c JOIN pg_attribute "
      "a ON a.attrelid = c.oid JOIN pg_type "
      "t ON t.oid = a.atttypid LEFT JOIN pg_attrdef d ON d.adrelid = c.oid AND d.adnum = a.attnum "
      "WHERE c.relnamespace = quote_ident(current_schema())::regnamespace AND c.relkind = 'r' AND "
      "a.attnum > 0 "
      "AND NOT a.attisdropped ORDER BY lower(c.relname::text COLLATE \"C\"), a.attnum");
  TablesRead tables;
  std::set<std::string_view> ofTheBase;
  for (int row = 0; row < fields.Rows(); ++row) {
    if (tables.empty() || tables.back()->Name != fields.Text(row, 0)) {
      tables.push_back(std::make_shared<TableDef>());
      tables.back()->Name = fields.Text(row, 0);
    }
    Field field;
    field.Name = fields.Text(row, 1);
    const bool isNumber = field.Name == kHiddenNumber || fields.Text(row, 4) == "t";
    if (FindSchemaTable(tables.back()->Name) || (isNumber && fields.Text(row, 5) == "t"))
      ofTheBase.insert(tables.back()->Name);
    if (field.Name == kHiddenNumber) continue;
    TypeOf(fields.Text(row, 2), fields.Text(row, 4) == "t", field);
    field.DefaultValue = DefaultIn(field, std::string(fields.Text(row, 3)));
    const TableDef* schema = FindSchemaTable(tables.back()->Name);
    const Field* known = schema ? schema->FindField(field.Name) : nullptr;
    field.AllowZeroLength = !known || known->AllowZeroLength;
    tables.back()->Fields.push_back(std::move(field));
  }
  const bool isStations = std::any_of(tables.begin(), tables.end(), [](const auto& table) {
    return FindSchemaTable(table->Name) != nullptr;
  });
  if (isStations)
    std::erase_if(tables, [&](const auto& table) { return !ofTheBase.contains(table->Name); });
  return tables;
}

void PutRule(const PostgresRule& rule, TableDef& table) {
  for (Field& field : table.Fields) {
    if (!SameName(field.Name, rule.field)) continue;
    if (rule.isWidth) {
      field.Type = FieldType::kText;
      field.Size = rule.number;
    } else if (rule.number == 16) {
      field.Type = FieldType::kInt16;
    }
  }
}

void PutRules(const PostgresCatalogue::Ask& ask, const TablesRead& tables) {
  const PostgresResult rules =
      ask("SELECT c.relname, k.conname FROM pg_constraint k JOIN pg_class c ON c.oid = k.conrelid "
          "WHERE k.connamespace = quote_ident(current_schema())::regnamespace AND k.contype = 'c'");
  for (int row = 0; row < rules.Rows(); ++row) {
    TableDef* table = TableAmong(tables, rules.Text(row, 0));
    const auto rule = RuleNamed(std::string(rules.Text(row, 1)));
    if (table && rule) PutRule(*rule, *table);
  }
}

void PutIndexes(const PostgresCatalogue::Ask& ask, const TablesRead& tables) {
  const PostgresResult indexes = ask(
      "SELECT c.relname, i.relname, x.indisunique, coalesce(obj_description(i.oid, 'pg_class'), "
      "a.attname) FROM pg_index x JOIN pg_class c ON c.oid = x.indrelid JOIN pg_class i ON i.oid = "
      "x.indexrelid LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = x.indkey[0] "
      "WHERE "
      "c.relnamespace = quote_ident(current_schema())::regnamespace AND NOT x.indisprimary AND "
      "x.indisvalid "
      "ORDER BY i.oid");
  for (int row = 0; row < indexes.Rows(); ++row) {
    TableDef* table = TableAmong(tables, indexes.Text(row, 0));
    if (!table || indexes.IsNull(row, 3)) continue;
    table->Indexes.push_back({std::string(IndexNameOf(table->Name, indexes.Text(row, 1))),
                              std::string(indexes.Text(row, 3)), indexes.Text(row, 2) == "t"});
  }
  for (const auto& table : tables) AddKeyIndex(*table);
}

std::shared_ptr<const TableDef> TableOfName(const PostgresCatalogue::Tables& tables,
                                            std::string_view name) {
  for (const auto& table : tables)
    if (SameName(table->Name, name)) return table;
  return nullptr;
}

}  // namespace

// --- Tables ---

// Of all that the catalogue shows, whoever changed it, at a cost below that of reading it. An index
// that is made anew under its name changes nothing.
std::string PostgresCatalogue::Mark() const {
  const PostgresResult mark = ask_(
      "SELECT count(*) || ' ' || coalesce(sum(hashtext(concat_ws('|', CASE c.relkind WHEN 'r' THEN "
      "c.oid END, c.relname, a.attname, a.atttypid, a.attisdropped, a.atthasdef, "
      "c.relchecks))::bigint), 0) || ' ' || coalesce(max(CASE c.relkind WHEN 'r' THEN "
      "a.xmin::text::bigint END), 0) FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid "
      "WHERE c.relnamespace = quote_ident(current_schema())::regnamespace AND c.relkind IN ('r', "
      "'i') AND a.attnum > 0 AND c.relname !~ '_cc(new|old)[0-9]*$'");
  return std::string(mark.Text(0, 0));
}

std::shared_ptr<const TableDef> PostgresCatalogue::FindTable(std::string_view name) {
  if (!structure_.empty())
    if (auto table = TableOfName(tables_, name)) return table;
  return TableOfName(AllTables(), name);
}

const PostgresCatalogue::Tables& PostgresCatalogue::AllTables() {
  std::string mark = Mark();
  if (mark == structure_) return tables_;
  Forget();
  if (mark != standInStructure_) standIns_.clear();
  const TablesRead tables = TablesWithFields(ask_);
  PutRules(ask_, tables);
  PutIndexes(ask_, tables);
  tables_.assign(tables.begin(), tables.end());
  ++timesRead_;
  structure_ = std::move(mark);
  return tables_;
}

std::shared_ptr<const TableDef> PostgresCatalogue::FindReadTable(std::string_view name) {
  auto table = FindTable(name);  // which may find the structure changed
  auto standIn = TableOfName(standIns_, name);
  return standIn ? standIn : table;
}

bool PostgresCatalogue::IsOld() {
  return !structure_.empty() && Mark() != structure_;
}

void PostgresCatalogue::Forget() {
  structure_.clear();
  ForgetQueries();
}

// --- Stand-ins ---

std::vector<std::string> PostgresCatalogue::PutStandIns() {
  const Tables tables = AllTables();
  standIns_.clear();
  std::vector<std::string> told;
  for (const auto& table : tables) {
    StandIn standIn = StandInFor(*table, PostgresStandIns(), [&table](const std::string& column) {
      return DeclaredColumn{HoldsText(*table->FindField(column)) ? "TEXT" : "REAL", true};
    });
    if (!standIn.table) continue;
    standIns_.push_back(std::move(standIn.table));
    told.insert(told.end(), standIn.told.begin(), standIn.told.end());
  }
  ForgetQueries();
  standInStructure_ = structure_;
  return told;
}

bool PostgresCatalogue::StandInsAreOld() {
  return !standInStructure_.empty() && Mark() != standInStructure_;
}

void PostgresCatalogue::ForgetStandIns() {
  Forget();
  standIns_.clear();
}

// --- Queries ---

std::shared_ptr<const PostgresQuery> PostgresCatalogue::Translated(std::string_view sql,
                                                                   const Values& values,
                                                                   bool forRows) {
  std::string key = std::string(sql) + '\0' + KindsOf(values);
  std::shared_ptr<const PostgresQuery> query;
  if (const auto found = translations_.find(key); found != translations_.end()) {
    query = found->second;
  } else {
    query = std::make_shared<const PostgresQuery>(TranslateForPostgres(
        sql, [this](std::string_view name) { return FindReadTable(name); }, values));
    if (translations_.size() >= kMostTranslations) translations_.clear();
    translations_.emplace(std::move(key), query);
  }
  if (forRows && !query->givesRows)
    throw StoreError(kErrSyntax, "a query without rows cannot be opened: " + std::string(sql));
  return query;
}

void PostgresCatalogue::ForgetQueries() {
  translations_.clear();
}

}  // namespace zemo
