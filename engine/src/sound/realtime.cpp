#include "sound/realtime.h"

#include <pthread.h>
#include <sched.h>

namespace kelo::engine {

bool favourThisThread()
{
    sched_param wanted{};
    wanted.sched_priority = soundPriority;
    // What is started from here is not favoured too.
    return pthread_setschedparam(pthread_self(), SCHED_RR | SCHED_RESET_ON_FORK, &wanted) == 0;
}

} // namespace kelo::engine
