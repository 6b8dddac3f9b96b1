#!/usr/bin/env bash
# A private PostgreSQL cluster for the database tests, on 127.0.0.1 only,
# with everything in one folder. As root the server runs as "postgres".
#   tools/odbc/pg-cluster.sh start <folder> <port> <build-dir>
#       creates the cluster (user "velorin", password "velorin-test"), loads
#       the sample rows, the tests' bad-input tables and a function returning
#       ACME's rows, and writes the
#       ODBC data source "VelorinPg" into <folder>/odbc.ini
#   tools/odbc/pg-cluster.sh stop <folder>
set -euo pipefail
action=$1
folder=$(realpath "$2")
root=$(cd "$(dirname "$0")/../.." && pwd)
bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n1)
if [ -z "$bin" ]; then
  echo "PostgreSQL server not installed (Debian package postgresql)" >&2
  exit 1
fi
as_owner() {
  if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

case $action in
start)
  port=$3
  build=$4
  mkdir -p "$folder/data" "$folder/socket"
  echo "velorin-test" >"$folder/password"
  if [ "$(id -u)" = 0 ]; then chown -R postgres "$folder"; fi
  as_owner "$bin/initdb" -D "$folder/data" -U velorin -A scram-sha-256 \
    --pwfile="$folder/password" --no-sync -E UTF8 >"$folder/initdb.log"
  as_owner "$bin/pg_ctl" -D "$folder/data" -l "$folder/server.log" -w \
    -o "-c listen_addresses=127.0.0.1 -p $port -k $folder/socket -c fsync=off" start >/dev/null
  export PGPASSWORD=velorin-test
  psql=(psql -h 127.0.0.1 -p "$port" -U velorin -q -v ON_ERROR_STOP=1)
  "${psql[@]}" -d postgres -c "CREATE DATABASE velorin" >/dev/null
  "$build/tools/sample_data/velorin_sample_data" --sql | "${psql[@]}" -d velorin >/dev/null
  "${psql[@]}" -d velorin -f "$root/tests/odbc_driver/test_tables.sql" >/dev/null
  "${psql[@]}" -d velorin >/dev/null <<'SQL'
CREATE FUNCTION acme_prices() RETURNS TABLE (tradedate DATE, close DOUBLE PRECISION,
    open DOUBLE PRECISION, high DOUBLE PRECISION, low DOUBLE PRECISION,
    volume DOUBLE PRECISION)
  LANGUAGE sql STABLE AS
  'SELECT tradedate, close, open, high, low, volume FROM prices WHERE code = ''ACME'' ORDER BY tradedate';
SQL
  driver="PostgreSQL ANSI"
  if ! odbcinst -q -d -n "$driver" >/dev/null 2>&1; then
    driver=$(ls /usr/lib/*/odbc/psqlodbca.so 2>/dev/null | head -n1)
  fi
  cat >"$folder/odbc.ini" <<INI
[VelorinPg]
Description = QDX-Velorin test server
Driver = $driver
Servername = 127.0.0.1
Port = $port
Database = velorin
INI
  if [ "$(id -u)" = 0 ]; then chown postgres "$folder/odbc.ini"; chmod a+r "$folder/odbc.ini"; fi
  ;;
stop)
  if [ -f "$folder/data/postmaster.pid" ]; then
    as_owner "$bin/pg_ctl" -D "$folder/data" -m fast -w stop >/dev/null
  fi
  ;;
*)
  echo "usage: $0 start <folder> <port> <build-dir> | stop <folder>" >&2
  exit 2
  ;;
esac
