#include "app/Version.h"

namespace zemo {

const char* const kVersion = ZEMO_VERSION;

}  // namespace zemo
