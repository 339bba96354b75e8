#!/usr/bin/env bash
# Installs what building and testing need, on Debian 12, as root. Installs
# only what is missing.
set -euo pipefail
packages=(
    cmake ninja-build g++-mingw-w64-x86-64-posix
    wine wine64 mesa-vulkan-drivers
    fonts-wine fonts-liberation
    xvfb x11-utils imagemagick
    googletest ffmpeg socat
    python3
)
missing=()
for package in "${packages[@]}"; do
    dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
