#include "station/RecordMerge.h"

#include <algorithm>
#include <map>

#include "platform/Desktop.h"
#include "station/LanguageTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr size_t kMostLines = 12;    // of a box
constexpr int kMostCharacters = 40;  // of a field in it

constexpr LanguageTexts kClash = {
    "Quelqu'un d'autre a modifié les mêmes champs que vous\r\ndepuis que vous les avez affichés.",
    "Somebody else has changed the same fields as you\r\nsince they were shown to you.",
    "Outra pessoa alterou os mesmos campos\r\ndesde que lhe foram mostrados.",
    "Otra persona cambió los mismos campos que usted\r\ndesde que se le mostraron."};
constexpr LanguageTexts kTheirs = {"chez l'autre", "theirs", "do outro", "del otro"};
constexpr LanguageTexts kMine = {"chez vous", "yours", "seu", "suyo"};

int Langue(Station& station) {
  return static_cast<int>(station.base.CnfInt(Cnf::kLangue));
}

std::string TextAt(const RecordField& field) {
  struct Reader {
    std::string operator()(const std::string* text) const { return *text; }
    std::string operator()(const int32_t* number) const { return std::to_string(*number); }
    std::string operator()(const bool* ticked) const { return *ticked ? "X" : ""; }
  };
  return std::visit(Reader{}, field.place);
}

// The same kind stands at both places.
void Take(const RecordField& to, const RecordField& from) {
  std::visit([&](auto* place) { *place = *std::get<decltype(place)>(from.place); }, to.place);
}

bool Same(const RecordField& one, const RecordField& other) {
  return TextAt(one) == TextAt(other);
}

using Places = std::vector<size_t>;

// Fields that are taken together, by their places.
std::vector<Places> Groups(const RecordFields& fields) {
  std::vector<Places> groups;
  std::map<int, size_t> known;
  for (size_t field = 0; field < fields.size(); ++field) {
    const int group = fields[field].group;
    if (group > 0) {
      const auto [found, first] = known.try_emplace(group, groups.size());
      if (first) groups.emplace_back();
      groups[found->second].push_back(field);
    } else {
      groups.push_back({field});
    }
  }
  return groups;
}

bool Differ(const RecordFields& one, const RecordFields& other, const Places& fields) {
  return std::any_of(fields.begin(), fields.end(),
                     [&](size_t field) { return !Same(one[field], other[field]); });
}

// The fields that both changed, each to something else.
Places Contested(const RecordForms& forms) {
  Places contested;
  for (const Places& group : Groups(forms.mine)) {
    if (!Differ(forms.loaded, forms.theirs, group) || !Differ(forms.loaded, forms.mine, group))
      continue;
    for (const size_t field : group)
      if (!Same(forms.theirs[field], forms.mine[field])) contested.push_back(field);
  }
  return contested;
}

void TakeTheirs(const RecordForms& forms) {
  for (const Places& group : Groups(forms.mine)) {
    if (!Differ(forms.loaded, forms.theirs, group)) continue;
    for (const size_t field : group) Take(forms.mine[field], forms.theirs[field]);
  }
}

std::vector<std::string> TextsOf(const RecordFields& fields, const Places& places) {
  std::vector<std::string> texts;
  for (const size_t field : places) texts.push_back(fields[field].name + TextAt(fields[field]));
  return texts;
}

// On one line.
std::string Cut(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  const std::string cut = FirstCharacters(text, kMostCharacters);
  return cut == text ? text : cut + "...";
}

std::string LinesOf(Station& station, const RecordForms& forms, const Places& contested,
                    const RecordMerge::WordOf& wordOf) {
  std::string lines;
  for (size_t line = 0; line < contested.size() && line < kMostLines; ++line) {
    const size_t field = contested[line];
    lines += "\r\n" + RecordClashLine(station, wordOf(forms.mine[field].name),
                                      TextAt(forms.theirs[field]), TextAt(forms.mine[field]));
  }
  return contested.size() > kMostLines ? lines + "\r\n..." : lines;
}

// Keep mine is yes, take theirs no, look ok.
Answer AskWhose(Station& station, const RecordForms& forms, const Places& contested,
                const RecordMerge::WordOf& wordOf) {
  const std::string text = RecordClashText(station);
  MessageBoxes& boxes = station.platform.messages;
  const Answer answer = boxes.Show("Alerte", text, Buttons::kMineTheirsLook);
  if (answer != Answer::kOk) return answer;
  return boxes.Show("Alerte", text + "\r\n" + LinesOf(station, forms, contested, wordOf),
                    Buttons::kMineTheirs);
}

}  // namespace

std::string RecordClashText(Station& station) {
  return InLanguage(kClash, Langue(station));
}

std::string RecordClashLine(Station& station, const std::string& field, const std::string& theirs,
                            const std::string& mine) {
  const int langue = Langue(station);
  return field + " : " + InLanguage(kTheirs, langue) + " \"" + Cut(theirs) + "\", " +
         InLanguage(kMine, langue) + " \"" + Cut(mine) + "\"";
}

bool TakeOverFields(const RecordForms& forms) {
  bool changed = false;
  for (const Places& group : Groups(forms.mine)) {
    if (Differ(forms.loaded, forms.mine, group)) {
      if (Differ(forms.theirs, forms.mine, group)) continue;
      // He has typed what they stored.
      changed = true;
      for (const size_t field : group) Take(forms.loaded[field], forms.theirs[field]);
      continue;
    }
    if (!Differ(forms.loaded, forms.theirs, group)) continue;
    changed = true;
    for (const size_t field : group) {
      Take(forms.loaded[field], forms.theirs[field]);
      Take(forms.mine[field], forms.theirs[field]);
    }
  }
  return changed;
}

RecordMerge::Step RecordMerge::Next(Station& station, const RecordForms& forms,
                                    const WordOf& wordOf) {
  const Places contested = Contested(forms);
  const std::vector<std::string> texts = TextsOf(forms.theirs, contested);
  if (contested.empty() || (kept_ != Kept::kNobodys && texts == askedOf_)) {
    if (kept_ == Kept::kTheirs) TakeTheirs(forms);
    TakeOverFields(forms);
    return Step::kStore;
  }
  const Answer answer = AskWhose(station, forms, contested, wordOf);
  if (answer == Answer::kCancel) return Step::kLeave;
  kept_ = answer == Answer::kYes ? Kept::kMine : Kept::kTheirs;
  askedOf_ = texts;
  return Step::kReadAgain;
}

}  // namespace zemo
