// How far ahead of the air the output's buffers reach, by the settings; and how far they may, since
// a start and a stop wait for them.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

// Seconds: 4096 bytes are a fiftieth of one.
double BufferSeconds(int64_t bytes, int64_t buffers);

// The most buffers of that size that reach no further than 10 s.
int64_t MostBuffers(int64_t bytes);

// What is wrong with that many, in one line; empty: nothing.
std::string WhyTooManyBuffers(int64_t bytes, int64_t buffers);

}  // namespace zemo
