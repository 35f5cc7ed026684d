#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those that are missing.
set -euo pipefail

packages=(g++ cmake make libgtest-dev libbenchmark-dev qt6-base-dev libqt6opengl6-dev
          libgl-dev libglu1-mesa-dev libgl1-mesa-dri libegl-dev libegl-mesa0 xvfb xauth
          fonts-dejavu-core libassimp-dev libtinygltf-dev nlohmann-json3-dev)
[ "${MW_FUZZ:-0}" = 1 ] && packages+=(clang-14 libfuzzer-14-dev libclang-rt-14-dev)
# The .deb: dpkg-shlibdeps works out the library dependencies, CPack finds binaries with file.
[ "${MW_PACKAGE:-0}" = 1 ] && packages+=(dpkg-dev file)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; exit 1; }
    sudo=sudo
fi
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
