#include "store/StandIns.h"

#include <algorithm>

#include "store/Names.h"
#include "store/Schema.h"
#include "store/SqlText.h"

namespace zemo {

namespace {

bool IsTextType(const Field& field) {
  return field.Type == FieldType::kText || field.Type == FieldType::kMemo;
}

// SQLite's own rule of what a declared type holds.
bool DeclaresText(const std::string& declared) {
  const std::string type = UpperName(declared);
  const auto has = [&type](const char* part) { return type.find(part) != std::string::npos; };
  return !has("INT") && (has("CHAR") || has("CLOB") || has("TEXT"));
}

bool DeclaresNumber(const std::string& declared) {
  const std::string type = UpperName(declared);
  return !type.empty() && type.find("BLOB") == std::string::npos && !DeclaresText(declared);
}

// The gap between an artist's titles, whose default would keep all of a small library off the air.
bool IsGapOfArtists(const TableDef& table, const Field& field) {
  return SameName(table.Name, "Cnf") && SameName(field.Name, "EcartArtiste");
}

// What a row holds of which nothing else is known: as a new card has it, so that a title without
// its rotation is in rotation, and one without its hours is allowed at all hours.
Value OfANewRow(const TableDef& table, const Field& field) {
  const bool library = SameName(table.Name, "Discotheque");
  if (!field.AllowZeroLength && field.Size == 24) return std::string(24, '1');  // TRANCHE01 to 07
  if (library && SameName(field.Name, "NBPASSJOUR")) return int64_t{1};
  if (library && SameName(field.Name, "ECARTMINUTES")) return int64_t{120};
  if (library && SameName(field.Name, "GENRE")) return std::string("NOGENRE");
  if (library && SameName(field.Name, "VARIETE")) return std::string("NATIONAL");
  if (IsGapOfArtists(table, field)) return int64_t{0};
  if (!IsNull(field.DefaultValue)) return field.DefaultValue;
  return IsTextType(field) ? Value(std::string()) : Value(int64_t{0});
}

class Making {
 public:
  Making(const TableDef& present, const TableDef& schema, const StandInSql& words,
         const std::function<DeclaredColumn(const std::string& column)>& declared)
      : present_(present), schema_(schema), words_(words), declared_(declared) {
    table_.Name = present.Name;
  }

  StandIn Run() {
    for (size_t place = 0; place < schema_.Fields.size(); ++place) AddField(place);
    for (const Field& field : present_.Fields)
      if (!schema_.FindField(field.Name)) table_.Fields.push_back(field);
    FindLostKey();
    // An index that is missing costs time alone.
    table_.Indexes = schema_.Indexes;
    const bool indexed = std::all_of(
        schema_.Indexes.begin(), schema_.Indexes.end(),
        [this](const Index& index) { return present_.FindIndex(index.Name) != nullptr; });
    if (!viewed_ && !changed_ && indexed) return {};
    table_.IsStandIn = viewed_;
    result_.table = std::make_shared<const TableDef>(table_);
    if (viewed_) result_.select = SelectSql();
    return std::move(result_);
  }

 private:
  void AddField(size_t place) {
    const Field& wanted = schema_.Fields[place];
    const Field* found = present_.FindField(wanted.Name);
    Field field = wanted;
    if (found) {
      field.AutoIncrement = found->AutoIncrement;
      field.DefaultLost = !IsNull(wanted.DefaultValue) && IsNull(found->DefaultValue);
      changed_ = changed_ || field.DefaultLost;
      ReadInItsType(field);
    } else {
      field.Missing = true;
      viewed_ = true;
      ReadWithoutColumn(place, field);
    }
    table_.Fields.push_back(std::move(field));
  }

  void ReadInItsType(Field& field) {
    const DeclaredColumn column = declared_(field.Name);
    const bool text = IsTextType(field);
    if (text ? !DeclaresText(column.type) : !DeclaresNumber(column.type)) {
      field.ReadAs = words_.InType(field, QuotedName(field.Name));
      result_.told.push_back(table_.Name + '.' + field.Name + " is of type " +
                             (column.type.empty() ? "none" : column.type) + ": read as a " +
                             (text ? "text" : "number"));
    } else if (text && !column.caseBlind) {
      field.ReadAs = QuotedName(field.Name) + " COLLATE NOCASE";
    }
    viewed_ = viewed_ || !field.ReadAs.empty();
  }

  void ReadWithoutColumn(size_t place, Field& field) {
    const std::string begin = table_.Name + " has no column " + field.Name + ": ";
    const bool byPlace = SameName(table_.Name, "Cnf") &&
                         present_.Fields.size() == schema_.Fields.size() &&
                         !schema_.FindField(present_.Fields[place].Name);
    if (field.AutoIncrement) {
      field.ReadAs = words_.Number(present_);
      result_.told.push_back(begin + "the numbers of its rows are read");
    } else if (byPlace) {
      field.ReadAs = QuotedName(present_.Fields[place].Name);
      result_.told.push_back(begin + present_.Fields[place].Name + " is read in its place");
    } else {
      const bool variety = SameName(table_.Name, "Variete");
      field.ReadAs = words_.Constant(
          field, variety ? OfVarieties(field) : SqlLiteral(OfANewRow(table_, field)));
      result_.told.push_back(
          begin + (IsGapOfArtists(table_, field) ? "read as none" : "read as by default"));
    }
  }

  // A key that is an ordinary column: new rows would have no number.
  void FindLostKey() {
    const Field* key = schema_.AutoField();
    if (!key) return;
    const Field* found = table_.FindField(key->Name);
    if (found->Missing || found->AutoIncrement) return;
    table_.LostKey = found->Name;
    changed_ = true;
    result_.told.push_back(table_.Name + '.' + found->Name +
                           " is no key: new rows get the next number");
  }

  // The varieties are few, and the rotation rests on all of them: without their names they are
  // those of a new base, without their shares they have equal ones.
  std::string OfVarieties(const Field& field) const {
    if (SameName(field.Name, "VARIETE"))
      return "CASE " + words_.Number(present_) +
             " WHEN 1 THEN 'NATIONAL' WHEN 2 THEN 'INTERNATIONAL' ELSE '' END";
    return "(SELECT 100 / COUNT(*) FROM " + words_.Table(present_.Name) + ")";
  }

  std::string SelectSql() const {
    std::string sql = "SELECT ";
    const char* separator = "";
    for (const Field& field : table_.Fields) {
      sql += separator + (field.ReadAs.empty() ? QuotedName(field.Name) : field.ReadAs) + " AS " +
             QuotedName(field.Name);
      separator = ", ";
    }
    return sql + " FROM " + words_.Table(table_.Name);
  }

  const TableDef& present_;
  const TableDef& schema_;
  const StandInSql& words_;
  const std::function<DeclaredColumn(const std::string& column)>& declared_;
  TableDef table_;
  StandIn result_;
  bool viewed_ = false;   // some field is not read from its own column
  bool changed_ = false;  // something is written otherwise
};

}  // namespace

StandIn StandInFor(const TableDef& present, const StandInSql& words,
                   const std::function<DeclaredColumn(const std::string& column)>& declared) {
  const TableDef* schema = FindSchemaTable(present.Name);
  return schema ? Making(present, *schema, words, declared).Run() : StandIn();
}

std::string MakeViewSql(const StandIn& standIn) {
  return "CREATE TEMP VIEW " + QuotedName(standIn.table->Name) + " AS " + standIn.select;
}

std::string DropViewSql(const TableDef& standIn) {
  return "DROP VIEW IF EXISTS temp." + QuotedName(standIn.Name);
}

}  // namespace zemo
