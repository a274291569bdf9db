// The fields of the thirteen tables, and their form in SQL. A field's order is part of the format.
#include "store/Schema.h"

#include <charconv>
#include <utility>

#include "store/Names.h"
#include "store/SqlText.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

// Lists a table's fields and indexes in their order.
class Table {
 public:
  explicit Table(std::string name) { def_.Name = std::move(name); }

  Table& Auto(std::string name) {
    Field& field = Add(std::move(name), FieldType::kInt32, {});
    field.AutoIncrement = true;
    return *this;
  }
  Table& Text(std::string name, int size, Value byDefault = {}) {
    Add(std::move(name), FieldType::kText, std::move(byDefault)).Size = size;
    return *this;
  }
  // "No empty": the text may not be emptied by an editor. It is not enforced here, because the
  // default of the hour authorisations is itself empty and must do in a plain insertion.
  Table& TextNoEmpty(std::string name, int size, Value byDefault) {
    Text(std::move(name), size, std::move(byDefault));
    def_.Fields.back().AllowZeroLength = false;
    return *this;
  }
  Table& Memo(std::string name) { return Plain(std::move(name), FieldType::kMemo, {}); }
  Table& Int16(std::string name, Value byDefault = {}) {
    return Plain(std::move(name), FieldType::kInt16, std::move(byDefault));
  }
  Table& Int32(std::string name, Value byDefault = {}) {
    return Plain(std::move(name), FieldType::kInt32, std::move(byDefault));
  }
  Table& Float64(std::string name, Value byDefault = {}) {
    return Plain(std::move(name), FieldType::kFloat64, std::move(byDefault));
  }
  // A yes/no field knows two values only: it is false where nothing was said, never Null.
  Table& Bool(std::string name) {
    return Plain(std::move(name), FieldType::kBool, Value(int64_t{0}));
  }
  // A field as its type was made, under its name.
  void Has(std::string name, Field field) {
    field.Name = std::move(name);
    def_.Fields.push_back(std::move(field));
  }
  // The fields made by `add` for prefix + number, from first to last.
  template <typename AddOne>
  Table& Numbered(const std::string& prefix, int first, int last, int digits, AddOne add) {
    for (int number = first; number <= last; ++number) {
      std::string suffix = std::to_string(number);
      if (static_cast<int>(suffix.size()) < digits) suffix.insert(0, "0");
      add(*this, prefix + suffix);
    }
    return *this;
  }
  Table& Authorisations() {
    return Numbered("TRANCHE", 1, 7, 2, [](Table& table, std::string name) {
      table.TextNoEmpty(std::move(name), 24, std::string());
    });
  }
  Table& IndexOn(std::string field, std::string name, bool unique = false) {
    def_.Indexes.push_back({std::move(name), std::move(field), unique});
    return *this;
  }

  operator TableDef() const { return def_; }  // NOLINT: a listing is the table it lists

 private:
  Field& Add(std::string name, FieldType type, Value byDefault) {
    Field field;
    field.Name = std::move(name);
    field.Type = type;
    field.DefaultValue = std::move(byDefault);
    def_.Fields.push_back(std::move(field));
    return def_.Fields.back();
  }
  Table& Plain(std::string name, FieldType type, Value byDefault) {
    Add(std::move(name), type, std::move(byDefault));
    return *this;
  }

  TableDef def_;
};

Value Number(int64_t number) {
  return number;
}
Value Empty() {
  return std::string();
}

TableDef Discotheque() {
  return Table("Discotheque")
      .Auto("CODE")
      .Text("FILENAME", 255)
      .Int32("DUREE")  // ms
      .Int16("INTRO")  // s
      .Text("AUTEUR", 40)
      .Text("TITRE", 40)
      .Text("GENRE", 22)
      .Text("VARIETE", 22)
      .Text("ANNEE", 4)
      .Int16("NBPASSJOUR")
      .Int16("ECARTMINUTES")
      .Int16("ECARTJOURS")
      .Int16("ECARTARTISTE")
      .Authorisations()
      .Numbered("DIFFUSION", 1, 8, 2,
                [](Table& table, std::string name) { table.Text(std::move(name), 22); })
      .Memo("COMMENTAIRE")
      .Int16("POINTSORTIE")  // ms
      .Text("LABEL", 40)
      .Text("CD", 40)
      .Float64("LASTDIFF", Number(0))  // day serial
      .Text("AUTEURCOMPOSITEUR", 60)
      .Text("REFERENCE", 20)
      .Text("MMJJDebut", 4)
      .Text("MMJJFin", 4)
      .IndexOn("CODE", "CODE", true)
      .IndexOn("FILENAME", "FILENAME")
      .IndexOn("AUTEUR", "Auteur")
      .IndexOn("TITRE", "Titre")
      .IndexOn("GENRE", "Genre")
      .IndexOn("NBPASSJOUR", "NbPassJour")
      .Numbered("TRANCHE", 1, 6, 2,  // TRANCHE07 has none
                [](Table& table, const std::string& name) { table.IndexOn(name, name); })
      .IndexOn("VARIETE", "VARIETE")
      .IndexOn("LABEL", "LABEL");
}

TableDef DiscothequeJingle() {
  return Table("DiscothequeJingle")
      .Auto("CODE")
      .Text("FILENAME", 255)
      .Int32("DUREE")  // ms
      .Text("LIBELLE", 40)
      .Int16("SURIMPRESSION")
      .Authorisations()
      .Int32("CODEASSOCIE")
      .Float64("LASTDIFF", Number(0))
      .Text("GENREASSOCIE", 22, Empty())
      .Int16("ENDOFTITRE", Number(0))
      .Text("ARTISTEASSOCIE", 40, Empty())
      .Int16("POINTSORTIE", Number(0))  // ms
      .Text("AUTEURCOMPOSITEUR", 60)
      .Int16("JingleExtraitYN", Number(0))
      .Text("MMJJDebut", 4)
      .Text("MMJJFin", 4)
      .IndexOn("CODE", "Code", true);
}

TableDef DiscothequeVirgule() {
  return Table("DiscothequeVirgule")
      .Auto("CODE")
      .Text("FILENAME", 255)
      .Int32("DUREE")  // ms
      .Text("LIBELLE", 40)
      .Int16("TOUCHE")
      .Int16("POINTSORTIE", Number(0))  // ms
      .Int16("JingleRacro", Number(0))
      .Float64("LASTDIFF", Number(0))
      .IndexOn("CODE", "Code", true);
}

TableDef GrillePub() {
  return Table("GrillePub")
      .Auto("CODE")
      .Text("CAMPAGNEDEPART", 10)
      .Text("CAMPAGNEFIN", 10)
      .Text("HDEPART", 2)
      .Text("HFIN", 2)
      .Numbered("DECOUPEH", 1, 8, 1,
                [](Table& table, std::string name) { table.Text(std::move(name), 2); })
      .Text("FILENAMEAUDIO", 255)
      .Int32("DUREE")  // ms
      .Text("ANNONCEUR", 40)
      .Text("CATEGORIE", 40)
      .Text("FILENAMEGRILLE", 255)
      .Int16("PRIORITY")
      .Text("CONTACT", 100)
      .Bool("PUB")
      .Text("GENREASSOCIE", 22, Empty())
      .IndexOn("CODE", "Code", true)
      .IndexOn("FILENAMEAUDIO", "FILENAMEAUDIO")
      .IndexOn("PRIORITY", "PRIORITY");
}

TableDef Models() {
  return Table("Models")
      .Int16("JOUR")
      .Text("GENRE", 22)
      .Numbered("TRANCHE", 0, 23, 2,
                [](Table& table, std::string name) { table.Int16(std::move(name)); })
      .Auto("CODE");
}

TableDef ModelSquelette() {
  return Table("ModelSquelette")
      .Int16("JOUR")
      .Numbered("TRANCHE", 0, 23, 2,
                [](Table& table, std::string name) { table.Text(std::move(name), 22); })
      .Auto("CODE");
}

TableDef Variete() {
  return Table("Variete").Int16("POURCENT").Text("VARIETE", 20);
}

TableDef Toph() {
  return Table("Toph")
      .Auto("CODE")
      .Text("FICHIER", 255)
      .Bool("SURIMPRESSION")
      .Int16("HEURE")
      .TextNoEmpty("JourSemaine", 7, std::string("XXXXXXX"));
}

// The types of SettingRows.inc.
Field OfType(FieldType type, Value byDefault = {}, int size = 0) {
  Field field;
  field.Type = type;
  field.Size = size;
  field.DefaultValue = std::move(byDefault);
  return field;
}
Field Int16(int64_t byDefault) {
  return OfType(FieldType::kInt16, byDefault);
}
Field Int32(int64_t byDefault) {
  return OfType(FieldType::kInt32, byDefault);
}
Field Text(int size, Value byDefault = {}) {
  return OfType(FieldType::kText, std::move(byDefault), size);
}
Field Bool() {
  return OfType(FieldType::kBool, Number(0));
}

TableDef Cnf() {
  Table table("Cnf");
#define SETTING(field, type, ...) table.Has(#field, type);
#define KEPT(field, type, ...) table.Has(#field, type);
#include "store/SettingRows.inc"
  return table;
}

TableDef Rapport() {
  return Table("Rapport")
      .Text("LADATE", 10)
      .Text("HEURE", 8)
      .Text("AUTEURCOMPOSITEUR", 60)
      .Text("AUTEUR", 40)
      .Text("TITRE", 40)
      .Text("GENRE", 20)
      .Text("VARIETE", 20)
      .Float64("DATENUM")  // day serial
      .Text("REFERENCE", 20)
      .Text("LABEL", 40)
      .Auto("CODE");
}

TableDef Playlist() {
  return Table("Playlist")
      .Auto("CODE")
      .Text("LADATE", 10)
      .Text("LHEURE", 5)
      .Text("LIBELLE", 40)
      .Int16("NOJINGLE")
      .IndexOn("CODE", "Code", true);
}

// NUMPLS, DISCOTHEQUE and FICHE are 16-bit although they hold numbers of auto fields; deliberate.
TableDef Pls() {
  return Table("Pls")
      .Auto("CODE")
      .Int16("NUMPLS")
      .Int16("DISCOTHEQUE")
      .Int16("FICHE")
      .IndexOn("CODE", "Code", true);
}

TableDef VT() {
  return Table("VT")
      .Auto("CODE")
      .Text("FILENAME", 255)
      .Int32("START")  // ms
      .Text("LIBELLE", 40)
      .Bool("CUT")
      .Int32("DUREE")         // ms
      .Int32("POINTSORTIE");  // ms
}

const TableDef& SchemaTable(std::string_view name) {
  const TableDef* table = FindSchemaTable(name);
  if (!table) throw StoreError(kErrNoSuchTable, "no table " + std::string(name) + " in the schema");
  return *table;
}

// A rule's name is the message of whoever breaks it, in any SQLite tool.
std::string RuleSql(const std::string& name, const std::string& condition) {
  return " CONSTRAINT " + QuotedName(name) + " CHECK (" + condition + ')';
}

std::string RangeSql(std::string_view table, const Field& field, const char* low,
                     const char* high) {
  const std::string where = std::string(table) + '.' + field.Name;
  return RuleSql(where + kRangeRule + low + " to " + high,
                 QuotedName(field.Name) + " BETWEEN " + low + " AND " + high);
}

}  // namespace

const std::vector<TableDef>& SchemaTables() {
  static const std::vector<TableDef> tables = {Discotheque(),
                                               DiscothequeJingle(),
                                               DiscothequeVirgule(),
                                               GrillePub(),
                                               Models(),
                                               Variete(),
                                               Toph(),
                                               Cnf(),
                                               Rapport(),
                                               Playlist(),
                                               Pls(),
                                               ModelSquelette(),
                                               VT()};
  return tables;
}

const TableDef* FindSchemaTable(std::string_view name) {
  for (const TableDef& table : SchemaTables()) {
    if (SameName(table.Name, name)) return &table;
  }
  return nullptr;
}

void CreateTable(TableDefs& tables, std::string_view name) {
  tables.Append(SchemaTable(name));
}

void CreateIndexes(TableDefs& tables, std::string_view name) {
  const TableDef& table = SchemaTable(name);
  const TableDef present = tables.Item(table.Name);
  for (const Index& index : table.Indexes) {
    if (!present.FindIndex(index.Name)) tables.AppendIndex(table.Name, index);
  }
}

void AddKeyIndex(TableDef& table) {
  const TableDef* schema = FindSchemaTable(table.Name);
  const Field* key = table.AutoField();
  if (!key) return;
  Index index{"CODE", key->Name, true};
  if (schema) {
    const Index* listed = schema->FindIndex("CODE");
    if (!listed) return;
    index.Name = listed->Name;
  }
  table.Indexes.insert(table.Indexes.begin(), std::move(index));
}

std::string CreateTableSql(const TableDef& table) {
  std::string sql = "CREATE TABLE " + QuotedName(table.Name) + " (";
  const char* separator = "\n  ";
  for (const Field& field : table.Fields) {
    sql += separator + FieldSql(table.Name, field);
    separator = ",\n  ";
  }
  return sql + "\n)";
}

std::string FieldSql(std::string_view table, const Field& field) {
  std::string sql = QuotedName(field.Name) + ' ';
  if (field.AutoIncrement) return sql + "INTEGER PRIMARY KEY AUTOINCREMENT";
  std::string rule;
  switch (field.Type) {
    case FieldType::kInt16:
      sql += "SMALLINT";
      rule = RangeSql(table, field, "-32768", "32767");
      break;
    case FieldType::kInt32:
      sql += "INTEGER";
      rule = RangeSql(table, field, "-2147483648", "2147483647");
      break;
    case FieldType::kFloat64:
      sql += "REAL";
      break;
    case FieldType::kBool:
      sql += "BOOLEAN";
      break;
    case FieldType::kMemo:
      sql += "TEXT COLLATE NOCASE";
      break;
    case FieldType::kText: {
      const std::string size = std::to_string(field.Size);
      sql += "VARCHAR(" + size + ") COLLATE NOCASE";
      rule = RuleSql(std::string(table) + '.' + field.Name + kWidthRule + size + " characters",
                     "length(" + QuotedName(field.Name) + ") <= " + size);
      break;
    }
  }
  if (!IsNull(field.DefaultValue)) sql += " DEFAULT " + SqlLiteral(field.DefaultValue);
  return sql + rule;
}

std::string CreateIndexSql(std::string_view table, const Index& index) {
  return std::string(index.Unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ") +
         QuotedName(StoredIndexName(table, index.Name)) + " ON " + QuotedName(table) + " (" +
         QuotedName(index.Field) + ')';
}

void ReadDeclaredType(std::string_view declared, Field& field) {
  const std::string upper = UpperName(declared);
  const std::string_view type = upper;
  field.Size = 0;
  if (type.starts_with("VARCHAR(")) {
    std::from_chars(type.data() + 8, type.data() + type.size(), field.Size);
    field.Type = FieldType::kText;
  } else if (type == "SMALLINT") {
    field.Type = FieldType::kInt16;
  } else if (type == "BOOLEAN") {
    field.Type = FieldType::kBool;
  } else if (type.find("INT") != std::string_view::npos) {
    field.Type = FieldType::kInt32;
  } else if (type == "REAL" || type == "DOUBLE" || type == "FLOAT") {
    field.Type = FieldType::kFloat64;
  } else {
    field.Type = FieldType::kMemo;
  }
}

}  // namespace zemo
