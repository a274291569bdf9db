#include "library/CardMerge.h"

#include <array>
#include <string>
#include <utility>

#include "library/CardTabs.h"
#include "library/LibraryTexts.h"
#include "station/Station.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

constexpr int kDates = 1, kLink = 2;  // groups of fields
enum class Plays { kCount, kDoNot };

// What a tab shows of a card, by which fields can be pointed at.
struct ShownCard {
  MusicCard music;
  JingleCard jingle;
  ShortElementCard other;
  std::array<std::string, HourMasks::kDays> hours;
};

void TakeHours(ShownCard& card, const HourMasks& masks) {
  for (int day = 1; day <= HourMasks::kDays; ++day)
    card.hours[static_cast<size_t>(day - 1)] = masks.Mask(day);
}

ShownCard Mine(const LibraryEditor& editor) {
  ShownCard card{editor.music, editor.jingle, editor.other, {}};
  TakeHours(card, editor.masks);
  return card;
}

ShownCard Loaded(const LibraryEditor& editor) {
  ShownCard card{editor.loadedMusic, editor.loadedJingle, editor.loadedOther, {}};
  TakeHours(card, editor.loadedMasks);
  return card;
}

ShownCard Theirs(LibraryTab tab, const Recordset& row) {
  ShownCard card;
  HourMasks masks;
  switch (tab) {
    case LibraryTab::kJingles:
      TakeJingle(row, card.jingle, masks);
      break;
    case LibraryTab::kShortElements:
      TakeShortElement(row, card.other);
      break;
    default:
      TakeMusicCard(row, card.music, masks);
  }
  TakeHours(card, masks);
  return card;
}

void AddHours(RecordFields& fields, ShownCard& card) {
  for (std::string& day : card.hours) fields.push_back({"FrameAutorisation", &day});
}

RecordFields MusicFields(ShownCard& card, Plays plays) {
  MusicCard& of = card.music;
  RecordFields fields = {{"CmdFileMusique", &of.ChFileName},
                         {"Longeur", &of.Longeur},
                         {"ChAuteur", &of.ChAuteur},
                         {"ChTitre", &of.ChTitre},
                         {"ChGenre", &of.ChGenre},
                         {"ChVariete", &of.ChVariete},
                         {"ChAnne", &of.ChAnne},
                         {"ChIntro", &of.ChIntro},
                         {"ChNbPassJour", &of.ChNbPassJour},
                         {"ChEcartMinutes", &of.ChEcartMinutes},
                         {"ChEcartJours", &of.ChEcartJours},
                         {"ChEcartArtiste", &of.ChEcartArtiste},
                         {"ChCommentaire", &of.ChCommentaire},
                         {"PointSortie", &of.PointSortie},
                         {"ChLabel", &of.ChLabel},
                         {"ChCD", &of.ChCD},
                         {"ChAuteurCompositeur", &of.ChAuteurCompositeur},
                         {"ChRefAlbum", &of.ChRefAlbum},
                         {"LblMMJJDebut", &of.LblMMJJDebut, kDates},
                         {"LblMMJJFin", &of.LblMMJJFin, kDates}};
  if (plays == Plays::kCount)
    for (std::string& play : of.ChDiffusion) fields.push_back({"ChDiffusion", &play});
  AddHours(fields, card);
  return fields;
}

RecordFields JingleFields(ShownCard& card, Plays plays) {
  JingleCard& of = card.jingle;
  RecordFields fields = {
      {"CmdFileJingle", &of.ChFileJingle},      {"Longeur", &of.longeurJingle},
      {"ChLibJingle", &of.ChLibJingle},         {"CheckSurimpression", &of.CheckSurimpression},
      {"CodeAssocie", &of.CodeAssocie, kLink},  {"LblArtisteAssocie", &of.artist, kLink},
      {"GenreAssocie", &of.GenreAssocie},       {"EndofTitre", &of.EndofTitre},
      {"PointSortie", &of.SliderPSJ},           {"ChAuteurCompositeur", &of.ChAuteurJingle},
      {"JingleExtraitYN", &of.JingleExtraitYN}, {"LblMMJJDebut", &of.LblMMJJDebutJ, kDates},
      {"LblMMJJFin", &of.LblMMJJFinJ, kDates}};
  if (plays == Plays::kCount) fields.push_back({"LblDiff", &of.LblDiff});
  AddHours(fields, card);
  return fields;
}

RecordFields ShortElementFields(ShownCard& card) {
  ShortElementCard& of = card.other;
  return {{"CmdFileVirgules", &of.ChFileVirgule},     {"Longeur", &of.LongeurVirgule},
          {"ChLibJingle", &of.ChLibVirgule},          {"PointSortie", &of.PSAutre},
          {"CheckJingleRacro", &of.CheckJingleRacro}, {"Tch", &of.Tch}};
}

RecordFields FieldsOf(LibraryTab tab, ShownCard& card, Plays plays) {
  switch (tab) {
    case LibraryTab::kJingles:
      return JingleFields(card, plays);
    case LibraryTab::kShortElements:
      return ShortElementFields(card);
    default:
      return MusicFields(card, plays);
  }
}

// The day that is chosen stays so.
void PutHours(const ShownCard& card, HourMasks& masks) {
  for (int day = 1; day <= HourMasks::kDays; ++day) {
    const std::string& hours = card.hours[static_cast<size_t>(day - 1)];
    if (masks.Mask(day) != hours) masks.Take(day, hours);
  }
}

void PutBack(Station& station, LibraryEditor& editor, ShownCard mine, ShownCard loaded) {
  PutHours(mine, editor.masks);
  PutHours(loaded, editor.loadedMasks);
  editor.music = std::move(mine.music);
  editor.jingle = std::move(mine.jingle);
  editor.other = std::move(mine.other);
  editor.loadedMusic = std::move(loaded.music);
  editor.loadedJingle = std::move(loaded.jingle);
  editor.loadedOther = std::move(loaded.other);
  if (editor.TabStrip1 != LibraryTab::kJingles) return;
  ShowLinkedCard(station, editor.jingle);
  ShowLinkedCard(station, editor.loadedJingle);
}

// As the screen has it; a button's without its dots.
std::string WordOf(Station& station, const char* field) {
  const auto langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  for (const std::string& name : {std::string("For.") + field, std::string(field)})
    if (const std::string word = Caption(LibraryCaptions(), name, langue); !word.empty())
      return word.substr(0, word.find_last_not_of('.') + 1);
  return field;
}

}  // namespace

RecordMerge::Step MergeShownCard(Station& station, LibraryEditor& editor, const Recordset& row,
                                 RecordMerge& merge) {
  const LibraryTab tab = editor.TabStrip1;
  ShownCard loaded = Loaded(editor), theirs = Theirs(tab, row), mine = Mine(editor);
  const auto fields = [tab](ShownCard& card) { return FieldsOf(tab, card, Plays::kDoNot); };
  const auto step = merge.Next(station, {fields(loaded), fields(theirs), fields(mine)},
                               [&](const char* field) { return WordOf(station, field); });
  if (step == RecordMerge::Step::kStore)
    PutBack(station, editor, std::move(mine), std::move(loaded));
  return step;
}

void TakeOverShownCard(Station& station, LibraryEditor& editor) {
  if (editor.Code() <= 0) return;
  const LibraryTab tab = editor.TabStrip1;
  const auto row = OpenCards(station, tab);
  if (!SeekCode(*row, editor.Code())) {
    editor.gone = true;
    editor.ReplacerEnabled = editor.MnuDeleteEnabled = false;
    return;
  }
  ShownCard loaded = Loaded(editor), theirs = Theirs(tab, *row), mine = Mine(editor);
  const auto fields = [tab](ShownCard& card) { return FieldsOf(tab, card, Plays::kCount); };
  if (TakeOverFields({fields(loaded), fields(theirs), fields(mine)}))
    PutBack(station, editor, std::move(mine), std::move(loaded));
}

}  // namespace zemo
