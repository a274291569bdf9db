#include "library/SelectedCards.h"

#include <exception>

#include "library/CardAdding.h"
#include "library/CardTabs.h"
#include "library/LibraryEditor.h"
#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "platform/EventLoop.h"
#include "station/TextForms.h"
#include "station/WaitPointer.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

constexpr const char* kGiveRoutine = "MnuGive";

bool Has(const SharedFields& fields, SharedField field) {
  return fields[static_cast<size_t>(field)];
}

void PutFields(const LibraryEditor& editor, const SharedFields& fields, Recordset& row) {
  const MusicCard& card = editor.music;
  const auto text = [&](SharedField field, const char* column, const std::string& shown) {
    if (Has(fields, field)) row.Set(column, shown);
  };
  const auto number = [&](SharedField field, const char* column, const std::string& shown) {
    if (Has(fields, field)) row.Set(column, int64_t{ValInt(shown)});
  };
  text(SharedField::kGenre, "GENRE", card.ChGenre);
  text(SharedField::kVariety, "VARIETE", card.ChVariete);
  number(SharedField::kPlaysADay, "NBPASSJOUR", card.ChNbPassJour);
  number(SharedField::kMinutes, "ECARTMINUTES", card.ChEcartMinutes);
  number(SharedField::kDays, "ECARTJOURS", card.ChEcartJours);
  number(SharedField::kArtistGap, "ECARTARTISTE", card.ChEcartArtiste);
  if (Has(fields, SharedField::kHours)) editor.masks.PutInto(row);
  text(SharedField::kDates, "MMJJDebut", card.LblMMJJDebut);
  text(SharedField::kDates, "MMJJFin", card.LblMMJJFin);
}

// The row is stored whatever becomes of its exchange file.
void WriteExchangeFile(Station& station, const Recordset& row) {
  try {
    MusicCard card;
    HourMasks masks;
    TakeMusicCard(row, card, masks);
    WriteMus(station, card, masks);
  } catch (const std::exception&) {
    LogCurrentException(station, kGiveRoutine);
  }
}

// Of the card shown what was stored here is no change from elsewhere, and no longer one of the
// operator's. The plays stay as they were shown.
void TakeAsLoaded(LibraryEditor& editor, const Recordset& row) {
  const auto plays = editor.loadedMusic.ChDiffusion;
  TakeMusicCard(row, editor.loadedMusic, editor.loadedMasks);
  editor.loadedMusic.ChDiffusion = plays;
}

bool GiveTo(Station& station, LibraryEditor& editor, int32_t code, const SharedFields& fields) {
  const auto table = OpenCards(station, LibraryTab::kMusic);
  if (!SeekCode(*table, code)) return false;
  table->Edit();
  PutFields(editor, fields, *table);
  table->Update();
  if (editor.TabStrip1 == LibraryTab::kMusic && code == editor.Code()) TakeAsLoaded(editor, *table);
  WriteExchangeFile(station, *table);
  return true;
}

}  // namespace

std::vector<int32_t> Library::SelectedCards(const LibraryEditor& editor) {
  std::vector<int32_t> codes;
  for (size_t row = 0; row < editor.PLDisco.Count(); ++row)
    if (editor.PLDisco.selected[row]) codes.push_back(editor.PLDisco.Code(row));
  return codes;
}

SharedFields Library::ChangedFields(Station& station, const LibraryEditor& editor) {
  SharedFields changed{};
  const auto table = OpenCards(station, LibraryTab::kMusic);
  if (!SeekCode(*table, editor.Code())) return changed;
  MusicCard stored;
  HourMasks hours;
  TakeMusicCard(*table, stored, hours);
  const MusicCard& card = editor.music;
  return {card.ChGenre != stored.ChGenre,
          card.ChVariete != stored.ChVariete,
          card.ChNbPassJour != stored.ChNbPassJour,
          card.ChEcartMinutes != stored.ChEcartMinutes,
          card.ChEcartJours != stored.ChEcartJours,
          card.ChEcartArtiste != stored.ChEcartArtiste,
          !editor.masks.SameHours(hours),
          card.LblMMJJDebut != stored.LblMMJJDebut || card.LblMMJJFin != stored.LblMMJJFin};
}

size_t Library::GiveFields(Station& station, LibraryEditor& editor,
                           const std::vector<int32_t>& codes, const SharedFields& fields) {
  size_t stored = 0;
  HandleControl(station, kGiveRoutine, [&] {
    const LibraryWork work(editor);
    const WaitPointer wait(station.notices);
    try {
      for (size_t i = 0; i < codes.size(); ++i) {
        if (i > 0) station.platform.loop.Yield();
        if (!GiveTo(station, editor, codes[i], fields)) continue;
        ++stored;
        editor.stored = {static_cast<int32_t>(stored), codes[i]};
      }
    } catch (const std::exception& error) {
      LogCurrentException(station, kGiveRoutine);
      ShowLibraryAlert(station, error.what());
    }
  });
  return stored;
}

}  // namespace zemo
