#!/usr/bin/env bash
# Builds everything and runs every test: the normal build and its tests, the
# Debian package unpacked and checked, then the Qt-free libraries and their
# tests again under AddressSanitizer and UBSan.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j2
ctest --test-dir build --output-on-failure --schedule-random -j2
bash tools/package-test.sh build
bash tools/test-print-queue.sh build
bash tools/odbc/test-odbc-drivers.sh build
cmake -S . -B build-asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVELORIN_SANITIZE=ON \
  -DVELORIN_BUILD_GUI=OFF -DVELORIN_BUILD_BENCH=OFF
cmake --build build-asan -j2
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build-asan --output-on-failure --schedule-random -j2
