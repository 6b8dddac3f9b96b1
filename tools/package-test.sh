#!/usr/bin/env bash
# Builds the Debian package, unpacks it into a scratch root with `dpkg -x`
# and checks what it installs: the program and the libraries it needs, the
# help, the desktop entry (desktop-file-validate), the icons and the live
# feed server.
# Usage: tools/package-test.sh [build-dir]   (default: build-package; an
# existing build folder is reused as it is configured)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build-package}
case "$build" in /*) ;; *) build=$PWD/$build ;; esac

if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DVELORIN_BUILD_TESTS=OFF -DVELORIN_BUILD_BENCH=OFF
fi
cmake --build "$build" -j2
rm -f "$build"/qdx-velorin_*.deb
(cd "$build" && cpack -G DEB >/dev/null)
deb=$(ls "$build"/qdx-velorin_*.deb)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
dpkg -x "$deb" "$scratch"

passed=0
failed=0
check() { # check "what" command...
  local what=$1
  shift
  if "$@" >/dev/null 2>&1; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: $what" >&2
  fi
}
# The width and height a PNG file states in its header.
png_size() { od -An -tu1 -j16 -N8 "$1" | awk '{print $1*16777216+$2*65536+$3*256+$4 "x" $5*16777216+$6*65536+$7*256+$8}'; }
png_is() { [ "$(head -c 8 "$1" | od -An -tx1 | tr -d ' \n')" = 89504e470d0a1a0a ] && [ "$(png_size "$1")" = "$2" ]; }
no_missing_libraries() { ! ldd "$1" | grep -q 'not found'; }
depends_on() { dpkg-deb -f "$deb" Depends | tr ',' '\n' | sed 's/^ *//; s/ .*//' | grep -qx "$1"; }

usr=$scratch/usr
check "the program is installed and executable" test -x "$usr/bin/velorin"
check "every library of the program is found" no_missing_libraries "$usr/bin/velorin"
check "the feed server is installed and executable" test -x "$usr/bin/velorin-feed"
check "every library of the feed server is found" no_missing_libraries "$usr/bin/velorin-feed"
check "the feed server starts and tells its options" "$usr/bin/velorin-feed" --help
for pkg in libqt6widgets6 libqt6gui6 libqt6core6 libqt6dbus6 libqt6svg6 qt6-qpa-plugins fonts-liberation2; do
  check "the package depends on $pkg" depends_on "$pkg"
done

help=$usr/share/velorin/help
check "the help index is installed" test -f "$help/index.html"
# Every page, style sheet and picture a help page refers to is installed.
for page in "$help"/*.html; do
  for target in $(grep -oE '(href|src)="[^"#:]*' "$page" | sed 's/^[a-z]*="//' | sort -u); do
    check "$(basename "$page") links to $target" test -f "$help/$target"
  done
done

entry=$usr/share/applications/velorin.desktop
check "the desktop entry is installed" test -f "$entry"
check "desktop-file-validate accepts the entry" desktop-file-validate "$entry"
check "the entry starts the installed program" \
  test -x "$usr/bin/$(sed -n 's/^Exec=\([^ ]*\).*/\1/p' "$entry")"
check "the entry is listed under Office and Finance" grep -qx 'Categories=Office;Finance;' "$entry"

icons=$usr/share/icons/hicolor
icon=$(sed -n 's/^Icon=//p' "$entry")
check "the scalable icon is installed" test -f "$icons/scalable/apps/$icon.svg"
for size in 16 22 24 32 48 64 128 256; do
  check "the ${size}x${size} icon is a PNG of that size" png_is "$icons/${size}x${size}/apps/$icon.png" "${size}x${size}"
done

echo "$(basename "$deb"): $passed passed, $failed failed"
[ "$failed" -eq 0 ]
