#include "ui/message_log.h"

#include <windows.h>
#include <shlwapi.h>

#include <cwchar>
#include <fstream>
#include <string>

#include "app/time_zone.h"
#include "base/name_text.h"
#include "base/time_text.h"
#include "persistence/options.h"
#include "ui/user_messages.h"

wchar_t userMessageLogPath[kLogPathCapacity];

std::wstring LogFilePath(const wchar_t* folder, const wchar_t* prefix, const SYSTEMTIME& utc)
{
    return JoinNamePrefixes(folder, {prefix}) + TimeFileName(utc, L".txt");
}

void BuildUserMessageLogPath()
{
    SYSTEMTIME utc = PresentUtcFromLocalClock();
    userMessageLogPath[0] = 0;

    const wchar_t* folder = options.LogfileDirectory;
    if (!folder[0]) {
        if (!PathFileExistsW(L"LogFiles") && !CreateDirectoryW(L"LogFiles", nullptr)) {
            ReportUserMessage(L"\r\nUnable to create \"LogFiles\" directory under the process directory.  "
                              L"Check security settings.\r\n",
                              true);
            return;
        }
        folder = L"LogFiles\\";
    }
    std::wstring path = LogFilePath(folder, options.LogfileNamePrefix, utc);
    wcsncpy(userMessageLogPath, path.c_str(), kLogPathCapacity - 1);
    userMessageLogPath[kLogPathCapacity - 1] = 0;
}

void SaveUserMessages(bool clearAfter)
{
    BuildUserMessageLogPath();
    std::wstring text = UserMessagesText();

    // A text stream: the control's CR LF comes out as CR CR LF, which readers
    // of these logs have always had to expect. Failures to open or write are
    // not looked at; the line below is reported whatever happened.
    if (userMessageLogPath[0]) {
        std::wofstream file(userMessageLogPath, std::ios_base::out);
        file << text;
    }

    std::wstring line = L"User messages saved in log file \"";
    line += userMessageLogPath;
    if (clearAfter) {
        ClearUserMessages();
        line += L"\" and all messages cleared\r\n";
    } else {
        line += L"\"\r\n";
    }
    ReportUserMessage(line.c_str(), true);
}
