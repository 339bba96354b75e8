#include "app/loaded_options.h"

#include <cwchar>

#include "persistence/options.h"
#include "ui/countdown_window.h"
#include "video/capture_settings.h"
#include "video/codecs.h"

void ApplyLoadedOptions()
{
    if (options.DefaultDuration[0]) {
        unsigned long hours = defaultDuration.wHour, minutes = defaultDuration.wMinute,
                      seconds = defaultDuration.wSecond;
        swscanf(options.DefaultDuration, L"%2lu:%2lu:%2lu", &hours, &minutes, &seconds);
        // A time the duration picker can't show keeps the default.
        if (hours <= 23 && minutes <= 59 && seconds <= 59) {
            defaultDuration.wHour = static_cast<WORD>(hours);
            defaultDuration.wMinute = static_cast<WORD>(minutes);
            defaultDuration.wSecond = static_cast<WORD>(seconds);
        }
    } else {
        swprintf(options.DefaultDuration, kSmallTextCapacity, L"%2.2d:%2.2d:%2.2d", defaultDuration.wHour,
                 defaultDuration.wMinute, defaultDuration.wSecond);
    }
    if (options.EventPendingDisplay[0])
        showUtcClock = wcscmp(options.EventPendingDisplay, L"UTC") == 0;
    rendererChoice = options.DefaultRenderer;
    displayOffWhileRecording = options.DisplayOffWhileRecording;
    removeFiltersWhileRecording = options.RemoveFiltersWhileRecording;
    for (const SubtypeCodecPair* pair : savedSubtypeCodecPairs)
        subtypeCodecPairs.push_back(new SubtypeCodecPair(*pair));
}
