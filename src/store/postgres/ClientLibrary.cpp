#include "store/postgres/ClientLibrary.h"

#include <dlfcn.h>

#include <string>

#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr char kLibrary[] = "libpq.so.5";

[[noreturn]] void Fail() {
  const char* reason = dlerror();
  throw StoreError(kErrOther, "the client of PostgreSQL cannot be used: " +
                                  std::string(reason ? reason : kLibrary));
}

ClientLibrary Load() {
  void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);  // for good
  if (!library) Fail();
  ClientLibrary functions;
  const auto find = [library](auto& function, const char* name) {
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
    if (!function) Fail();
  };
#define ZEMO_PQ_FIND(name) find(functions.name, #name);
  ZEMO_PQ_FUNCTIONS(ZEMO_PQ_FIND)
#undef ZEMO_PQ_FIND
  return functions;
}

}  // namespace

const ClientLibrary& Pq() {
  static const ClientLibrary kFunctions = Load();
  return kFunctions;
}

}  // namespace zemo
