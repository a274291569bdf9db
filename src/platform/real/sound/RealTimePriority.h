// Ahead of every ordinary thread of the machine, for the one that mixes the air.
#pragma once

#include <thread>

namespace zemo {

// The system's real-time priorities are 1 to 99, and 0 is none. Low among them: what serves the
// sound hardware itself comes first.
inline constexpr int kMixerPriority = 10;

// The highest that this process was allowed, by its limit for it (RLIMIT_RTPRIO), `wanted` at most.
// A user who was granted some by the machine's administrator, or a service by its unit, has a
// limit; no other has, and nobody else is asked.
int AllowedRealTimePriority(int wanted);

// Gives the thread that priority, in turns with others of the same one. True where the system did.
// Of a thread that this process made and has not joined; any thread.
bool GiveRealTimePriority(std::thread::native_handle_type thread, int priority);

}  // namespace zemo
