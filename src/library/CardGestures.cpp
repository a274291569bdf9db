// What the operator does on a card of the library screen: its hours, its window, its lists, its
// sound files.
#include <algorithm>

#include "library/CardAdding.h"
#include "library/CardTabs.h"
#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "library/LibraryScreen.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/SoundLengths.h"
#include "settings/GenreList.h"
#include "settings/LineLists.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

constexpr int kMusicBegin = 7, kMusicEnd = 8, kJingleBegin = 9, kJingleEnd = 10;
constexpr int kGenreCharacters = 22, kLabelCharacters = 40;

struct FreeField {
  std::string& text;                // the card's
  std::vector<std::string>& offer;  // what the list holds
  int most;                         // characters
  const char* control;
};

FreeField FieldOf(LibraryEditor& editor, Library::FreeList list) {
  switch (list) {
    case Library::FreeList::kLabel:
      return {editor.music.ChLabel, editor.ChLabelList, kLabelCharacters, "ChLabel"};
    case Library::FreeList::kCD:
      return {editor.music.ChCD, editor.ChCDList, kLabelCharacters, "ChCD"};
    default:
      return {editor.music.ChGenre, editor.ChGenreList, kGenreCharacters, "ChGenre"};
  }
}

void SaveList(Station& station, LibraryEditor& editor, Library::FreeList list) {
  if (list == Library::FreeList::kGenre) LoadSaveGenres(station, "Save", editor.ChGenreList);
  if (list == Library::FreeList::kLabel) LoadSaveLabels(station, "Save", editor.ChLabelList);
  if (list == Library::FreeList::kCD) LoadSaveCD(station, "Save", editor.ChCDList);
}

std::vector<std::string>::iterator Find(std::vector<std::string>& list, const std::string& entry) {
  return std::find_if(list.begin(), list.end(), [&](const std::string& listed) {
    return UpperLatin(listed) == UpperLatin(entry);
  });
}

void TakeFile(Station& station, LibraryEditor& editor, const std::string& file) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      FillJingle(station, file, station.platform.lengths.LengthMs(file), editor.jingle,
                 editor.masks);
      break;
    case LibraryTab::kShortElements:
      FillShortElement(station, file, station.platform.lengths.LengthMs(file), editor.other);
      break;
    case LibraryTab::kHourPips:
      editor.GTopH[static_cast<size_t>(editor.pipHour)].file = file;
      break;
    default:
      FillMusicCard(station, file, station.platform.lengths.LengthMs(file), editor.music,
                    editor.masks);
  }
}

const std::string& FileShown(const LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      return editor.jingle.ChFileJingle;
    case LibraryTab::kShortElements:
      return editor.other.ChFileVirgule;
    case LibraryTab::kHourPips:
      return editor.GTopH[static_cast<size_t>(editor.pipHour)].file;
    default:
      return editor.music.ChFileName;
  }
}

}  // namespace

void Library::BtnClear_Click(LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles: {
      JingleCard cleared;
      cleared.code = editor.jingle.code;
      editor.jingle = cleared;
      break;
    }
    case LibraryTab::kShortElements: {
      ShortElementCard cleared;
      cleared.code = editor.other.code;
      editor.other = cleared;
      break;
    }
    case LibraryTab::kHourPips:
      break;
    default: {
      MusicCard cleared;
      cleared.lblNumero = editor.music.lblNumero;
      editor.music = cleared;
    }
  }
}

void Library::JourSem_Click(LibraryEditor& editor, int32_t day) {
  editor.masks.Choose(day);
}

bool Library::HourBoxesOn(const LibraryEditor& editor) {
  return !editor.PLJingles.visible;
}

void Library::BtnCopy_Click(Station& station, const LibraryEditor& editor) {
  if (HourBoxesOn(editor)) station.platform.clipboard.SetText(editor.masks.Copied());
}

void Library::BtnColler_Click(Station& station, LibraryEditor& editor) {
  if (HourBoxesOn(editor)) editor.masks.Paste(station.platform.clipboard.Text());
}

void Library::PickDay(LibraryEditor& editor, int mode, int month, int day) {
  const std::string picked = TwoDigits(month) + TwoDigits(day);
  if (mode == kMusicBegin) editor.music.LblMMJJDebut = picked;
  if (mode == kMusicEnd) editor.music.LblMMJJFin = picked;
  if (mode == kJingleBegin) editor.jingle.LblMMJJDebutJ = picked;
  if (mode == kJingleEnd) editor.jingle.LblMMJJFinJ = picked;
}

std::string Library::FileForSelector(Station& station, const LibraryEditor& editor) {
  const std::string& file = FileShown(editor);
  return station.platform.soundFiles.Exists(file) ? file : std::string();
}

void Library::TakeFiles(Station& station, LibraryEditor& editor,
                        const std::vector<std::string>& files) {
  HandleControl(station, "CmdFile", [&] {
    if (files.empty()) return;
    if (!editor.OnCards()) return TakeFile(station, editor, files.front());
    editor.ListLot = files;
    editor.lotMode = files.size() > 1;
    if (!editor.lotMode) return TakeFile(station, editor, files.front());
    ShowLibraryAlert(station, editor.TabStrip1 == LibraryTab::kMusic
                                  ? LibraryText::FilesPicked(station, files.size())
                                  : LibraryText::ShortFilesPicked(files.size()));
  });
}

void Library::FreeEntry_Change(Station& station, LibraryEditor& editor, FreeList list,
                               const std::string& text) {
  const FreeField field = FieldOf(editor, list);
  HandleControl(station, field.control, [&] {
    field.text = FirstCharacters(text, field.most);
    if (field.text != text) ShowLibraryAlert(station, LibraryText::kTooLong);
  });
}

void Library::FreeEntry_KeyEnter(Station& station, LibraryEditor& editor, FreeList list) {
  const FreeField field = FieldOf(editor, list);
  HandleControl(station, field.control, [&] {
    if (Trim(field.text).empty() || Find(field.offer, field.text) != field.offer.end()) return;
    field.offer.push_back(UpperLatin(field.text));
    SaveList(station, editor, list);
  });
}

void Library::FreeEntry_KeyDelete(Station& station, LibraryEditor& editor, FreeList list) {
  const FreeField field = FieldOf(editor, list);
  HandleControl(station, field.control, [&] {
    const std::string question = LibraryText::kDeleteEntry + field.text;
    if (station.platform.messages.Show("Alerte", question, Buttons::kOkCancel) != Answer::kOk)
      return;
    const auto entry = Find(field.offer, field.text);
    if (entry == field.offer.end()) return;
    field.offer.erase(entry);
    SaveList(station, editor, list);
  });
}

void Library::LblArtisteAssocie_Change(Station& station, LibraryEditor& editor,
                                       const std::string& artist) {
  HandleControl(station, "LblArtisteAssocie", [&] {
    editor.jingle.artist = artist;
    ShowLinkedCard(station, editor.jingle);
  });
}

void Library::CodeAssocie_Change(Station& station, LibraryEditor& editor, int32_t code) {
  HandleControl(station, "CodeAssocie", [&] {
    editor.jingle.CodeAssocie = code;
    ShowLinkedCard(station, editor.jingle);
  });
}

}  // namespace zemo
