#include "app/Program.h"

#include <exception>

#include "app/Commands.h"
#include "app/ErrorLine.h"

namespace zemo {

namespace {
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
}  // namespace

int RunProgram(int argc, const char* const* argv) {
  try {
    const auto work = ParseCommandLine(argc, argv, Commands());
    return work ? (*work)() : 0;
  } catch (const UsageError& error) {
    PrintError(error.what());
    return kWrongUsage;
  } catch (const std::exception& error) {
    PrintError(error.what());
    return kFailed;
  }
}

}  // namespace zemo
