#include "platform/sim/SimDesktop.h"

#include <cstdio>

namespace zemo {

namespace {
bool Fits(Buttons buttons, Answer answer) {
  switch (buttons) {
    case Buttons::kOk:
      return answer == Answer::kOk;
    case Buttons::kOkCancel:
      return answer == Answer::kOk || answer == Answer::kCancel;
    case Buttons::kYesNo:
      return answer == Answer::kYes || answer == Answer::kNo;
    case Buttons::kYesCancel:
      return answer == Answer::kYes || answer == Answer::kCancel;
    case Buttons::kYesNoCancel:
    case Buttons::kMineTheirs:
      return answer != Answer::kOk;
    case Buttons::kMineTheirsLook:
      return true;
  }
  return false;
}
}  // namespace

const char* ButtonsWord(Buttons buttons) {
  switch (buttons) {
    case Buttons::kOk:
      return "ok";
    case Buttons::kOkCancel:
      return "okcancel";
    case Buttons::kYesNo:
      return "yesno";
    case Buttons::kYesCancel:
      return "yescancel";
    case Buttons::kYesNoCancel:
      return "yesnocancel";
    case Buttons::kMineTheirsLook:
      return "minetheirslook";
    case Buttons::kMineTheirs:
      return "minetheirs";
  }
  return "ok";
}

const char* AnswerWord(Answer answer) {
  switch (answer) {
    case Answer::kOk:
      return "ok";
    case Answer::kCancel:
      return "cancel";
    case Answer::kYes:
      return "yes";
    case Answer::kNo:
      return "no";
  }
  return "ok";
}

Answer SimMessageBoxes::Show(const std::string& title, const std::string& text, Buttons buttons,
                             Icon icon) {
  lastIcon_ = icon;
  Answer answer = SafeAnswer(buttons);
  // A box with nothing to choose leaves the scripted answer to the next question.
  if (buttons != Buttons::kOk && !answers_.empty()) {
    if (Fits(buttons, answers_.front())) answer = answers_.front();
    answers_.pop_front();
  }
  if (shown) shown(title, text, buttons, answer);
  return answer;
}

void SimSystem::SetDate(const LocalDateTime& moment) {
  LocalDateTime wall = loop_.LocalNow();
  wall.year = moment.year;
  wall.month = moment.month;
  wall.day = moment.day;
  loop_.SetWallClock(wall);
  char text[16];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", moment.year, moment.month, moment.day);
  if (ordered) ordered("date", text);
}

bool SimSystem::Run(const std::string& program, const std::string& argument) {
  if (!hasPrograms) return false;
  if (ordered)
    ordered("run", argument.empty() ? program : "\"" + program + "\" \"" + argument + "\"");
  return true;
}

}  // namespace zemo
