#include "settings/SerialInput.h"

#include "platform/Joystick.h"
#include "platform/LocalValues.h"
#include "platform/SerialPort.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr const char* kRoutine = "PortCom_Click";

std::string OpenPort(Station& station, int port, const std::string& setting) {
  SerialPort& serial = station.platform.serial;
  if (serial.IsOpen()) return {};
  serial.Open(port, setting);
  station.engine.automaton = {};
  station.engine.SerialInputOpen = true;
  return "Init " + setting + " Ok";
}

std::string ClosePort(Station& station) {
  station.platform.serial.Close();
  station.engine.SerialInputOpen = false;
  return "Port COM Close OK !";
}
}  // namespace

std::string LineSetting(const Station& station) {
  return station.platform.localValues.GetText("PortComSetting", "4800,N,8,1");
}

std::string Settings::PortCom_Click(Station& station, int option, const std::string& setting) {
  try {
    return option > 0 ? OpenPort(station, option, setting) : ClosePort(station);
  } catch (const SerialError& error) {
    LogError(station, kRoutine, error.number, error.what());
    return "Erreur n° " + std::to_string(error.number);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
    return {};
  }
}

bool UseJoystick(Station& station, int port) {
  Joystick& joystick = station.platform.joystick;
  station.engine.JoystickInUse = port > 0;
  const bool answers = port > 0 && joystick.Open(port);
  if (port <= 0) joystick.Close();
  if (answers) station.engine.joystickLamp = JoystickLamp::kReady;
  return answers;
}

}  // namespace zemo
