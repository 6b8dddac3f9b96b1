#!/usr/bin/env bash
# Registers an SQLite database as a user ODBC data source (in ~/.odbc.ini,
# or in the file that ODBCINI names), replacing an earlier entry of that name.
# Usage: tools/odbc/register-sample-dsn.sh <database-file> [name]   (name: VelorinSample)
set -euo pipefail
database=$(realpath "$1")
name=${2:-VelorinSample}
if ! command -v odbcinst >/dev/null; then
  echo "odbcinst not found: install unixodbc, odbcinst and libsqliteodbc (tools/install-deps.sh)" >&2
  exit 1
fi
# The SQLite 3 driver as the package registers it, else its library by path.
driver=SQLite3
if ! odbcinst -q -d -n "$driver" >/dev/null 2>&1; then
  driver=$(ls /usr/lib/*/odbc/libsqlite3odbc.so /usr/lib/odbc/libsqlite3odbc.so 2>/dev/null | head -n1 || true)
  if [ -z "$driver" ]; then
    echo "The SQLite ODBC driver is not installed (Debian package libsqliteodbc)" >&2
    exit 1
  fi
fi
odbcinst -u -s -h -n "$name" >/dev/null 2>&1 || true
odbcinst -i -s -h -r >/dev/null <<INI
[$name]
Description = QDX-Velorin sample prices
Driver = $driver
Database = $database
INI
echo "ODBC data source $name -> $database"
