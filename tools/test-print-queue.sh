#!/usr/bin/env bash
# Prints the sample desk through a real print queue: a PDF queue of the
# cups-pdf driver (Debian's printer-driver-cups-pdf), made for this run and
# taken as the default printer by the test. The test sends "Print..." of the
# frame and reads the queue's PDF back with pdftoppm. Starts the scheduler
# when it is not running, and stops it again afterwards; the queue and its
# settings go at the end. Needs root; skips with a message where it cannot
# run.
# Usage: tools/test-print-queue.sh [build-dir]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
tests=$build/tests/output/output_qt_tests
queue=VelorinTestPDF
instance=velorintest # the cups-pdf instance: its settings in cups-pdf-$instance.conf
settings=/etc/cups/cups-pdf-$instance.conf

skip() {
  echo "test-print-queue: skipped: $*"
  exit 0
}
[ "$(id -u)" -eq 0 ] || skip "needs root to set up a print queue"
for tool in cupsd lpadmin lpstat pdftoppm; do
  command -v "$tool" >/dev/null || skip "$tool is not installed (cups, poppler-utils)"
done
[ -x /usr/lib/cups/backend/cups-pdf ] && [ -d /var/spool/cups-pdf ] ||
  skip "the cups-pdf driver is not installed (printer-driver-cups-pdf)"
[ -x "$tests" ] || skip "$tests is not built"

# The driver's own spool folder: a confined scheduler may write nowhere else.
out=$(mktemp -d /var/spool/cups-pdf/velorin-test.XXXXXX)
scheduler=
cleanup() {
  lpadmin -x "$queue" 2>/dev/null || true
  rm -f "$settings"
  rm -rf "$out"
  if [ -n "$scheduler" ]; then kill "$scheduler" 2>/dev/null || true; fi
}
trap cleanup EXIT

if ! lpstat -r 2>/dev/null | grep -q "is running"; then
  cupsd -f &
  scheduler=$!
  for _ in $(seq 50); do
    lpstat -r 2>/dev/null | grep -q "is running" && break
    sleep 0.2
  done
  lpstat -r 2>/dev/null | grep -q "is running" || { echo "test-print-queue: cupsd did not start" >&2; exit 1; }
fi

printf 'Out %s\nAnonDirName %s\nLabel 0\n' "$out" "$out" >"$settings"
ppd=$(lpinfo -m 2>/dev/null | awk '/CUPS-PDF_opt.ppd/ {print $1; exit}')
[ -n "$ppd" ] || ppd=lsb/usr/cups-pdf/CUPS-PDF_opt.ppd
lpadmin -p "$queue" -E -v "cups-pdf:/$instance" -m "$ppd" 2>/dev/null

# PRINTER names the default printer for this process alone.
log=$out/test.log
if ! PRINTER=$queue VELORIN_TEST_PRINT_FOLDER=$out QT_QPA_PLATFORM=offscreen \
  timeout 120 "$tests" --gtest_filter=DeskPicture.SavedAndPrinted >"$log" 2>&1 ||
  ! grep -q "^\[  PASSED  \] 1 test" "$log" || ! ls "$out"/*.pdf >/dev/null 2>&1; then
  cat "$log"
  echo "test-print-queue: FAILED" >&2
  exit 1
fi
echo "test-print-queue: the desk printed on $queue and read back from its PDF: passed"
