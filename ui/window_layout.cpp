#include "ui/window_layout.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/report.h"
#include "persistence/options.h"
#include "persistence/options_file.h"
#include "ui/video_windows.h"
#include "ui/window_set.h"

int32_t workLeft, workTop, workRight, workBottom;
int32_t frameWidth, frameHeight;

Flag repositioning{0};
Flag useDeviceSize{0};
Flag magnifyChanging{0};
Flag magnifyClosing{0};
Flag layoutSettingSize{0};

namespace {

// A minimised window is parked by the platform far to the upper left.
constexpr int32_t kParked = -10000;

std::vector<std::pair<HWND, int>> dialogKeys;

int DialogKey(HWND window)
{
    for (const auto& [handle, key] : dialogKeys)
        if (handle == window)
            return key;
    return -1;
}

SIZE OuterSize(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

}  // namespace

void ReadWorkArea()
{
    RECT area{};
    if (SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0)) {
        workLeft = area.left;
        workTop = area.top;
        workRight = area.right;
        workBottom = area.bottom;
        return;
    }
    workLeft = 0;
    workTop = 0;
    workRight = 1024;
    workBottom = 768;
    ReportUserMessage(L"INFO: cannot read display size, initial window positions based on 1024 horizontal "
                      L"resolution\r\n",
                      false);
}

bool KeepOnScreenPosition(const RECT& window, int32_t frame, int32_t right, int32_t bottom, POINT& moved)
{
    if (window.left < kParked && window.top < kParked)
        return false;
    int32_t width = window.right - window.left;
    int32_t height = window.bottom - window.top;
    int32_t half = frame / 2;
    int32_t left = std::max<int32_t>(window.left, 2 - half);
    int32_t top = window.top < 0 ? 0 : window.top;
    // Right and bottom have the last word: a window wider than the area ends
    // with its left edge out of bounds.
    int32_t limitRight = right - 2 + half;
    if (left + width > limitRight)
        left = limitRight - width;
    int32_t limitBottom = bottom - 2 + half;
    if (top + height > limitBottom)
        top = limitBottom - height;
    if (left == window.left && top == window.top)
        return false;
    moved = {left, top};
    return true;
}

bool KeepWindowOnScreen(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    POINT moved{};
    if (!KeepOnScreenPosition(rect, frameWidth, workRight, workBottom, moved))
        return false;
    repositioning = 1;
    SetWindowPos(window, nullptr, moved.x, moved.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    repositioning = 0;
    return true;
}

POINT DefaultDialogPosition(SIZE dialog, const RECT& main, int32_t frame, int32_t right, int32_t bottom)
{
    int32_t half = frame / 2;
    int32_t limitRight = right - 2 + half;
    int32_t limitBottom = bottom - 2 + half;
    if (dialog.cx < main.left || dialog.cy < main.top)
        return {0, 0};
    if (main.bottom + dialog.cy < limitBottom)
        return {0, limitBottom - dialog.cy};
    if (dialog.cx < limitRight - main.right)
        return {limitRight - dialog.cx, 0};
    return {0, limitBottom - dialog.cy};
}

void SetDialogWindowKey(HWND window, int windowKey)
{
    if (window)
        dialogKeys.emplace_back(window, windowKey);
}

void PlaceDialog(HWND window)
{
    int key = DialogKey(window);
    if (key < 0)
        return;
    WindowPosition& record = options.windows[key];
    POINT at;
    if (record.savedLeft != kNoPosition) {
        at = {record.savedLeft, record.savedTop};
    } else if (record.currentLeft != kNoPosition) {
        at = {record.currentLeft, record.currentTop};
    } else {
        RECT main{};
        GetWindowRect(mainWindow, &main);
        at = DefaultDialogPosition(OuterSize(window), main, frameWidth, workRight, workBottom);
    }
    SetWindowPos(window, HWND_TOP, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
    record.currentLeft = at.x;
    record.currentTop = at.y;
}

InitialPositions ComputeInitialPositions(SIZE messagesSize, SIZE recordControlsSize)
{
    InitialPositions result{};
    result.mainSize = {displayedWidth + frameWidth, displayedHeight + frameHeight};

    const WindowPosition& main = options.windows[MainWindowKey];
    if (main.savedLeft != kNoPosition)
        result.main = {main.savedLeft, main.savedTop};
    else
        result.main = {workRight - 2 + frameWidth / 2 - result.mainSize.cx, 0};

    const WindowPosition& messages = options.windows[MessageWindowKey];
    if (messages.savedLeft != kNoPosition)
        result.messages = {messages.savedLeft, messages.savedTop};
    else
        result.messages = {std::max<LONG>(0, result.main.x + frameWidth - messagesSize.cx - 5), 0};

    const WindowPosition& controls = options.windows[RecordControlsWindowKey];
    if (controls.savedLeft != kNoPosition) {
        result.recordControls = {controls.savedLeft, controls.savedTop};
    } else {
        LONG left = std::max<LONG>(0, result.main.x + frameWidth - recordControlsSize.cx - 5);
        LONG top = result.messages.y + messagesSize.cy + 5 - frameWidth / 2;
        if (top > workBottom)
            top = workBottom - recordControlsSize.cy;
        result.recordControls = {left, top};
    }
    return result;
}

void PlaceInitialWindows(HWND main, HWND clipping, HWND messages, HWND richEdit, HWND recordControls)
{
    SIZE messagesSize{options.messageWindowSavedWidth, options.messageWindowSavedHeight};
    SIZE controlsSize = OuterSize(recordControls);
    InitialPositions at = ComputeInitialPositions(messagesSize, controlsSize);

    SetWindowPos(main, nullptr, at.main.x, at.main.y, at.mainSize.cx, at.mainSize.cy, SWP_NOZORDER | SWP_NOACTIVATE);
    options.windows[MainWindowKey].currentLeft = at.main.x;
    options.windows[MainWindowKey].currentTop = at.main.y;

    if (clipping)
        SetWindowPos(clipping, nullptr, 0, 0, videoWidth, videoHeight, SWP_NOZORDER | SWP_NOACTIVATE);

    SetWindowPos(messages, nullptr, at.messages.x, at.messages.y, messagesSize.cx, messagesSize.cy,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    options.windows[MessageWindowKey].currentLeft = at.messages.x;
    options.windows[MessageWindowKey].currentTop = at.messages.y;
    options.messageWindowWidth = messagesSize.cx;
    options.messageWindowHeight = messagesSize.cy;
    if (richEdit)
        SetWindowPos(richEdit, nullptr, 0, 0, messagesSize.cx - frameWidth, messagesSize.cy - frameHeight,
                     SWP_NOZORDER | SWP_NOACTIVATE);

    if (recordControls) {
        SetWindowPos(recordControls, nullptr, at.recordControls.x, at.recordControls.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        options.windows[RecordControlsWindowKey].currentLeft = at.recordControls.x;
        options.windows[RecordControlsWindowKey].currentTop = at.recordControls.y;
    }

    if (KeepWindowOnScreen(main)) {
        RECT rect{};
        GetWindowRect(main, &rect);
        options.windows[MainWindowKey].currentLeft = rect.left;
        options.windows[MainWindowKey].currentTop = rect.top;
    }
}

MainLayout ComputeMainLayout(const MainLayoutInput& input)
{
    MainLayout layout{};
    layout.left = input.window.left;
    layout.top = input.window.top;
    if ((input.useDeviceSize || input.magnifyChanging) && input.currentLeft != kNoPosition &&
        input.currentTop != kNoPosition) {
        layout.left = input.currentLeft;
        layout.top = input.currentTop;
    }
    if (input.useDeviceSize) {
        layout.width = videoWidth + frameWidth;
        layout.height = videoHeight + frameHeight;
    } else if (input.magnifyChanging) {
        layout.width = displayedWidth + frameWidth;
        layout.height = displayedHeight + frameHeight;
    } else {
        layout.width = input.window.right - input.window.left;
        layout.height = input.window.bottom - input.window.top;
    }
    layout.pictureWidth = displayedWidth;
    layout.pictureHeight = displayedHeight;

    // The height limit is built from the frame's width, as it always was.
    int32_t maxWidth = workRight - workLeft - 4 + frameWidth;
    int32_t maxHeight = frameWidth / 2 - workTop + workBottom - 2;

    if (!input.magnifyChanging && input.magnifyClosing) {
        layout.width = displayedWidth + frameWidth;
        layout.height = displayedHeight + frameHeight;
    }

    layout.width = std::max<int32_t>(layout.width, 400);
    layout.height = std::max<int32_t>(layout.height, 300);
    bool overflow = false;
    if (layout.width > maxWidth) {
        layout.width = maxWidth;
        layout.left = 0;
        overflow = true;
    }
    if (layout.height > maxHeight) {
        layout.height = maxHeight;
        layout.top = 0;
        overflow = true;
    }
    if (input.useDeviceSize && !input.magnifyChanging) {
        layout.pictureWidth = videoWidth;
        layout.pictureHeight = videoHeight;
    }
    layout.roomWidth = layout.width - frameWidth;
    layout.roomHeight = layout.height - frameHeight;
    layout.fits = !overflow && layout.pictureWidth <= layout.roomWidth && layout.pictureHeight <= layout.roomHeight;
    return layout;
}

void UpdateMainWindowLayout()
{
    MainLayoutInput input{};
    GetWindowRect(mainWindow, &input.window);
    input.currentLeft = options.windows[MainWindowKey].currentLeft;
    input.currentTop = options.windows[MainWindowKey].currentTop;
    input.useDeviceSize = useDeviceSize;
    input.magnifyChanging = magnifyChanging;
    input.magnifyClosing = magnifyClosing;
    MainLayout layout = ComputeMainLayout(input);

    HWND parent = GetParent(clippingWindow);
    if (layout.fits || !scrollWindow) {
        if (parent != mainWindow) {
            SetParent(clippingWindow, mainWindow);
            UpdateWindow(mainWindow);
        }
        if (scrollWindow)
            ShowWindow(scrollWindow, SW_HIDE);
    } else {
        SetWindowPos(scrollWindow, nullptr, 0, 0, layout.roomWidth, layout.roomHeight, SWP_NOZORDER | SWP_NOACTIVATE);
        if (parent != scrollWindow)
            SetParent(clippingWindow, scrollWindow);
        ShowWindow(scrollWindow, SW_SHOW);
        if (magnifyChanging)
            BringWindowToTop(scrollWindow);
    }
    SetWindowPos(clippingWindow, nullptr, 0, 0, layout.pictureWidth, layout.pictureHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    layoutSettingSize = 1;
    SetWindowPos(mainWindow, nullptr, layout.left, layout.top, layout.width, layout.height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    layoutSettingSize = 0;
    KeepWindowOnScreen(mainWindow);
}

void CopyCurrentToSavedPositions(Options& record)
{
    for (int key = 0; key < WindowKeyCount; ++key) {
        if (key == HibernationWindowKey)
            continue;
        WindowPosition& position = record.windows[key];
        // Only the left is tested.
        if (position.currentLeft != kNoPosition) {
            position.savedLeft = position.currentLeft;
            position.savedTop = position.currentTop;
        }
    }
    record.messageWindowSavedWidth = record.messageWindowWidth;
    record.messageWindowSavedHeight = record.messageWindowHeight;
}

void SaveWindowPositions()
{
    CopyCurrentToSavedPositions(options);
    SaveOptionsOrWarn();
}
