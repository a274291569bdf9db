#include "platform/real/sound/RealTimePriority.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>

#include <algorithm>

namespace zemo {

int AllowedRealTimePriority(int wanted) {
  rlimit limit{};
  if (getrlimit(RLIMIT_RTPRIO, &limit) != 0) return 0;
  return static_cast<int>(std::min<rlim_t>(limit.rlim_cur, static_cast<rlim_t>(wanted)));
}

bool GiveRealTimePriority(std::thread::native_handle_type thread, int priority) {
  const sched_param wanted{.sched_priority = priority};
  return pthread_setschedparam(thread, SCHED_RR, &wanted) == 0;
}

}  // namespace zemo
