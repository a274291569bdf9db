// The orders that move what a simulation has around its station: its wires, its message boxes, the
// files that another program drops.
#include "app/OrderHandlers.h"
#include "app/Orders.h"
#include "app/SimStation.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

void PullContact(SimStation& sim, const GivenOrder& given) {
  sim.automaton.SetContact(given.Number(0), given.arguments[1] == "on");
}

void PullJoystick(SimStation& sim, const GivenOrder& given) {
  if (given.arguments[1] == "down")
    sim.joystick.Press(given.Number(0));
  else
    sim.joystick.Release(given.Number(0));
}

void AnswerNext(SimStation& sim, const GivenOrder& given) {
  const std::string& word = given.arguments[0];
  Answer answer = Answer::kCancel;
  if (word == "yes") answer = Answer::kYes;
  if (word == "no") answer = Answer::kNo;
  if (word == "ok") answer = Answer::kOk;
  sim.messages.AnswerNext(answer);
}

void DropFile(SimStation& sim, const GivenOrder& given) {
  const auto bytes = ReadWholeFile(given.arguments[0]);
  if (!bytes) throw OrderError("there is no file " + given.arguments[0]);
  sim.DropFile(given.arguments[1], *bytes);
}

}  // namespace zemo
