#!/usr/bin/env bash
# Starts QDX-Velorin in a sample working directory with generated ".PRC" files
# and the sample database, registered as the ODBC data source "VelorinSample".
# Usage: tools/run-sample-desk.sh [build-dir]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
desk=$root/desk
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
exec "$build/velorin"
