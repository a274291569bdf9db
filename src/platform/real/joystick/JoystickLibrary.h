// The joystick library, loaded with the first joystick: it brings the libraries of the screen, two
// dozen of them and three megabytes of memory, and most stations have no joystick.
#pragma once

#include <SDL.h>

namespace zemo {

// clang-format off
#define ZEMO_SDL_FUNCTIONS(Z) \
  Z(SDL_EventState) Z(SDL_FlushEvents) Z(SDL_InitSubSystem) Z(SDL_JoystickClose) \
  Z(SDL_JoystickEventState) Z(SDL_JoystickInstanceID) Z(SDL_JoystickOpen) Z(SDL_JoystickUpdate) \
  Z(SDL_NumJoysticks) Z(SDL_PeepEvents) Z(SDL_QuitSubSystem) Z(SDL_SetHint)
// clang-format on

// Each under the name that the library gives it.
struct JoystickLibrary {
#define ZEMO_SDL_MEMBER(name) decltype(&::name) name;
  ZEMO_SDL_FUNCTIONS(ZEMO_SDL_MEMBER)
#undef ZEMO_SDL_MEMBER
};

// Null where the library is not installed. Thread: any.
const JoystickLibrary* Sdl();

}  // namespace zemo
