// What the orders do, by the table of Orders.cpp. Each throws std::exception for what could not be
// done.
#pragma once

#include <string>

#include "app/OrderForms.h"

namespace zemo {

// --- the operator's, on any station ---
void SetMode(Station& station, const GivenOrder& given);
void LoadList(Station& station, const GivenOrder& given);
void SaveList(Station& station, const GivenOrder& given);
void InsertCard(Station& station, const GivenOrder& given);
void CopyBreak(Station& station, const GivenOrder& given);
void PlayOverlay(Station& station, const GivenOrder& given);
void PreviewDay(Station& station, const GivenOrder& given);
void Check(Station& station, const GivenOrder& given);
void SetCnf(Station& station, const GivenOrder& given);
std::string NoSuchCheck(const GivenOrder& given);
std::string NoSuchSetting(const GivenOrder& given);

// --- of what a simulation has around its station. A wire that no port listens to is pulled without
// a word ---
void PullContact(SimStation& sim, const GivenOrder& given);
void PullJoystick(SimStation& sim, const GivenOrder& given);
void AnswerNext(SimStation& sim, const GivenOrder& given);
void DropFile(SimStation& sim, const GivenOrder& given);

// --- of the screens of its office ---
void PressControl(SimStation& sim, const GivenOrder& given);
void PressKey(SimStation& sim, const GivenOrder& given);
void ClickCell(SimStation& sim, const GivenOrder& given);
void ChooseRows(SimStation& sim, const GivenOrder& given);
void ChooseFolder(SimStation& sim, const GivenOrder& given);
void LeaveSelectorOpen(SimStation& sim, const GivenOrder& given);
void ChooseFiles(SimStation& sim, const GivenOrder& given);
// A path that a script names, from the folder in which the program was started.
std::string AbsolutePath(const std::string& path);

}  // namespace zemo
