// The files of a campaign beside its sound file, and the lists and templates that the campaign
// editor keeps in the station's folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

class Folder;
class SoundFiles;
struct Station;
struct CampaignForm;

// Path of a campaign's own file: the sound file's path up to and with the point of the first
// ".WAV" in it, else of the first ".MP3", in any case and wherever in the path, and the ending
// behind it. With neither, the ending alone, which is a file of the station's folder.
std::string CampaignFilePath(std::string_view soundFile, std::string_view ending);

// Such a file as a record names it: by a bare name in the station's folder, or by a stored path
// where the sound files are. An empty text names none. Texts are UTF-8 here and side-file text on
// disk. Operations throw FileError.
class CampaignFile {
 public:
  explicit CampaignFile(std::string named);

  int64_t SizeBytes(const Station& station) const;                // -1: no such file
  std::optional<std::string> Read(const Station& station) const;  // nullopt: no such file
  void Write(Station& station, std::string_view utf8) const;
  std::string Stamp(const Station& station) const;  // another when it changed; empty: no such file
  bool Exists(const Folder& station, const SoundFiles& soundFiles) const;
  bool Exists(const Station& station) const;
  // Its path on this machine, by which two names of one file are the same; empty for none.
  std::string Path(const Station& station) const;
  void Remove(Station& station) const;

 private:
  enum class In { kNone, kStationFolder, kSoundFiles };
  In in_;
  std::string name_;
};

// The "prg" export: dates, hours, the eight marks, advertiser, category, priority, "True" for a
// spot or "False", genre; a line each.
std::string CampaignProgram(const CampaignForm& form);

std::string MarksText(const CampaignForm& form);  // of "Decoupe.Ini"

// "Decoupe.Ini": hours and marks of the form, the template of the next campaign. A missing file
// leaves them, and one with an hour or a mark that no clock shows, which is a fault and is not
// written either. Faults are logged.
void LoadSaveMarks(Station& station, std::string_view action, CampaignForm& form);

// "MajGrillePub.txt" with today's date: tells the machine on air to compose its grid again. Throws
// FileError.
void WriteGridSignal(Station& station);

}  // namespace zemo
