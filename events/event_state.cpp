#include "events/event_state.h"

std::vector<std::unique_ptr<EventRecord>> scheduledEvents;
// Armed records are never freed: a timer thread may still be naming a file
// after the event that a reload on the interface thread has just replaced.
std::atomic<EventRecord*> currentEvent{nullptr};
SYSTEMTIME currentEventTime{};
SYSTEMTIME currentEventDuration{};
// Room for more stops than a run can have: a stop on the interface thread
// appends while an end timer's reload may be walking the list.
std::vector<StoppedEventKey> stoppedEvents = [] {
    std::vector<StoppedEventKey> keys;
    keys.reserve(1024);
    return keys;
}();
Flag eventPending{0};
Flag eventRecording{0};
std::atomic<uint64_t> countdownDeadline{0};
std::atomic<uint32_t> eventDurationMs{0};
std::atomic<uint32_t> keepAwakeCounter{0};
