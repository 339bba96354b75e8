// A timer on a timer queue of its own, as the countdown tick, the end of an
// event recording and the GPS refresh use them. Its callback runs on a
// worker thread of the platform.
#pragma once

#include <windows.h>

class TimerQueueTimer {
public:
    TimerQueueTimer() = default;
    TimerQueueTimer(const TimerQueueTimer&) = delete;
    TimerQueueTimer& operator=(const TimerQueueTimer&) = delete;

    // Creates a queue and in it a timer (period 0: one shot). The results
    // aren't tested. A timer started over one that still runs takes its
    // handles: the earlier timer goes on firing, out of reach.
    void Start(WAITORTIMERCALLBACK callback, DWORD dueMilliseconds, DWORD periodMilliseconds);

    // Deletes the timer and its queue if there is a queue, without waiting
    // for a callback in progress, so it may be called from inside the
    // callback itself.
    void Delete();

    // Lets go of the handles without deleting anything: the timer runs on.
    void Forget();

    bool Started() const { return queue_ != nullptr; }

private:
    HANDLE queue_ = nullptr;
    HANDLE timer_ = nullptr;
};
