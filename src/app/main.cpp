#include "app/Program.h"

int main(int argc, char** argv) {
  return zemo::RunProgram(argc, argv);
}
