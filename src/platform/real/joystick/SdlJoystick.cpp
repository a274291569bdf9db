#include "platform/real/joystick/SdlJoystick.h"

#include <utility>

#include "platform/EventLoop.h"
#include "platform/real/joystick/JoystickLibrary.h"

namespace zemo {

namespace {
constexpr int kPollMs = 100;
constexpr int kButtons = 4;

// Of the library's work nothing but joysticks: no signals taken over, no window needed.
bool BeginJoysticks() {
  if (!Sdl()) return false;
  Sdl()->SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  Sdl()->SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
  if (Sdl()->SDL_InitSubSystem(SDL_INIT_JOYSTICK) != 0) return false;
  Sdl()->SDL_JoystickEventState(SDL_ENABLE);
  for (const Uint32 type : {SDL_JOYAXISMOTION, SDL_JOYBALLMOTION, SDL_JOYHATMOTION})
    Sdl()->SDL_EventState(type, SDL_IGNORE);
  return true;
}

bool NextEvent(SDL_Event& event) {
  return Sdl()->SDL_PeepEvents(&event, 1, SDL_GETEVENT, SDL_JOYAXISMOTION, SDL_JOYDEVICEREMOVED) ==
         1;
}
}  // namespace

SdlJoystick::SdlJoystick(EventLoop& loop) : loop_(loop) {}

SdlJoystick::~SdlJoystick() {
  Close();
}

void SdlJoystick::OnButton(std::function<void(int button, bool down)> heard) {
  heard_ = std::move(heard);
}

bool SdlJoystick::Open(int port) {
  Close();
  port_ = port;
  begun_ = BeginJoysticks();
  if (!begun_) return false;
  Sdl()->SDL_FlushEvents(SDL_JOYAXISMOTION, SDL_JOYDEVICEREMOVED);
  timer_ = loop_.MakeTimer(kPollMs, [this] { Poll(); });
  timer_->SetEnabled(true);
  return TakeDevice();
}

void SdlJoystick::Close() {
  timer_.reset();
  if (device_ != nullptr) Sdl()->SDL_JoystickClose(device_);
  device_ = nullptr;
  port_ = 0;
  if (std::exchange(begun_, false)) Sdl()->SDL_QuitSubSystem(SDL_INIT_JOYSTICK);
}

bool SdlJoystick::TakeDevice() {
  if (device_ == nullptr && port_ <= Sdl()->SDL_NumJoysticks())
    device_ = Sdl()->SDL_JoystickOpen(port_ - 1);
  return device_ != nullptr;
}

// The handler can close, or open another: nothing is kept over it.
void SdlJoystick::Poll() {
  Sdl()->SDL_JoystickUpdate();
  SDL_Event event;
  while (begun_ && NextEvent(event)) {
    if (event.type == SDL_JOYDEVICEADDED) TakeDevice();
    if (device_ == nullptr) continue;
    const SDL_JoystickID ours = Sdl()->SDL_JoystickInstanceID(device_);
    if (event.type == SDL_JOYDEVICEREMOVED && event.jdevice.which == ours) {
      Sdl()->SDL_JoystickClose(device_);
      device_ = nullptr;
    }
    const bool button = event.type == SDL_JOYBUTTONDOWN || event.type == SDL_JOYBUTTONUP;
    if (button && event.jbutton.which == ours && event.jbutton.button < kButtons && heard_)
      heard_(event.jbutton.button + 1, event.jbutton.state == SDL_PRESSED);
  }
}

}  // namespace zemo
