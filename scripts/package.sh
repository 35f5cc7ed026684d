#!/usr/bin/env bash
# Builds the Debian package: a release build, installed by CPack into a .deb whose library
# dependencies come from dpkg-shlibdeps. Prints the package's control data and contents.
set -euo pipefail
cd "$(dirname "$0")/.."

MW_PACKAGE=1 scripts/deps.sh
cmake -S . -B build-package -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
      -DMW_BUILD_TESTS=OFF >/dev/null
cmake --build build-package -j"$(nproc)" --target meshwright meshwright-cli
(cd build-package && cpack -G DEB >/dev/null)
deb=$(ls -t build-package/meshwright_*.deb | head -n 1)
dpkg-deb --info "$deb"
dpkg-deb --contents "$deb"
echo "Built $deb"
