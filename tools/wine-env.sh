# Shell functions shared by the scripts that run this project's Windows
# programs under Wine. Source it with WINEPREFIX set.

# An X display for Wine: the caller's if it answers, else a private Xvfb on :99.
mavu_display_ready() {
    if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
        return 0
    fi
    export DISPLAY="${MAVU_XVFB_DISPLAY:-:99}"
    if xdpyinfo >/dev/null 2>&1; then
        return 0
    fi
    (
        flock 8
        if ! xdpyinfo >/dev/null 2>&1; then
            setsid Xvfb "$DISPLAY" -screen 0 1920x1080x24 -nolisten tcp </dev/null >/dev/null 2>&1 8>&- &
            for _ in $(seq 1 100); do
                xdpyinfo >/dev/null 2>&1 && break
                sleep 0.1
            done
        fi
    ) 8>/tmp/.mavu-xvfb.lock
    xdpyinfo >/dev/null 2>&1
}

# The prefix, made once: no crash dialog, no debugger that could hang a test.
mavu_prefix_ready() {
    mkdir -p "$(dirname "$WINEPREFIX")"
    (
        flock 9
        if [ ! -f "$WINEPREFIX/.mavu-ready" ]; then
            WINEDLLOVERRIDES="mscoree,mshtml=" wineboot -i </dev/null >/dev/null 2>&1 9>&- || true
            wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1
            # No window manager runs under Xvfb: with managed windows the X11
            # driver waits 2 s for one at each hide. Unmanaged, Wine draws
            # the frames itself, as Windows would.
            wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null 2>&1
            wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Auto /t REG_SZ /d 0 /f >/dev/null 2>&1
            wine reg delete 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /f >/dev/null 2>&1 || true
            wineserver -w
            touch "$WINEPREFIX/.mavu-ready"
        fi
    ) 9>"$WINEPREFIX.lock"
}

# Wine's Direct3D can draw into a child window, such as the program's
# picture window, only through its Vulkan renderer here: the default OpenGL
# path of this distribution's Wine draws a child window's picture nowhere.
# With a Vulkan driver installed the prefix takes the Vulkan renderer, once;
# MAVU_DIRECT3D_RENDERER=default leaves the prefix as Wine makes it.
mavu_direct3d_ready() {
    [ -f "$WINEPREFIX/.mavu-direct3d" ] && return 0
    [ "${MAVU_DIRECT3D_RENDERER:-vulkan}" = "vulkan" ] || return 0
    ls /usr/share/vulkan/icd.d/*.json >/dev/null 2>&1 || return 0
    (
        flock 9
        if [ ! -f "$WINEPREFIX/.mavu-direct3d" ]; then
            wine reg add 'HKCU\Software\Wine\Direct3D' /v renderer /t REG_SZ /d vulkan /f </dev/null >/dev/null 2>&1 9>&-
            touch "$WINEPREFIX/.mavu-direct3d"
        fi
    ) 9>"$WINEPREFIX.lock"
}

# One persistent wineserver per prefix keeps each program start near 50 ms.
# The prefix's services (services.exe, winedevice.exe) live as long as that
# server; they are started here with no terminal or pipe of the caller, since
# whatever they inherit stays open (a ctest run would wait on it forever).
mavu_wineserver_ready() {
    setsid wineserver -p </dev/null >/dev/null 2>&1 || true
    wine cmd /c exit </dev/null >/dev/null 2>&1 || true
}

# The program's dialogs ask for Tahoma, Consolas and Lucida Console. Tahoma is
# Wine's own (fonts-wine); the two fixed faces are Windows' and stand in here
# as Liberation Mono, whose advance (0.60 em) equals Lucida Console's and is
# wider than Consolas' (0.55 em): a text that fits here fits on Windows.
mavu_fonts_ready() {
    [ -f "$WINEPREFIX/.mavu-fonts" ] && return 0
    (
        flock 9
        if [ ! -f "$WINEPREFIX/.mavu-fonts" ]; then
            for face in Consolas "Lucida Console"; do
                wine reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$face" /t REG_SZ /d "Liberation Mono" /f \
                    </dev/null >/dev/null 2>&1 9>&-
            done
            touch "$WINEPREFIX/.mavu-fonts"
        fi
    ) 9>"$WINEPREFIX.lock"
}

mavu_wine_ready() {
    mavu_display_ready
    mavu_prefix_ready
    mavu_wineserver_ready
    mavu_direct3d_ready
    mavu_fonts_ready
}
