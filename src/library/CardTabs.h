// The three tabs of cards as one: table, order, and what goes between a row and the tab's controls.
// For the routines of the library screen. All throw StoreError. Thread: the logic's.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "library/LibraryEditor.h"
#include "store/Recordset.h"

namespace zemo {

struct Station;

std::string_view TableOf(LibraryTab tab);
std::unique_ptr<Recordset> OpenCards(Station& station, LibraryTab tab);

// Codes of a tab's cards in the order in which the slider goes through them, as stored now; of the
// music by `option` of OptionTri.
std::vector<int32_t> ReadCodes(Station& station, LibraryTab tab, int32_t option);
// Those of the tab that is shown, read again only where the base has changed.
const std::vector<int32_t>& CodesInOrder(Station& station, LibraryEditor& editor);

// The stored paths of all of the tab's cards.
std::vector<std::string> FilesOfCards(Station& station, const LibraryEditor& editor);

// The current row goes into the tab's controls, and the menus of a card go on.
void ShowCard(Station& station, LibraryEditor& editor, const Recordset& row);
// LblArtisteAssocie: the music card that the jingle belongs to, else the artist as stored.
void ShowLinkedCard(Station& station, JingleCard& card);
// The card of that code, with its position; false when there is none, nothing is changed then.
bool ShowCode(Station& station, LibraryEditor& editor, int32_t code);
// The card at a place, clamped to those there are; without cards the tab is emptied and the menus
// of a card go off.
void ShowPlace(Station& station, LibraryEditor& editor, int64_t position);
// Position and count, by the card shown.
void ShowPosition(Station& station, LibraryEditor& editor);

// The tab as for a new card.
void EmptyTab(LibraryEditor& editor);

// The tab's controls as a new row, which is then the card shown; false where its file has a card
// already, which is told.
bool AddShownCard(Station& station, LibraryEditor& editor);
// One file of a lot, whose card the screen does not show. CODE, 0 where the file has a card
// already, which is told.
int32_t AddFileOfLot(Station& station, LibraryTab tab, const std::string& file);

// The tab's controls into the current row, and its exchange file; the row is then shown as stored.
void StoreShownCard(Station& station, LibraryEditor& editor, Recordset& row);

}  // namespace zemo
