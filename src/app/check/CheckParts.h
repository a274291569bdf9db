// The parts of the check, each over one kind of thing. None throws on what it finds.
#pragma once

#include <cstdint>
#include <string>

#include "app/check/Findings.h"
#include "app/check/ReadOnlyBase.h"
#include "platform/Clock.h"
#include "platform/Folder.h"

namespace zemo {

// Rights and room of the station's folder.
void CheckFolder(const std::string& station, Findings& findings);

// Why there is no base, with what a start makes of that.
std::string WhyBaseIsMissing(const Folder& station);
// A base that was handed over and cannot be taken, and what stands beside the base in its place.
void CheckBaseFiles(const Folder& station, Findings& findings);

// The lists and day files of the station's folder.
void CheckSideFiles(const Folder& station, const SoundFiles& files, Findings& findings);

// The emergency folder of the machine folder, where there is one.
void CheckEmergencyFolder(Folder& machine, Findings& findings);

// Soundness, and the thirteen tables with their fields. True when the base can be asked for more.
bool CheckStructure(const ReadOnlyBase& base, Findings& findings);

// Settings, models, stored lists and the voice tracks in them.
void CheckSettings(const ReadOnlyBase& base, Findings& findings);
void CheckModels(const ReadOnlyBase& base, Findings& findings);
void CheckStoredLists(const ReadOnlyBase& base, Findings& findings);
void CheckVoiceTracks(const ReadOnlyBase& base, Findings& findings);
// The table behind a row of a stored list; nullptr for a kind without a record.
const char* TableOfKind(int64_t kind);

// Whether the models can be filled from the library under its rules, as it stands on that day.
void CheckLibrary(const ReadOnlyBase& base, const LocalDateTime& now, Findings& findings);
// Titles that never come on air by a request.
void CheckTitles(const ReadOnlyBase& base, Findings& findings);

// Breaks of the coming week that run into each other. Throws std::exception with one line.
void CheckBreaks(const CheckOptions& options, const LocalDateTime& now, Findings& findings);

// Every record that names a sound file, with that file.
void CheckElements(const ReadOnlyBase& base, const Folder& station, const SoundFiles& files,
                   Findings& findings);

}  // namespace zemo
