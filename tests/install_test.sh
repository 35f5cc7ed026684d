#!/bin/sh
# Installs the build into a scratch prefix, checks that every file a desktop needs is
# there, and runs the installed programs from there as a user and a file manager would.
set -eu
build=$1
sample_data=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

cmake --install "$build" --prefix "$prefix" >/dev/null
for f in bin/meshwright bin/meshwright-cli \
         share/meshwright/help/index.html share/meshwright/help/preferences.html \
         share/meshwright/samples/ship.oof share/meshwright/samples/gamedata/d3.hog \
         share/applications/meshwright.desktop share/mime/packages/meshwright.xml \
         share/thumbnailers/meshwright.thumbnailer \
         share/icons/hicolor/scalable/apps/meshwright.svg share/doc/meshwright/README.md; do
    [ -f "$prefix/$f" ] || { echo "not installed: $f"; exit 1; }
done
grep -qx 'MimeType=model/x-descent3-oof;model/x-descent3-orf;' \
    "$prefix/share/applications/meshwright.desktop"
grep -q '<match type="string" offset="0" value="PSPO"/>' \
    "$prefix/share/mime/packages/meshwright.xml"
if command -v xmllint >/dev/null; then
    xmllint --noout "$prefix/share/mime/packages/meshwright.xml" \
        "$prefix/share/icons/hicolor/scalable/apps/meshwright.svg"
fi
if command -v desktop-file-validate >/dev/null; then
    desktop-file-validate "$prefix/share/applications/meshwright.desktop"
fi

# The installed tool finds its manual through its own location.
"$prefix/bin/meshwright-cli" --help |
    grep -qx "The manual: $prefix/share/meshwright/help/index.html" ||
    { echo "the installed meshwright-cli does not find its manual"; exit 1; }
"$prefix/bin/meshwright-cli" --version | grep -q '^Meshwright v'
"$prefix/bin/meshwright" --help | grep -q '^Usage: '

# The thumbnailer's command, as a file manager runs it: no display, the tool on the PATH.
exec_line=$(sed -n 's/^Exec=//p' "$prefix/share/thumbnailers/meshwright.thumbnailer")
model="$prefix/share/meshwright/samples/ship.oof"
out="$prefix/thumb.png"
command=$(printf '%s' "$exec_line" | sed "s|%i|$model|; s|%o|$out|; s|%s|64|")
# shellcheck disable=SC2086
env -u DISPLAY -u WAYLAND_DISPLAY PATH="$prefix/bin:$PATH" $command --d3hog "$sample_data"
[ "$(head -c 8 "$out" | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ] ||
    { echo "the thumbnailer wrote no PNG"; exit 1; }
echo "installed and ran from $prefix"
