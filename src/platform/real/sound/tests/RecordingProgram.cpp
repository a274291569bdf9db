// Records the input of that key into that folder, until it is killed.
#include <unistd.h>

#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/RealRecorder.h"
#include "platform/real/sound/SoundDevices.h"
#include "platform/real/sound/tests/OrderQueue.h"

int main(int count, char** words) {
  if (count != 3) return 2;
  zemo::testing::OrderQueue loop;
  zemo::LocalFolder folder(words[2]);
  zemo::RealRecorder recorder(loop, [&](int number) { return zemo::InputOf(words[1], number); });
  recorder.Start(0, folder, "a.Wav");
  for (;;) pause();
}
