#!/usr/bin/env bash
# The database tests against both drivers: installs what is missing (as
# root), starts a private PostgreSQL cluster on a free loopback port in a
# temporary folder, runs the ODBC suites against SQLite and PostgreSQL, and
# stops the cluster whatever happens.
# Usage: tools/odbc/test-odbc-drivers.sh [build-dir]
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(realpath "${1:-$root/build}")
packages=(unixodbc unixodbc-dev odbcinst libsqliteodbc libsqlite3-dev postgresql odbc-postgresql)
missing=()
for p in "${packages[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" = 0 ]; then
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
  else
    echo "missing packages: ${missing[*]} (run tools/install-deps.sh as root)" >&2
    exit 1
  fi
fi

work=$(mktemp -d /tmp/velorin-pg.XXXXXX)
chmod 755 "$work"
cleanup() {
  "$root/tools/odbc/pg-cluster.sh" stop "$work" || true
  rm -rf "$work"
}
trap cleanup EXIT

# A free port on the loopback interface.
port=
for candidate in $(shuf -i 40000-60000 -n 50); do
  if ! (exec 3<>"/dev/tcp/127.0.0.1/$candidate") 2>/dev/null; then
    port=$candidate
    break
  fi
done
[ -n "$port" ] || { echo "no free port found" >&2; exit 1; }

"$root/tools/odbc/pg-cluster.sh" start "$work" "$port" "$build"
export ODBCINI=$work/odbc.ini
export VELORIN_TEST_PG_DSN=VelorinPg VELORIN_TEST_PG_USER=velorin VELORIN_TEST_PG_PASSWORD=velorin-test
ctest --test-dir "$build" --output-on-failure -j2 \
  -R '^(OdbcTest|Drivers/DriverTest|DatabaseCommand)\.'
