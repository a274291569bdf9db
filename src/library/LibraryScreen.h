// What the controls of the library screen do: its frame, which all card tabs share, and the
// gestures of each tab. None of the routines throws: faults are logged under the control's name.
// Those that go over many cards yield after each. Thread: the logic's.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/LibraryEditor.h"

namespace zemo {

class SpreadsheetWriter;
struct Sheet;
struct Station;

namespace Library {

// --- opening and closing ---
// The menu entry Discotheque; nothing while the menus are locked. Opens on the first music card in
// the order of CODE.
void Discotheque_Click(Station& station, LibraryEditor& editor);
// The same, on a card of the music. False when there is no such card.
bool OpenOnCard(Station& station, LibraryEditor& editor, int32_t code);
void Form_Unload(Station& station, LibraryEditor& editor);  // saves the hour pips

// --- frame ---
void TabStrip1_Click(Station& station, LibraryEditor& editor, LibraryTab tab);
void BtnPlus_Click(Station& station, LibraryEditor& editor);
void BtnMoins_Click(Station& station, LibraryEditor& editor);
void Slider1_Change(Station& station, LibraryEditor& editor, int32_t value);
// Shows the first card of the new order.
void OptionTri_Click(Station& station, LibraryEditor& editor, int32_t option);
void Nouveau_Click(Station& station, LibraryEditor& editor);
void BtnClear_Click(LibraryEditor& editor);
void Ajouter_Click(Station& station, LibraryEditor& editor);
void Replacer_Click(Station& station, LibraryEditor& editor);
void MnuDelete_Click(Station& station, LibraryEditor& editor);
void JourSem_Click(LibraryEditor& editor, int32_t day);  // 1 for Monday
void BtnCopy_Click(Station& station, const LibraryEditor& editor);
void BtnColler_Click(Station& station, LibraryEditor& editor);
// A day from the calendar into the window's label of that mode: 7 and 8 the music's, 9 and 10 the
// jingle's.
void PickDay(LibraryEditor& editor, int mode, int month, int day);
std::string InfoText(const LibraryEditor& editor, LibraryTab tab);  // LblInfoMus and its like
// A control of the card shown holds something that is not stored. The hour pips store themselves.
bool IsChanged(const LibraryEditor& editor);
// Cards of that kind came in beside the window: the slider goes to their number, and where there
// was none the first of them is shown.
void ShowImported(Station& station, LibraryEditor& editor, LibraryTab kind);
// Others have stored something: the card shown as it is stored now, but for what the operator has
// changed, and the slider on the number of cards. Throws StoreError, unlike the others.
void TakeOver(Station& station, LibraryEditor& editor);
bool HourBoxesOn(const LibraryEditor& editor);  // BtnCopy and BtnColler

// --- picking files: CmdFileMusique, CmdFileJingle, CmdFileVirgules by the tab ---
// The file on which the selector is to open; empty when there is none.
std::string FileForSelector(Station& station, const LibraryEditor& editor);
// What the selector gave, as stored paths; none changes nothing. On the hour pips the first goes
// into the file cell of the selected hour.
void TakeFiles(Station& station, LibraryEditor& editor, const std::vector<std::string>& files);

// --- lists with free entry; the text stands in the card's control ---
enum class FreeList { kGenre, kLabel, kCD };
void FreeEntry_Change(Station& station, LibraryEditor& editor, FreeList list,
                      const std::string& text);
void FreeEntry_KeyEnter(Station& station, LibraryEditor& editor, FreeList list);
void FreeEntry_KeyDelete(Station& station, LibraryEditor& editor, FreeList list);

// --- the music's menu ---
// All music cards with an artist, by artist. Yields. Throws StoreError.
CardList CardsByArtist(Station& station, LibraryEditor& editor);
void MnuListe_Click(Station& station, LibraryEditor& editor);
// `rows` from 0: these are selected, and the card of the last of them is shown.
void PLDisco_Click(Station& station, LibraryEditor& editor, const std::vector<size_t>& rows);
// The row of the card shown, as it is stored now, in its place on PLDisco.
void RenewRow(Station& station, LibraryEditor& editor);
// The sheet of the whole library. Throws StoreError.
Sheet ExportedLibrary(Station& station, LibraryEditor& editor);
// `path` is what the dialogue gave, as SheetPath takes it.
void MnuExporter_Click(Station& station, LibraryEditor& editor, const std::string& path,
                       SpreadsheetWriter& writer);
void MnuTxt_Click(Station& station, LibraryEditor& editor);
void MnuInitDate_Click(Station& station, LibraryEditor& editor);

// --- jingles and short elements ---
void CodeAssocie_Change(Station& station, LibraryEditor& editor, int32_t code);
// The artist to whom a jingle without a linked card belongs.
void LblArtisteAssocie_Change(Station& station, LibraryEditor& editor, const std::string& artist);
inline constexpr int kJingleListColumns = 7, kShortElementListColumns = 5;
void BtnRechJingles_Click(Station& station, LibraryEditor& editor);
void BtnFindAutre_Click(Station& station, LibraryEditor& editor);
void PLJingles_Click(Station& station, LibraryEditor& editor, size_t row);
void PLAutre_Click(Station& station, LibraryEditor& editor, size_t row);

}  // namespace Library

std::string SheetPath(const std::string& path);  // with ".xlsx" behind one without it

}  // namespace zemo
