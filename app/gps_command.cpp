#include "app/gps_command.h"

#include "app/recording_control.h"
#include "base/report.h"
#include "events/event_state.h"
#include "gps/gps_link.h"
#include "gps/gps_refresh_timer.h"
#include "ui/gps_window.h"
#include "ui/unresponsive_notice.h"
#include "ui/window_layout.h"

namespace {

// On a timer-queue thread. During an event recording a tick does nothing;
// a recording that began while this tick was reading has hidden the window,
// and the tick leaves it hidden.
void CALLBACK GpsRefreshTick(void*, BOOLEAN)
{
    if (eventRecording)
        return;
    RefreshGpsWindow(gpsSnapshot);
    if (eventRecording)
        return;
    ShowGpsWindowAtTick();
}

}  // namespace

void OnUsbGpsReceiverCommand()
{
    ReportUserMessage(L"Attempting to connect with USB GPS receiver.  This may take a minute.", true);
    if (!ConnectGps(ShowUnresponsiveNotice)) {
        ReportUserMessage(L"No USB GPS receiver found\r\n", true);
        return;
    }
    ReportUserMessage(L"USB GPS connected\r\n", true);
    PlaceDialog(gpsWindow);
    StartGpsRefreshTimer(GpsRefreshTick);
}
