#include "ui/codec_selector_window.h"

#include <cwchar>
#include <string>

#include "app/recording_control.h"
#include "persistence/options.h"
#include "ui/control_ids.h"
#include "ui/dialog_common.h"
#include "ui/fonts.h"
#include "video/codec_choice.h"
#include "video/codecs.h"
#include "video/video_player.h"
#include "video/video_sources.h"

namespace {

HWND codecSelectorWindow = nullptr;

HWND Item(int id)
{
    return GetDlgItem(codecSelectorWindow, id);
}

// The list row of the codec chosen last: the last row whose name any pair
// names, whatever that pair's format; -1 when none does.
int PairedRow()
{
    int row = -1;
    for (size_t line = 0; line < usableCodecs.size(); ++line)
        for (const SubtypeCodecPair* pair : subtypeCodecPairs)
            if (pair && pair->codec && wcscmp(pair->codec->name, usableCodecs[line]->name) == 0)
                row = static_cast<int>(line);
    return row;
}

void OnOk()
{
    int row = static_cast<int>(SendMessageW(Item(kCodecList), LB_GETCURSEL, 0, 0));
    bool save = IsButtonChecked(Item(kCodecSaveBox));
    ShowWindow(codecSelectorWindow, SW_HIDE);
    // The pairing counts at the next recording's graph: no restart.
    SelectUsableCodec(row, CurrentSubtype(), save);
}

LRESULT CALLBACK CodecSelectorWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED) {
        switch (LOWORD(wParam)) {
        case kCodecSaveBox:
            SetWindowTextW(Item(kCodecOkButton), IsButtonChecked(Item(kCodecSaveBox)) ? L"Save" : L"OK");
            break;
        case kCodecOkButton:
            OnOk();
            break;
        case kCodecCancelButton:
            ShowWindow(window, SW_HIDE);
            break;
        }
        return 0;
    }
    LRESULT result = 0;
    if (HandleCommonDialogMessage(window, message, wParam, CodecSelectorWindowKey, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

bool CreateCodecSelectorWindow(HINSTANCE instance)
{
    HWND window = CreateToolWindow(instance, L"CodecSelector", CodecSelectorWindowProc, L"Codec Selector",
                                   kPlainWindowStyle, 470, 440, CodecSelectorWindowKey);
    if (!window)
        return false;
    codecSelectorWindow = window;
    CreateLabel(window, L"Select codec from list below for", 30, 15, 400);
    CreateLabel(window, L"", 30, 40, 400, 20, kCodecSubtypeLabel);
    CreateControl(window, L"LISTBOX", L"", WS_BORDER | WS_VSCROLL | LBS_NOTIFY | WS_TABSTOP, 30, 70, 395, 200,
                  kCodecList, appFonts[ListFont]);
    CreateCheckBox(window, L"Save selection in Options file", 30, 285, 350, kCodecSaveBox);
    CreatePushButton(window, L"OK", 90, 335, 100, 30, kCodecOkButton);
    CreatePushButton(window, L"Cancel", 260, 335, 100, 30, kCodecCancelButton);
    return true;
}

void OpenCodecSelectorWindow()
{
    wchar_t subtype[16] = L"";
    CurrentSubtypeName(subtype);
    SetWindowTextW(Item(kCodecSubtypeLabel), (std::wstring(subtype) + L" format").c_str());

    // The trial stops the camera, tries each compressor on the current
    // format and starts the camera again; a failure leaves the list empty.
    usableCodecs.clear();
    usableCodecIndexes.clear();
    if (VideoPlayer* player = CurrentVideoPlayer())
        player->GetCodecsForSourceDevice(StartVideo);
    HWND list = Item(kCodecList);
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (const CodecRecord* codec : usableCodecs)
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(codec->name));
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(PairedRow()), 0);
    SetButtonChecked(Item(kCodecSaveBox), false);
    SetWindowTextW(Item(kCodecOkButton), L"OK");
    ShowPlacedDialog(codecSelectorWindow);
}
