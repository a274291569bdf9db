// What hangs on the controls of the settings screen: controls that move others, devices that are
// tried out at once, and the lists with their buttons and keys. Refusals are one line for the place
// where the operator looks; faults are logged, and nothing here throws but
// where it says so. Thread: the logic's.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

class SettingsDevices;
struct SettingsScreen;
struct Station;

namespace Settings {

inline constexpr size_t kMostTopage = 96;  // four an hour: what BtnInti can make

// --- what follows the operator's hand on a control ---
void CheckInstrumental_Click(Station& station, SettingsDevices&);  // clears CheckPubToph
void CheckPubToph_Click(Station& station,
                        SettingsDevices&);  // clears CheckInstrumental, moves SpinOptimise
void ChoosePort(Station& station, SettingsDevices&);
void ChooseJoystick(Station& station, SettingsDevices&);
void ChooseAirOutput(Station& station, SettingsDevices& devices);
void ChoosePrelistenOutput(Station& station, SettingsDevices& devices);
void PaintCounters(Station& station, SettingsDevices&);
void StoreXRapport(Station& station, SettingsDevices&);

// --- a value that is refused although it is in range: both settings of the buffers together say
// how far these reach ---
std::optional<std::string> BuffersOfThisSize(const SettingsScreen& screen, std::string_view bytes);
std::optional<std::string> ThatManyBuffers(const SettingsScreen& screen, std::string_view buffers);

// --- a control that was stored ---
void TakeLongestImpulse(Station& station);  // the running engine's longest impulse
void WriteLanguage(Station& station);       // "Langue.Txt"; throws FileError

// A weekday is chosen, 0 for Monday: its start and stop times and its marker times. Those of the
// day left are saved where they were changed.
void ChooseWeekday(Station& station, int day);

// --- ComboHeure, HeureArretSystem and Topage: a key in the list `times` of the screen ---
enum class TimeList { kComboHeure, kHeureArretSystem, kTopage };
std::vector<std::string>& TimesOf(Station& station, TimeList list);
// Enter: adds what was typed, in capitals, when it is a time "hh:mm" or "hh:mm:ss" (a stop also
// with "-F", "-Q").
std::optional<std::string> EnterTime(Station& station, TimeList list, std::string_view typed);
void DeleteTime(Station& station, TimeList list, size_t selected);

// --- Topage ---
std::optional<std::string> BtnAjouter_Click(Station& station, std::string_view ChEdit);
// Enter in ChEdit: as BtnAjouter while the list has room, else nothing.
std::optional<std::string> ChEdit_KeyEnter(Station& station, std::string_view ChEdit);
// The marker times of the chosen weekday go to their file at once.
void BtnSaveTopage_Click(Station& station);
// Topage anew: every hour with every box of ChDecoupe that is not empty. A box that is no minute is
// refused, and the list stays.
std::optional<std::string> BtnInti_Click(Station& station);

// --- Instru ---
std::string InstruEntry(const SettingsScreen& screen, size_t hour);
// Exactly these hours are ticked.
void TickHours(Station& station, const std::vector<size_t>& hours);

// --- Filtre ---
// Enter in ChFiltre: its text, a time or nothing, into the selected cell.
std::optional<std::string> ChFiltre_KeyEnter(Station& station, std::string_view typed);

// --- the base ---
// Asks, and on OK repairs and compacts the base; the monthly compaction stays due as it was. The
// only one that takes place while the engine runs.
void BtnIndex_Click(Station& station);

// --- genres ---
// The genres of the library that the list lacks join it; tells how many.
void BtnRech_Click(Station& station);

}  // namespace Settings

}  // namespace zemo
