// The synthetic GPS receiver (tools/synthgps) as the tests run it: a Unix
// program started from the Windows test, on a pty linked into the build's
// prefix as a COM port, controlled and watched through files in a folder of
// its own under the build tree.
#pragma once

#include <string>
#include <vector>

namespace testsupport {

class SyntheticGps {
public:
    SyntheticGps() = default;
    ~SyntheticGps();
    SyntheticGps(const SyntheticGps&) = delete;
    SyntheticGps& operator=(const SyntheticGps&) = delete;

    // Removes the prefix's COM links (Wine maps the host's silent /dev/ttyS0
    // to the first free one at each server start) unless told to keep them,
    // then starts a receiver on COMn at its own rate with a script, its clock
    // that many seconds ahead of the computer's; returns once its port is
    // linked.
    bool Start(int port, int baud, const std::string& script, bool keepOtherLinks = false,
               double clockAheadSeconds = 0);
    // Switches the script at its next burst.
    bool SetScript(const std::string& script);
    // Closes the pty under the program, as a receiver pulled out.
    bool HangUp();
    // Ends it and removes its link; returns when it has.
    bool Stop();

    // What the program did to the port, in order, as "open 4800",
    // "rate 9600", "close 38400" (the rate in force at that moment).
    std::vector<std::string> PortEvents() const;
    // Waits until the receiver's log holds the event.
    bool WaitLogged(const std::string& event, unsigned long timeoutMs) const;
    // The rates in force at each close, in order.
    std::vector<int> ClosedAtRates() const;

private:
    bool WriteControl(const std::string& name, const std::string& text) const;
    std::string state_;  // Unix path of its folder
    bool running_ = false;
};

}  // namespace testsupport
