#include "store/postgres/PostgresErrors.h"

#include <algorithm>
#include <iterator>

#include "store/Names.h"
#include "store/StoreError.h"
#include "store/postgres/ClientLibrary.h"
#include "store/postgres/PostgresFunctions.h"
#include "store/postgres/PostgresRules.h"
#include "store/postgres/PostgresValues.h"

namespace zemo {

namespace {

constexpr char kBrokenRule[] = "23514";
constexpr char kKeyTwice[] = "23505";

// A state, or a group of them by its two characters; the first that fits is told.
struct Refusal {
  std::string_view state;
  int number;
  std::string_view ofBase;  // behind the base's name; empty: the server's message alone
  bool message;             // the server's
  bool statement;           // and in which statement
};
constexpr Refusal kRefusals[] = {
    {kFormState, kErrReadOnly, kNewerForm, false, false},
    {kRangeState, kErrOverflow, "", true, false},
    {kKindState, kErrValueRefused, "", true, false},
    {"22003", kErrOverflow, "", true, true},
    {"22021", kErrValueRefused, "", true, false},
    {"23", kErrValueRefused, "", true, false},
    {"42P01", kErrNoSuchTable, "", true, true},
    {"42703", kErrNoSuchField, "", true, true},
    {"42P07", kErrTableExists, "", true, false},
    {"42710", kErrTableExists, "", true, false},
    {"42501", kErrReadOnly, " cannot be written: ", true, false},
    {"25", kErrReadOnly, " cannot be written: ", true, false},
    {"53100", kErrDiskFull, " cannot grow: the disk is full", false, false},
    {"XX", kErrBadDatabase, " is damaged: ", true, false},
    {"42", kErrSyntax, "", true, true},
    {"22", kErrSyntax, "", true, true},
    {"0A", kErrSyntax, "", true, true},
    {"54", kErrSyntax, "", true, true},
    {"", kErrOther, ": ", true, false},
};

[[noreturn]] void ThrowKeyTwice(const PostgresResult& result, const TableLookup& tables) {
  const std::string table = result.Detail(PG_DIAG_TABLE_NAME);
  const std::string rule = result.Detail(PG_DIAG_CONSTRAINT_NAME);
  std::string field;
  if (const auto def = tables(table)) {
    for (const Index& index : def->Indexes)
      if (rule == StoredIndexName(def->Name, index.Name)) field = index.Field;
    if (field.empty()) field = NumberColumn(*def);
  }
  throw StoreError(kErrDuplicateKey, table + '.' + field + " has this value already");
}

}  // namespace

void ThrowRefusal(const PostgresResult& result, const std::string& base, std::string_view shown,
                  const TableLookup& tables) {
  const std::string state = result.State();
  const std::string message = ServerLine(result.Detail(PG_DIAG_MESSAGE_PRIMARY));
  if (result.IsOutOfTime()) throw StoreError(kErrLocked, base + " did not answer in its time");
  if (result.IsLocked()) throw StoreError(kErrLocked, base + " is locked by another program");
  if (state == kBrokenRule)
    ThrowRule(result.Detail(PG_DIAG_TABLE_NAME), result.Detail(PG_DIAG_CONSTRAINT_NAME), message);
  if (state == kKeyTwice) ThrowKeyTwice(result, tables);
  const Refusal& refusal =
      *std::find_if(std::begin(kRefusals), std::end(kRefusals),
                    [&state](const Refusal& known) { return state.starts_with(known.state); });
  std::string text;
  if (!refusal.ofBase.empty()) text = base + std::string(refusal.ofBase);
  if (refusal.message) text += message;
  if (refusal.statement) text += ", in: " + ServerLine(std::string(shown.substr(0, 200)));
  throw StoreError(refusal.number, text);
}

}  // namespace zemo
