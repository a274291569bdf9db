// The small files in the station's and the machine's folder, one routine a file. `action` is "Load"
// or "Save", compared without regard to case; any other word does nothing.
//
// None of these routines throws: a missing file is no error and leaves the defaults that each
// comment states, and a file that cannot be read or written is logged and leaves them too. Thread:
// the logic's.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

struct Station;

// station.files: the names of all side files. First of all at load.
void SetSideFileNames(Station& station);

// Path of a file beside a sound file: the path up to and with the point of ".WAV", else of ".MP3",
// in any case, and the ending behind it ("D:\a\x.Wav", "mar" is "D:\a\x.mar"). The whole path where
// the file's name holds neither. A stored path, to be used through SoundFiles.
std::string SideFilePath(std::string_view soundFile, std::string_view ending);

// --- what the machine remembers ---
// "NoRapport.txt" and the local value PCProduction: either one sets ReportsDisabled, and the file
// puts its banner on the main screen. Run again when the value was changed.
void LoadMachineState(Station& station);
// "ZemoPlay.Ini". Load: true when the machine was on air when it was last written, and so has to go
// on air by itself; false without a file or with one that cannot be read. Save: writes IsRunning,
// durably; a fault is logged.
bool LoadSavePlay(Station& station, std::string_view action);
// "ZemoAudio.Ini": lists.AudioOutID and AudioOutPFLID. A file that cannot be read shows an alert
// and leaves them.
void LoadSaveAudio(Station& station, std::string_view action);
// "ZemoPasseWord.Ini": lists.Locked and lists.Password. Load puts the password in `password` as
// well. Save takes it from there: the empty text unlocks, any other locks.
void LoadSavePassword(Station& station, std::string_view action, std::string& password);
// True when nothing is locked, or when `typed` is the password.
bool LockOpensWith(const Station& station, std::string_view typed);

// --- the day's times; `day` is 0 for Monday to 6 ---
// With `listsOnly` the lists of the engine, else those of the settings screen, which may show
// another day than today's. "StartStop.n": ComboHeure and HeureArretSystem. Both are empty without
// a file, so that no time of another day lingers; a file that cannot be read leaves them. False: it
// failed, and is logged.
bool LoadSaveStartStop(Station& station, std::string_view action, int day, bool listsOnly);
// "Topage.n": Topage; empty without a file.
bool LoadSaveTopage(Station& station, std::string_view action, int day, bool listsOnly);

// Both into the engine's lists, where either file is another one than was read last.
void ReloadDayTimes(Station& station, int day);

// --- station ---
// "Exclusion.Txt": lists.Exclusion, at most 80 rows, of which those without a start count for
// nothing. A
// missing file leaves the list as it is.
void LoadSaveExclusion(Station& station, std::string_view action);
// "Instrumental.Txt": lists.Instru; every hour is one without a file.
void LoadSaveInstrumental(Station& station, std::string_view action);
// "LectureBase.Txt": lists.LectureBase, 0 without a file, which is then made with its explanation.
void LoadReadSettingsOfBase(Station& station);
// "Internet.Txt": lists.Internet, the web page's path, the first marker, the separator of artist
// and title, and the second marker. Without it, or without the page, lists.Internet.on is false.
void LoadFileRealAudio(Station& station);

// --- signals to neighbouring programs ---
// "ZemoOnOff.Dat": its first byte, '1' or '0', and no other. Nothing while ReportsDisabled.
void WriteZemoOnOff(Station& station, char state);
// "CheckTopage.Dat": the one record of 16 characters, "Topage" and blanks.
void WriteCheckTopage(Station& station);

}  // namespace zemo
