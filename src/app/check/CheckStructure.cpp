// The base as a database: soundness, tables, fields, the rows that a start seeds.
#include <algorithm>

#include "app/check/CheckParts.h"
#include "station/BaseFiles.h"
#include "station/TextForms.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/StructureUpgrade.h"

namespace zemo {
namespace {

bool SoundPages(const ReadOnlyBase& base, Findings& findings) {
  bool sound = true;
  base.Query("PRAGMA integrity_check(5)", [&](const ReadOnlyBase::Row& row) {
    const std::string line = AsText(row[0]);
    if (line == "ok") return;
    sound = false;
    findings.Error("base", BaseFile::kBase, "is damaged: " + line);
  });
  return sound;
}

// Names of the fields that the file has, in its order; empty without the table.
std::vector<std::string> FieldsInFile(const ReadOnlyBase& base, const std::string& table) {
  std::vector<std::string> names;
  base.Query("PRAGMA table_info(" + QuotedName(table) + ")",
             [&](const ReadOnlyBase::Row& row) { names.push_back(AsText(row[1])); });
  return names;
}

bool HasAllFields(const ReadOnlyBase& base, const TableDef& wanted, Findings& findings) {
  const std::vector<std::string> names = FieldsInFile(base, wanted.Name);
  if (names.empty()) {
    findings.Error("base", wanted.Name, "the table is missing");
    return false;
  }
  bool complete = true;
  for (const Field& field : wanted.Fields) {
    if (std::none_of(names.begin(), names.end(),
                     [&](const std::string& name) { return EqualNoCase(name, field.Name); })) {
      findings.Error("base", wanted.Name, "the field " + field.Name + " is missing");
      complete = false;
    }
  }
  // Settings are read by their place in the row, so that a field in another place is another
  // setting.
  if (complete && EqualNoCase(wanted.Name, "Cnf")) {
    for (size_t i = 0; i < wanted.Fields.size(); ++i) {
      if (EqualNoCase(names[i], wanted.Fields[i].Name)) continue;
      findings.Error("base", wanted.Name,
                     "field " + std::to_string(i + 1) + " is " + names[i] + " and should be " +
                         wanted.Fields[i].Name);
      return false;
    }
  }
  return complete;
}

// A start compares the counts alone, and can make nothing anew beside a table of that name.
void CheckUpgrade(const ReadOnlyBase& base, Findings& findings) {
  for (const CheckedTable& table : kCheckedTables) {
    const size_t present = FieldsInFile(base, table.name).size();
    const size_t wanted = FindSchemaTable(table.name)->Fields.size();
    if (present == 0 || present == wanted) continue;
    findings.Warning("base", table.name,
                     "has " + std::to_string(present) + " fields instead of " +
                         std::to_string(wanted) + ": the next start makes it anew");
  }
  if (!FieldsInFile(base, kTempTable).empty())
    findings.Warning("base", kTempTable,
                     "is left of an upgrade that failed: no table is made anew beside it");
}

}  // namespace

bool CheckStructure(const ReadOnlyBase& base, Findings& findings) {
  if (!SoundPages(base, findings)) return false;
  bool complete = true;
  for (const TableDef& table : SchemaTables()) complete &= HasAllFields(base, table, findings);
  CheckUpgrade(base, findings);
  return complete;
}

}  // namespace zemo
