// For threads that may take neither the processor nor the disk from the air.
#pragma once

namespace zemo {

// The calling thread runs only while nothing else on this machine wants to, for the disk too; by
// its nice value alone where the system refuses that.
void TakeLowestPriority();

}  // namespace zemo
