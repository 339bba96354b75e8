#include "base/timer_queue_timer.h"

void TimerQueueTimer::Start(WAITORTIMERCALLBACK callback, DWORD dueMilliseconds, DWORD periodMilliseconds)
{
    queue_ = CreateTimerQueue();
    CreateTimerQueueTimer(&timer_, queue_, callback, nullptr, dueMilliseconds, periodMilliseconds, 0);
}

void TimerQueueTimer::Delete()
{
    if (!queue_)
        return;
    // No completion event: neither call waits for a running callback.
    DeleteTimerQueueTimer(queue_, timer_, nullptr);
    DeleteTimerQueueEx(queue_, nullptr);
    queue_ = nullptr;
}

void TimerQueueTimer::Forget()
{
    queue_ = nullptr;
    timer_ = nullptr;
}
