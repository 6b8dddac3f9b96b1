#!/usr/bin/env bash
# Installs what building, running and testing QDX-Velorin needs on Debian 12 (as root).
set -euo pipefail
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends \
  build-essential cmake ninja-build pkg-config \
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev \
  libgtest-dev libgmock-dev libbenchmark-dev \
  clang libclang-rt-14-dev \
  libqcustomplot-dev libqcustomplot2.1-qt6 \
  fonts-liberation2 \
  librsvg2-bin desktop-file-utils \
  xvfb xauth x11-utils imagemagick xdotool \
  cups printer-driver-cups-pdf poppler-utils >/dev/null
# The session bus of the live feed, and python-dbus for its interoperability test.
apt-get install -y -qq --no-install-recommends dbus dbus-daemon python3-dbus python3-gi >/dev/null
apt-get install -y -qq --no-install-recommends unixodbc unixodbc-dev odbcinst libsqliteodbc libsqlite3-dev postgresql odbc-postgresql >/dev/null
