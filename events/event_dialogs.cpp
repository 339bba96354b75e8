#include "events/event_dialogs.h"

HWND scheduleEventWindow = nullptr;
Flag scheduleEditMode{0};
uint64_t scheduleMinimumTicks = ~0ull;
Flag showExpiredEvents{0};
Flag ascendingEventTimes{0};
