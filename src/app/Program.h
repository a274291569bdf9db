// The program as a whole: its command line to its exit status.
#pragma once

namespace zemo {

// 0 done, 1 the work failed, 2 wrong usage; what went wrong is one line on standard error.
int RunProgram(int argc, const char* const* argv);

}  // namespace zemo
