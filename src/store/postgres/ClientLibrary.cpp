#include "store/postgres/ClientLibrary.h"

#include <stdexcept>
#include <string>

#include "platform/LateLibrary.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

ClientLibrary Load() {
  try {
    const LateLibrary library("libpq.so.5");
    ClientLibrary functions;
#define ZEMO_PQ_FIND(name) library.Find(functions.name, #name);
    ZEMO_PQ_FUNCTIONS(ZEMO_PQ_FIND)
#undef ZEMO_PQ_FIND
    return functions;
  } catch (const std::runtime_error& error) {
    throw StoreError(kErrOther,
                     std::string("the client of PostgreSQL cannot be used: ") + error.what());
  }
}

}  // namespace

const ClientLibrary& Pq() {
  static const ClientLibrary kFunctions = Load();
  return kFunctions;
}

}  // namespace zemo
