# Services the test suite needs, started privately for one test run and stopped after it.
# Sourced by ./run test. Exports:
#   QR_TEST_PG         connection string of a private PostgreSQL cluster (tests make their own
#                      databases)
#   QR_TEST_ODBC_PG    ODBC connection string reaching that cluster through Debian's PostgreSQL
#                      ODBC driver (tests append ;Database=<their database>)
#   ODBCSYSINI, ODBCINI  a private driver and data source registration under the state folder,
#                      so the tests do not depend on (or touch) the machine's ODBC setup
# Nothing listens outside loopback, and nothing survives the run.
#
#   services_start DIR   state and logs under DIR, a folder the postgres account can enter
#                        (./run test makes one under /tmp); returns 1 after a one-line reason
#                        and the tail of the failing step's log
#   services_stop        stops the server

# shellcheck source=scripts/service-failed.sh
source "$(dirname "${BASH_SOURCE[0]}")/service-failed.sh"
_service_failed() { service_failed test-services "$@"; }

services_start() {
  local state=$1
  mkdir -p "$state" || { _service_failed "making $state"; return 1; }
  QR_SERVICES_STATE=$state
  _pg_start "$state/pg" || return 1
  _odbc_register "$state/odbc" || return 1
}

services_stop() {
  [ -n "${QR_SERVICES_STATE:-}" ] || return 0
  _pg_stop "$QR_SERVICES_STATE/pg"
}

_pg_bin() {
  ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1
}

_as_pg() {
  # initdb and postgres refuse to run as root; run them as the postgres account there.
  if [ "$(id -u)" -eq 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

_pg_start() {
  local dir=$1 bin port
  bin=$(_pg_bin)
  if [ -z "$bin" ]; then
    _service_failed "PostgreSQL (no /usr/lib/postgresql/*/bin: is the postgresql package installed?)"
    return 1
  fi
  mkdir -p "$dir" || { _service_failed "making $dir"; return 1; }
  if [ "$(id -u)" -eq 0 ]; then
    chown postgres "$dir" || { _service_failed "giving $dir to the postgres account"; return 1; }
    # The account must reach its folder from the root down; say so instead of letting initdb
    # fail with a bare "Permission denied".
    runuser -u postgres -- test -w "$dir" ||
      { _service_failed "PostgreSQL (the postgres account cannot enter $dir)"; return 1; }
  fi
  # A free loopback port, so a second checkout's test run does not collide with this one.
  port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])' 2>/dev/null || echo 54329)
  _as_pg "$bin/initdb" -D "$dir/data" -U postgres -A trust -E UTF8 --no-locale >"$dir/initdb.log" 2>&1 ||
    { _service_failed "initdb of the test cluster" "$dir/initdb.log"; return 1; }
  _as_pg "$bin/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 \
    -o "-c listen_addresses=127.0.0.1 -p $port -k $dir -c fsync=off -c synchronous_commit=off -c full_page_writes=off" \
    start >"$dir/pg_ctl.log" 2>&1 || {
    [ -s "$dir/server.log" ] && cat "$dir/server.log" >>"$dir/pg_ctl.log"
    _service_failed "starting the PostgreSQL server" "$dir/pg_ctl.log"
    return 1
  }
  QR_PG_DATA=$dir/data
  export QR_TEST_PG="postgresql://postgres@127.0.0.1:$port/postgres"
  echo "test-services: PostgreSQL on 127.0.0.1:$port"
}

_pg_stop() {
  local dir=$1 bin
  # Only a cluster this run started: an occupied data folder is never someone else's to stop.
  [ "${QR_PG_DATA:-}" = "$dir/data" ] || return 0
  bin=$(_pg_bin)
  _as_pg "$bin/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null 2>&1 || true
  unset QR_PG_DATA QR_TEST_PG QR_TEST_ODBC_PG
}

_odbc_driver() {
  # The driver library of a Debian ODBC package, wherever the architecture puts it.
  { dpkg -L "$1" 2>/dev/null || true; } | grep "/$2\$" | head -n 1 || true
}

_odbc_register() {
  local dir=$1 pg_driver sqlite_driver port
  pg_driver=$(_odbc_driver odbc-postgresql psqlodbcw.so)
  sqlite_driver=$(_odbc_driver libsqliteodbc libsqlite3odbc.so)
  mkdir -p "$dir" || { _service_failed "making $dir"; return 1; }
  {
    if [ -n "$pg_driver" ]; then
      printf '[QuarvexPostgreSQL]\nDescription=PostgreSQL (Unicode) for the test run\nDriver=%s\n\n' "$pg_driver"
    fi
    if [ -n "$sqlite_driver" ]; then
      printf '[QuarvexSQLite3]\nDescription=SQLite 3 for the test run\nDriver=%s\n\n' "$sqlite_driver"
    fi
  } >"$dir/odbcinst.ini"
  : >"$dir/odbc.ini"
  export ODBCSYSINI=$dir
  export ODBCINI=$dir/odbc.ini
  if [ -z "$pg_driver" ] || [ -z "${QR_TEST_PG:-}" ]; then
    _service_failed "ODBC registration (no psqlodbcw.so: is odbc-postgresql installed?)"
    return 1
  fi
  port=${QR_TEST_PG##*:}
  port=${port%%/*}
  printf '[QuarvexTestPG]\nDriver=QuarvexPostgreSQL\nServername=127.0.0.1\nPort=%s\nUsername=postgres\nDatabase=postgres\n' \
    "$port" >"$dir/odbc.ini"
  export QR_TEST_ODBC_PG="odbc:DSN=QuarvexTestPG"
  echo "test-services: ODBC data source QuarvexTestPG registered in $dir"
}
