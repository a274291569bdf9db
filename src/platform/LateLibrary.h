// A C library that is loaded when something of it is first needed, and not with the program: what
// it brings along costs every start its time and its memory.
#pragma once

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace zemo {

// Loaded for good. Thread: any.
class LateLibrary {
 public:
  // By the name under which the system's loader knows it. Throws std::runtime_error with the
  // loader's line, as Find does.
  explicit LateLibrary(const char* name)
      : handle_(Found(dlopen(name, RTLD_NOW | RTLD_LOCAL), name)) {}

  template <typename Function>
  void Find(Function*& function, const char* name) const {
    function = reinterpret_cast<Function*>(Found(dlsym(handle_, name), name));
  }

 private:
  static void* Found(void* what, const char* name) {
    if (what) return what;
    const char* reason = dlerror();
    throw std::runtime_error(reason ? reason : name);
  }

  void* handle_;
};

}  // namespace zemo
