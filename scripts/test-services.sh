# Services the test suite needs, started privately for one test run and stopped after it.
# Sourced by ./run test. Exports:
#   QR_TEST_PG         connection string of a private PostgreSQL cluster (tests make their own
#                      databases)
#   QR_TEST_ODBC_PG    ODBC connection string reaching that cluster through Debian's PostgreSQL
#                      ODBC driver (tests append ;Database=<their database>)
#   ODBCSYSINI, ODBCINI  a private driver and data source registration under the state folder,
#                      so the tests do not depend on (or touch) the machine's ODBC setup
# Nothing listens outside loopback, and nothing survives the run.

services_start() {
  local state=$1
  rm -rf "$state"
  mkdir -p "$state"
  QR_SERVICES_STATE=$state
  _pg_start "$state/pg"
  _odbc_register "$state/odbc"
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
    echo "test-services: PostgreSQL is not installed" >&2
    return 1
  fi
  mkdir -p "$dir"
  [ "$(id -u)" -eq 0 ] && chown postgres "$dir"
  # A free loopback port, so a second checkout's test run does not collide with this one.
  port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])' 2>/dev/null || echo 54329)
  _as_pg "$bin/initdb" -D "$dir/data" -U postgres -A trust -E UTF8 --no-locale >"$dir/initdb.log" 2>&1
  _as_pg "$bin/pg_ctl" -D "$dir/data" -l "$dir/server.log" -w -t 60 \
    -o "-c listen_addresses=127.0.0.1 -p $port -k $dir -c fsync=off -c synchronous_commit=off -c full_page_writes=off" \
    start >/dev/null
  export QR_TEST_PG="postgresql://postgres@127.0.0.1:$port/postgres"
  echo "test-services: PostgreSQL on 127.0.0.1:$port"
}

_pg_stop() {
  local dir=$1 bin
  bin=$(_pg_bin)
  [ -d "$dir/data" ] && _as_pg "$bin/pg_ctl" -D "$dir/data" -m fast -w stop >/dev/null 2>&1 || true
}

_odbc_driver() {
  # The driver library of a Debian ODBC package, wherever the architecture puts it.
  { dpkg -L "$1" 2>/dev/null || true; } | grep "/$2\$" | head -n 1 || true
}

_odbc_register() {
  local dir=$1 pg_driver sqlite_driver port
  pg_driver=$(_odbc_driver odbc-postgresql psqlodbcw.so)
  sqlite_driver=$(_odbc_driver libsqliteodbc libsqlite3odbc.so)
  mkdir -p "$dir"
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
    echo "test-services: PostgreSQL ODBC driver not found; ODBC tests will be skipped" >&2
    return 0
  fi
  port=${QR_TEST_PG##*:}
  port=${port%%/*}
  printf '[QuarvexTestPG]\nDriver=QuarvexPostgreSQL\nServername=127.0.0.1\nPort=%s\nUsername=postgres\nDatabase=postgres\n' \
    "$port" >"$dir/odbc.ini"
  export QR_TEST_ODBC_PG="odbc:DSN=QuarvexTestPG"
  echo "test-services: ODBC data source QuarvexTestPG registered in $dir"
}
