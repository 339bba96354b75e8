#include "support/synthetic_gps.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <sstream>

#include "e2e/harness.h"

namespace testsupport {

namespace {

// The prefix as the shell sees it: the one this process runs in.
const std::string kPrefix = "${WINEPREFIX:-" + std::string(MAVU_BINARY_DIR_UNIX) + "/wineprefix}";

// Windows path of a Unix path, through drive Z:.
std::wstring UnixToWindows(const std::string& unixPath)
{
    std::wstring path = L"Z:";
    for (char c : unixPath)
        path += c == '/' ? L'\\' : static_cast<wchar_t>(static_cast<unsigned char>(c));
    return path;
}

bool Exists(const std::string& unixPath)
{
    return GetFileAttributesW(UnixToWindows(unixPath).c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Removes every dosdevices/com* link of the build's prefix and waits for
// the mark the shell leaves after it: Wine doesn't wait for a Unix child.
bool RemoveComLinks()
{
    static std::atomic<int> counter{0};
    std::string mark = std::string(MAVU_BINARY_DIR_UNIX) + "/gps-work/done-" + std::to_string(GetCurrentProcessId()) +
        "-" + std::to_string(++counter);
    e2e::RunUnix("mkdir -p '" + std::string(MAVU_BINARY_DIR_UNIX) + "/gps-work' && rm -f \"" + kPrefix +
                 "\"/dosdevices/com*; touch '" + mark + "'");
    bool done = e2e::WaitUntil([&] { return Exists(mark); }, 10000, 20);
    DeleteFileW(UnixToWindows(mark).c_str());
    return done;
}

}  // namespace

SyntheticGps::~SyntheticGps()
{
    Stop();
}

bool SyntheticGps::Start(int port, int baud, const std::string& script, bool keepOtherLinks, double clockAheadSeconds)
{
    Stop();
    static std::atomic<int> counter{0};
    state_ = std::string(MAVU_BINARY_DIR_UNIX) + "/gps-work/receiver-" + std::to_string(GetCurrentProcessId()) + "-" +
        std::to_string(++counter);
    if (!keepOtherLinks && !RemoveComLinks())
        return false;
    std::ostringstream command;
    command << "rm -rf '" << state_ << "' && mkdir -p '" << state_ << "' && setsid python3 '" << MAVU_SOURCE_DIR_UNIX
            << "/tools/synthgps/synthgps.py' --prefix \"" << kPrefix << "\" --port " << port << " --baud " << baud
            << " --script " << script << " --clock-ahead " << clockAheadSeconds << " --state '" << state_
            << "' --seconds 900"
            << " </dev/null >'" << state_ << ".out' 2>&1 &";
    e2e::RunUnix(command.str());
    running_ = e2e::WaitUntil([&] { return Exists(state_ + "/pty"); }, 15000, 20);
    return running_;
}

// The receiver takes a control file as soon as it sees it: it is written
// under another name and renamed, so that it is never seen empty.
bool SyntheticGps::WriteControl(const std::string& name, const std::string& text) const
{
    std::wstring path = UnixToWindows(state_ + "/" + name);
    return WriteFileBytes(path + L".part", text) &&
        MoveFileExW((path + L".part").c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
}

bool SyntheticGps::SetScript(const std::string& script)
{
    return running_ && WriteControl("script", script + "\n");
}

bool SyntheticGps::HangUp()
{
    return running_ && WriteControl("hangup", "\n") && WaitLogged("hangup", 5000);
}

bool SyntheticGps::Stop()
{
    if (!running_)
        return true;
    running_ = false;
    WriteControl("stop", "\n");
    return e2e::WaitUntil([&] { return Exists(state_ + "/stopped"); }, 10000, 20);
}

std::vector<std::string> SyntheticGps::PortEvents() const
{
    std::vector<std::string> events;
    std::string bytes = ReadFileBytes(UnixToWindows(state_ + "/log"));
    std::istringstream lines(bytes);
    std::string line;
    while (std::getline(lines, line)) {
        size_t blank = line.find(' ');
        if (blank != std::string::npos)
            events.push_back(line.substr(blank + 1));
    }
    return events;
}

bool SyntheticGps::WaitLogged(const std::string& event, unsigned long timeoutMs) const
{
    return e2e::WaitUntil(
        [&] {
            for (const std::string& logged : PortEvents()) {
                if (logged == event)
                    return true;
            }
            return false;
        },
        timeoutMs, 20);
}

std::vector<int> SyntheticGps::ClosedAtRates() const
{
    std::vector<int> rates;
    for (const std::string& event : PortEvents()) {
        if (event.rfind("close ", 0) == 0)
            rates.push_back(std::stoi(event.substr(6)));
    }
    return rates;
}

}  // namespace testsupport
