#include "platform/real/joystick/JoystickLibrary.h"

#include <optional>
#include <stdexcept>

#include "platform/LateLibrary.h"

namespace zemo {

namespace {

std::optional<JoystickLibrary> Load() {
  try {
    const LateLibrary library("libSDL2-2.0.so.0");
    JoystickLibrary functions;
#define ZEMO_SDL_FIND(name) library.Find(functions.name, #name);
    ZEMO_SDL_FUNCTIONS(ZEMO_SDL_FIND)
#undef ZEMO_SDL_FIND
    return functions;
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

}  // namespace

const JoystickLibrary* Sdl() {
  static const std::optional<JoystickLibrary> kFunctions = Load();
  return kFunctions ? &*kFunctions : nullptr;
}

}  // namespace zemo
