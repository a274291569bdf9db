#include "library/CardTabs.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "library/CardAdding.h"
#include "library/HotKeys.h"
#include "library/LibraryMessages.h"
#include "library/LibraryScreen.h"
#include "platform/SoundLengths.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

// By OptionTri.
constexpr std::array<std::string_view, 6> kMusicOrders = {
    "SELECT CODE FROM Discotheque ORDER BY CODE",
    "SELECT CODE FROM Discotheque ORDER BY AUTEUR, CODE",
    "SELECT CODE FROM Discotheque ORDER BY TITRE, CODE",
    "SELECT CODE FROM Discotheque ORDER BY GENRE, CODE",
    "SELECT CODE FROM Discotheque ORDER BY VARIETE, CODE",
    "SELECT CODE FROM Discotheque ORDER BY LABEL, CODE",
};

std::string_view OrderQuery(LibraryTab tab, int32_t option) {
  switch (tab) {
    case LibraryTab::kJingles:
      return "SELECT CODE FROM DiscothequeJingle ORDER BY CODE";
    case LibraryTab::kShortElements:
      return "SELECT CODE FROM DiscothequeVirgule ORDER BY CODE";
    default:
      return kMusicOrders[static_cast<size_t>(option)];
  }
}

std::string_view FilesQuery(LibraryTab tab) {
  switch (tab) {
    case LibraryTab::kJingles:
      return "SELECT FILENAME FROM DiscothequeJingle";
    case LibraryTab::kShortElements:
      return "SELECT FILENAME FROM DiscothequeVirgule";
    default:
      return "SELECT FILENAME FROM Discotheque";
  }
}

int64_t PlaceOf(const std::vector<int32_t>& codes, int32_t code) {
  const auto found = std::find(codes.begin(), codes.end(), code);
  return found == codes.end() ? 0 : found - codes.begin() + 1;
}

bool ToldAsKnown(Station& station, const std::string& file) {
  if (!MusicCardOfFile(station, file)) return false;
  ShowLibraryAlert(station, file + "\r\n" + LibraryText::kKnown);
  return true;
}

int32_t AddFromScreen(Station& station, const LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      return AddJingle(station, editor.jingle, editor.masks);
    case LibraryTab::kShortElements:
      return AddShortElement(station, editor.other);
    default:
      return AddMusicCard(station, editor.music, editor.masks);
  }
}

void WriteExchangeFile(Station& station, const LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      return WriteJin(station, editor.jingle, editor.masks);
    case LibraryTab::kShortElements:
      return WriteTx2(station, editor.other);
    default:
      return WriteMus(station, editor.music, editor.masks);
  }
}

// What the waveform shows of the card that was shown stays for the same one, but for marks of an
// extract that were not stored.
void ShowSound(Station& station, LibraryEditor& editor) {
  CardSound& sound = editor.sound;
  if (sound.code != editor.Code() || sound.file != Trim(editor.music.ChFileName)) {
    Library::StopListening(station, editor);
    return Library::ForgetSound(editor);
  }
  sound.markers.marks.extractBeginMs = sound.storedMarks.startMs;
  sound.markers.marks.extractEndMs = sound.storedMarks.endMs;
}

void KeepShownAsLoaded(LibraryEditor& editor) {
  editor.loadedMusic = editor.music;
  editor.loadedJingle = editor.jingle;
  editor.loadedOther = editor.other;
  editor.loadedMasks = editor.masks;
  editor.stored = {};
  editor.gone = false;
}

const char* ReplaceRoutine(LibraryTab tab) {
  switch (tab) {
    case LibraryTab::kJingles:
      return "ReplaceJingle";
    case LibraryTab::kShortElements:
      return "ReplaceVirgule";
    default:
      return "ReplaceChampsMusique";
  }
}

// The row is stored whatever becomes of the marks file.
void StoreExtractOrLog(Station& station, LibraryEditor& editor) {
  try {
    Library::StoreExtract(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, ReplaceRoutine(LibraryTab::kMusic));
  }
}

}  // namespace

int32_t LibraryEditor::Code() const {
  switch (TabStrip1) {
    case LibraryTab::kJingles:
      return jingle.code;
    case LibraryTab::kShortElements:
      return other.code;
    default:
      return ValInt(music.lblNumero);
  }
}

void LibraryEditor::Empty() {
  LibraryEditor empty;
  empty.working = working;
  for (const auto list :
       {&LibraryEditor::PLDisco, &LibraryEditor::PLJingles, &LibraryEditor::PLAutre})
    (empty.*list).generation = (this->*list).generation + 1;
  *this = std::move(empty);
}

std::string_view TableOf(LibraryTab tab) {
  switch (tab) {
    case LibraryTab::kJingles:
      return "DiscothequeJingle";
    case LibraryTab::kShortElements:
      return "DiscothequeVirgule";
    default:
      return "Discotheque";
  }
}

std::unique_ptr<Recordset> OpenCards(Station& station, LibraryTab tab) {
  return station.base.Table(TableOf(tab));
}

void ShowLinkedCard(Station& station, JingleCard& card) {
  card.LblArtisteAssocie = card.artist;
  if (card.CodeAssocie <= 0) return;
  const auto music = station.base.Table("Discotheque");
  if (SeekCode(*music, card.CodeAssocie))
    card.LblArtisteAssocie = music->Text("AUTEUR") + " - " + music->Text("TITRE");
}

std::vector<int32_t> ReadCodes(Station& station, LibraryTab tab, int32_t option) {
  std::vector<int32_t> codes;
  station.base.Db().ReadRows(OrderQuery(tab, option), [&](const RowView& row) {
    codes.push_back(static_cast<int32_t>(row.Int(0)));
  });
  return codes;
}

const std::vector<int32_t>& CodesInOrder(Station& station, LibraryEditor& editor) {
  CardOrder& order = editor.order;
  const int64_t counter = station.base.Db().ChangeCounter();
  if (order.changeCounter == counter && order.tab == editor.TabStrip1 &&
      order.option == editor.OptionTri)
    return order.codes;
  order = {ReadCodes(station, editor.TabStrip1, editor.OptionTri), counter, editor.TabStrip1,
           editor.OptionTri};
  return order.codes;
}

std::vector<std::string> FilesOfCards(Station& station, const LibraryEditor& editor) {
  std::vector<std::string> files;
  station.base.Db().ReadRows(FilesQuery(editor.TabStrip1),
                             [&](const RowView& row) { files.emplace_back(row.Text(0)); });
  return files;
}

void ShowCard(Station& station, LibraryEditor& editor, const Recordset& row) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      TakeJingle(row, editor.jingle, editor.masks);
      ShowLinkedCard(station, editor.jingle);
      break;
    case LibraryTab::kShortElements:
      TakeShortElement(row, editor.other);
      break;
    default:
      TakeMusicCard(row, editor.music, editor.masks);
      ShowSound(station, editor);
  }
  KeepShownAsLoaded(editor);
  editor.ReplacerEnabled = editor.MnuDeleteEnabled = true;
}

bool ShowCode(Station& station, LibraryEditor& editor, int32_t code) {
  const auto table = OpenCards(station, editor.TabStrip1);
  if (!SeekCode(*table, code)) return false;
  ShowCard(station, editor, *table);
  ShowPosition(station, editor);
  return true;
}

void ShowPosition(Station& station, LibraryEditor& editor) {
  const std::vector<int32_t>& codes = CodesInOrder(station, editor);
  const auto count = static_cast<int32_t>(codes.size());
  const auto place = static_cast<int32_t>(PlaceOf(codes, editor.Code()));
  editor.Slider1Max = editor.cardCount[editor.Tab()] = count;
  editor.Position() = place > 0 ? place : std::min(editor.Position(), count);
  editor.Slider1 = editor.Position();
}

void ShowPlace(Station& station, LibraryEditor& editor, int64_t position) {
  const std::vector<int32_t>& codes = CodesInOrder(station, editor);
  if (codes.empty()) {
    EmptyTab(editor);
    editor.ReplacerEnabled = editor.MnuDeleteEnabled = false;
    editor.Position() = 0;
    return ShowPosition(station, editor);
  }
  const int64_t place = std::clamp<int64_t>(position, 1, static_cast<int64_t>(codes.size()));
  // One that is deleted this very moment leaves the card before on the screen.
  ShowCode(station, editor, codes[static_cast<size_t>(place - 1)]);
}

void EmptyTab(LibraryEditor& editor) {
  editor.masks.AllowAll();
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      editor.jingle = JingleCard();
      break;
    case LibraryTab::kShortElements:
      editor.other = ShortElementCard();
      break;
    default:
      Library::ForgetSound(editor);
      editor.music = MusicCard();
      editor.music.ChNbPassJour = "1";
  }
  KeepShownAsLoaded(editor);
}

bool AddShownCard(Station& station, LibraryEditor& editor) {
  const bool music = editor.TabStrip1 == LibraryTab::kMusic;
  if (music && ToldAsKnown(station, editor.music.ChFileName)) return false;
  const int32_t code = AddFromScreen(station, editor);
  if (music) StoreExtractOrLog(station, editor);
  ShowCode(station, editor, code);
  editor.stored = {1, code};
  return true;
}

int32_t AddFileOfLot(Station& station, LibraryTab tab, const std::string& file) {
  HourMasks masks;
  switch (tab) {
    case LibraryTab::kJingles: {
      JingleCard card;
      FillJingle(station, file, station.platform.lengths.LengthMs(file), card, masks);
      return AddJingle(station, card, masks);
    }
    case LibraryTab::kShortElements: {
      ShortElementCard card;
      FillShortElement(station, file, station.platform.lengths.LengthMs(file), card);
      return AddShortElement(station, card);
    }
    default: {
      if (ToldAsKnown(station, file)) return 0;
      MusicCard card;
      FillMusicCard(station, file, station.platform.lengths.LengthMs(file), card, masks);
      return AddMusicCard(station, card, masks);
    }
  }
}

void StoreShownCard(Station& station, LibraryEditor& editor, Recordset& row) {
  row.Edit();
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      PutJingle(editor.jingle, editor.masks, row);
      break;
    case LibraryTab::kShortElements:
      PutShortElement(editor.other, row);
      break;
    default:
      PutMusicCard(editor.music, editor.masks, row);
      PutPlays(editor.music, &editor.loadedMusic, row);
  }
  row.Update();
  if (editor.TabStrip1 == LibraryTab::kShortElements) LoadHotKeys(station);
  if (editor.TabStrip1 == LibraryTab::kMusic) StoreExtractOrLog(station, editor);
  ShowCard(station, editor, row);
  ShowPosition(station, editor);
  editor.stored = {1, editor.Code()};
  try {
    WriteExchangeFile(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, ReplaceRoutine(editor.TabStrip1));
  }
}

bool Library::IsChanged(const LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kHourPips:
      return false;
    case LibraryTab::kShortElements:
      return editor.other != editor.loadedOther;
    case LibraryTab::kJingles:
      return editor.jingle != editor.loadedJingle || !editor.masks.SameHours(editor.loadedMasks);
    case LibraryTab::kMusic:
      return editor.music != editor.loadedMusic || !editor.masks.SameHours(editor.loadedMasks) ||
             ExtractIsChanged(editor);
  }
  return false;
}

}  // namespace zemo
