// Two people at work on one record: what a screen shows and stores of one that somebody else has
// changed since it was loaded. A field that one of both changed is as that one has it. Where both
// changed one, the operator keeps his own while he works, and who saves second is asked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace zemo {

struct Station;

using FieldPlace = std::variant<std::string*, int32_t*, bool*>;

struct RecordField {
  const char* name;  // of the control, by which the operator is told of it
  FieldPlace place;  // in a form that outlives this
  // Fields of one group above 0 make sense only together: they are taken all or none.
  int group = 0;
};
using RecordFields = std::vector<RecordField>;

// One record three times, the same fields in the same order.
struct RecordForms {
  RecordFields loaded;  // as it was when it was loaded, or taken over since
  RecordFields theirs;  // as the base holds it now
  RecordFields mine;    // as the operator has it
};

// What he did not change becomes what the base holds now, in `mine` and `loaded`; what he changed
// stays, and so does what it was loaded as, by which the saving knows; where both made one thing of
// it it was loaded so. True where `mine` or `loaded` changed.
bool TakeOverFields(const RecordForms& forms);

// One saving.
class RecordMerge {
 public:
  // What the operator calls a field, by its name.
  using WordOf = std::function<std::string(const char* name)>;

  // kStore: `mine` is what is to be stored. kReadAgain: he was asked, and `theirs` may be another
  // one by now. kLeave: nothing is to be stored. May yield, so that no row stands in edit
  // meanwhile.
  enum class Step { kStore, kReadAgain, kLeave };
  Step Next(Station& station, const RecordForms& forms, const WordOf& wordOf);

 private:
  enum class Kept { kNobodys, kMine, kTheirs };
  Kept kept_ = Kept::kNobodys;
  std::vector<std::string> askedOf_;  // of `theirs`, the fields that both had changed
};

// As the boxes call the question, and what stands above the fields when they are looked at.
std::string RecordClashText(Station& station);
// "Titre : A / B", with what the other has and what this one has.
std::string RecordClashLine(Station& station, const std::string& field, const std::string& theirs,
                            const std::string& mine);

}  // namespace zemo
