// The "USB GPS Receiver..." command and the five-second tick it starts.
#pragma once

// Connects to the receiver, with the "Stand by..." notice during a full
// scan. On success the window is placed but stays hidden: the first tick,
// five seconds later, shows it with its values.
void OnUsbGpsReceiverCommand();
