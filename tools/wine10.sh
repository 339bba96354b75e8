#!/usr/bin/env bash
# Runs a command of this project under Wine 10, in a Debian 13 root kept in
# build/wine10-root. The root is made on first use (as root, with debootstrap,
# from this machine's package mirror) and holds only what running the
# programs and the tests needs; the Windows binaries are the ones in build/.
#   bash tools/wine10.sh COMMAND [ARGS...]
# The command runs inside the root, in the project's folder, with the build's
# programs in a prefix of their own (build/wineprefix-wine10) and a private
# Xvfb on display :98, since X's abstract socket is shared with the host.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
chroot_dir="$root/build/wine10-root"
mirror=$(grep -hoE 'https?://[^ ]+/debian/?$|^URIs: https?://[^ ]+/debian/?$' \
    /etc/apt/sources.list /etc/apt/sources.list.d/* 2>/dev/null |
    sed 's/^URIs: //' | head -n 1 || true)
mirror=${mirror:-http://deb.debian.org/debian}

packages=(
    wine wine64 fonts-wine fonts-liberation
    mesa-vulkan-drivers xvfb x11-utils xauth imagemagick
    ffmpeg socat python3 cmake procps util-linux
)

make_root() {
    (
        flock 9
        command -v debootstrap >/dev/null || {
            DEBIAN_FRONTEND=noninteractive apt-get install -y -qq debootstrap >/dev/null
        }
        if [ ! -x "$chroot_dir/usr/bin/apt-get" ]; then
            echo "Making a Debian 13 root for Wine 10 in $chroot_dir (once)..."
            debootstrap --variant=minbase trixie "$chroot_dir" "$mirror" >/dev/null
        fi
        local missing=() package
        for package in "${packages[@]}"; do
            chroot "$chroot_dir" dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
        done
        [ ${#missing[@]} -eq 0 ] && exit 0
        cp /etc/resolv.conf "$chroot_dir/etc/resolv.conf" 2>/dev/null || true
        chroot "$chroot_dir" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
        chroot "$chroot_dir" env DEBIAN_FRONTEND=noninteractive \
            apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
    ) 9>"$root/build/wine10-root.lock"
}

mount_root() {
    mkdir -p "$chroot_dir$root"
    local target
    for target in /proc /sys /dev /dev/pts /tmp "$root"; do
        mkdir -p "$chroot_dir$target"
        mountpoint -q "$chroot_dir$target" || mount --bind "$target" "$chroot_dir$target"
    done
}

# The project is mounted inside its own build folder while the command runs:
# everything is unmounted again at the end, so that nothing walking the
# project's tree meets the root's /proc or the project a second time. One
# command at a time.
unmount_root() {
    local target
    for target in "$root" /tmp /dev/pts /dev /sys /proc; do
        mountpoint -q "$chroot_dir$target" && umount -l "$chroot_dir$target"
    done
    return 0
}

mkdir -p "$root/build"
make_root
trap unmount_root EXIT
mount_root
cd "$root"
chroot "$chroot_dir" env -i \
    HOME=/root PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin \
    LANG=C.UTF-8 TERM="${TERM:-dumb}" \
    MAVU_WINEPREFIX="$root/build/wineprefix-wine10" \
    MAVU_XVFB_DISPLAY=:98 \
    MAVU_DIRECT3D_RENDERER="${MAVU_DIRECT3D_RENDERER:-default}" \
    ${WINE_D3D_CONFIG:+WINE_D3D_CONFIG="$WINE_D3D_CONFIG"} \
    bash -c 'cd "$1" && shift && exec "$@"' mavu10 "$root" "$@"
