#include "platform/real/files/LowestPriority.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace zemo {

void TakeLowestPriority() {
  constexpr int kLowestPriority = 19;
  ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kLowestPriority);
  const sched_param none{};
  ::sched_setscheduler(0, SCHED_IDLE, &none);
}

}  // namespace zemo
