// What the build makes of the table of commands, on standard output:
//   zemo_manual man DATE   the source of the manual page, DATE in its foot
//   zemo_manual bash       the completion for bash
#include <cstdio>
#include <string>

#include "app/BashCompletion.h"
#include "app/Commands.h"
#include "app/ManualPage.h"

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  std::string text;
  if (what == "man" && argc == 3) text = zemo::ManualPage(zemo::Commands(), argv[2]);
  if (what == "bash" && argc == 2) text = zemo::BashCompletion(zemo::Commands());
  if (text.empty()) {
    std::fputs("usage: zemo_manual man DATE | bash\n", stderr);
    return 2;
  }
  return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
