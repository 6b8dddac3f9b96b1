#!/usr/bin/env bash
# Soak run of the live feed: the program on a virtual display and a private
# session bus, one live price chart (the sample ACME history with its live
# last row, Timer 1 s) and the ten analyses of "Make All", while velorin-feed
# pushes ticks at a high rate. Every five seconds the program's resident
# memory and processor share are sampled; at the end a screenshot of the
# desk is kept. Prints a summary; exits 1 when memory grew by more than 5 %
# from the first sample after the charts opened to the last.
# Usage: tools/soak-live.sh [build-dir] [seconds] [ticks-per-second]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$root/build}" && pwd)
seconds=${2:-60}
rate=${3:-10000}

if [ -z "${SOAK_INNER:-}" ]; then
  for tool in Xvfb xdotool import dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "soak-live: $tool is needed" >&2; exit 2; }
  done
  work=$(mktemp -d)
  display=:$((90 + RANDOM % 100))
  Xvfb "$display" -screen 0 1600x1000x24 >/dev/null 2>&1 &
  xvfb=$!
  trap 'kill $xvfb 2>/dev/null || true' EXIT
  sleep 1
  SOAK_INNER=1 SOAK_WORK=$work DISPLAY=$display \
    dbus-run-session -- "$0" "$build" "$seconds" "$rate"
  exit $?
fi

work=$SOAK_WORK
cd "$work"
"$build/tools/sample_data/velorin_sample_data" "$work" >/dev/null
mkdir -p tmp
"$build/velorin-feed" --folder "$work" --rate "$rate" --seed 7 >feed.log 2>&1 &
feed=$!
# A folder of its own for the program's single-instance socket, so that a
# program already running for this user does not take the start over.
TMPDIR=$work/tmp "$build/velorin" >velorin.log 2>&1 &
program=$!
trap 'kill $program $feed 2>/dev/null || true' EXIT
sleep 8 # the start-up notice stays five seconds

# Without a window manager nothing has the keyboard until a menu is open:
# the menus are opened with the mouse (Connection and PrcTools on the menu
# bar), their entries chosen by their mnemonic keys.
typeField() { xdotool key ctrl+a && xdotool type --delay 20 "$1" && xdotool key Tab; }
xdotool mousemove 78 8 click 1 && sleep 0.5 && xdotool key c && sleep 1
typeField Reuter; typeField TS1; typeField ACME; typeField 1
xdotool key Return
sleep 3
xdotool mousemove 150 8 click 1 && sleep 0.5 && xdotool key m
sleep 3
import -window root "$work/soak-start.png"

ticks=$(getconf CLK_TCK)
cpu() { awk '{print $14 + $15}' "/proc/$program/stat"; }
rss() { awk '/^VmRSS:/ {print $2}' "/proc/$program/status"; }
first_rss=$(rss)
start_cpu=$(cpu)
start=$(date +%s.%N)
printf '%8s %10s %8s\n' seconds rss_kib cpu_%
for ((t = 5; t <= seconds; t += 5)); do
  sleep 5
  now=$(date +%s.%N)
  used=$(cpu)
  printf '%8d %10d %8.1f\n' "$t" "$(rss)" \
    "$(echo "($used - $start_cpu) / $ticks / ($now - $start) * 100" | bc -l)"
done
last_rss=$(rss)
import -window root "$work/soak-end.png"
growth=$(echo "($last_rss - $first_rss) * 100 / $first_rss" | bc -l)
printf 'resident memory %d -> %d KiB (%.1f %%); screenshots in %s\n' \
  "$first_rss" "$last_rss" "$growth" "$work"
if (($(echo "$growth > 5" | bc -l))); then exit 1; fi
