#include "gps/gps_refresh_timer.h"

#include "base/timer_queue_timer.h"

namespace {

TimerQueueTimer gpsTimer;

}  // namespace

void StartGpsRefreshTimer(WAITORTIMERCALLBACK tick)
{
    gpsTimer.Delete();
    gpsTimer.Start(tick, kGpsRefreshMilliseconds, kGpsRefreshMilliseconds);
}

void StopGpsRefreshTimer()
{
    gpsTimer.Delete();
}
