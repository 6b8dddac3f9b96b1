#!/usr/bin/env bash
# Starts QDX-Velorin in a sample working directory with generated ".PRC" files
# and the sample database, registered as the ODBC data source "VelorinSample",
# and the live feed server velorin-feed on the same files for as long as the
# program runs (on a session bus of its own when there is none).
# Usage: tools/run-sample-desk.sh [build-dir]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
# The build folder as an absolute path: the program starts inside the desk.
build=$(cd "${1:-$root/build}" && pwd)
desk=$root/desk
feed=$build/velorin-feed
if [ -x "$feed" ] && [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] &&
  [ ! -S "${XDG_RUNTIME_DIR:-/nonexistent}/bus" ] && command -v dbus-run-session >/dev/null; then
  exec dbus-run-session -- "$0" "$build"
fi
"$build/tools/sample_data/velorin_sample_data" "$desk"
# The sample database as the user's ODBC data source "VelorinSample".
if [ -f "$desk/velorin_sample.db" ] && command -v odbcinst >/dev/null; then
  "$root/tools/odbc/register-sample-dsn.sh" "$desk/velorin_sample.db" || true
fi
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display found: QDX-Velorin is a desktop program and needs one." >&2
  echo "Run it under a virtual display instead:" >&2
  echo "  xvfb-run -a -s '-screen 0 1600x1000x24' $0 $build" >&2
  exit 1
fi
cd "$desk"
if [ ! -x "$feed" ]; then
  exec "$build/velorin"
fi
"$feed" --folder "$desk" &
feed_pid=$!
trap 'kill "$feed_pid" 2>/dev/null || true' EXIT
"$build/velorin"
