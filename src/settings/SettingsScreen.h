// The settings screen's load and save, and the write of a single control, for whoever changes one
// setting without the screen.
#pragma once

namespace zemo {

class SettingsDevices;
struct SettingsControl;
struct Station;

// station.settings, as the screen opens. A control that cannot be read is logged and stays empty,
// and what is stored for it stays untouched by SettingsSave; the others are not held up. Never
// throws. Thread: the logic's.
void SettingsLoad(Station& station, SettingsDevices& devices);

// Everything back, as the screen closes: the row of Cnf but for the two jingle numbers, the audio
// outputs, the times of the chosen weekday, "Langue.Txt", the hours, the filter, the machine's
// values. Each step that fails is logged and stops no other. False where the row could not be
// stored. Never throws.
bool SettingsSave(Station& station);

// The weekday's times as they stand on the screen, to their files: what could be read, and with
// `changedOnly` no list that is as it was. The engine follows at once where they are today's.
void SaveDayTimes(Station& station, bool changedOnly);

namespace Settings {
// The menu entry MnuParametrage: nothing while the menus are locked or the screen is open.
void MnuParametrage_Click(Station& station, SettingsDevices& devices);
// Saves all; nothing where the screen is closed. Where the row of Cnf could not be stored it asks,
// and the screen stays open as it is unless the operator wants it closed all the same. A field that
// somebody else has stored meanwhile stays as he has it where the operator has not changed it; of
// one that both changed it asks, and the screen stays open where that is not answered.
void Form_Unload(Station& station);
// Others have stored something: the fields of the base as they are now, but for what the operator
// has changed. Throws StoreError.
void TakeOver(Station& station);
}  // namespace Settings

// What one control holds, to where it is stored ("Langue.Txt" with the language). Throws StoreError
// and FileError.
void SaveControl(Station& station, const SettingsControl& control);

// The selected hours, and the rows of Filtre up to the last one that holds something, to their
// files; what fails is logged.
void SaveInstru(Station& station);
void SaveFiltre(Station& station);

}  // namespace zemo
