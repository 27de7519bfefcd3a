# Print and display services for the tests of real printing and of the preview window, started
# privately for one test run and stopped after it. Sourced by ./run test. Exports:
#   CUPS_SERVER            127.0.0.1:<port> of a private cupsd whose default queue writes each
#                          job to a file; the CUPS client library (and so Qt) talks only to it
#   QR_TEST_PRINTER        name of that default queue
#   QR_TEST_PRINTED_JOB    the file the queue writes each job to (after CUPS's filters: a PDF
#                          behind a PJL header naming the job, or PostScript)
#   QR_TEST_CUPS_PAGE_LOG  CUPS's page log: a line per finished job with its name and pages
#   QR_TEST_XVFB_DISPLAY   ":N" of a private Xvfb; DISPLAY itself is not exported, so the rest
#                          of the suite stays headless
# Nothing listens outside loopback, and nothing survives print_services_stop.
#
#   print_services_start DIR   state, logs and the printed job under DIR, a folder the lp account
#                              can enter (./run test makes one under /tmp); returns 1 after a
#                              one-line reason and the tail of the failing step's log
#   print_services_stop        stops both servers

# shellcheck source=scripts/service-failed.sh
source "$(dirname "${BASH_SOURCE[0]}")/service-failed.sh"
_print_service_failed() { service_failed print-services "$@"; }

print_services_start() {
  local state=$1
  mkdir -p "$state" || { _print_service_failed "making $state"; return 1; }
  QR_PRINT_SERVICES_STATE=$(cd "$state" && pwd)
  _cups_start "$QR_PRINT_SERVICES_STATE/cups" || return 1
  _xvfb_start "$QR_PRINT_SERVICES_STATE/xvfb" || return 1
}

print_services_stop() {
  [ -n "${QR_PRINT_SERVICES_STATE:-}" ] || return 0
  _stop_pid "$QR_PRINT_SERVICES_STATE/cups/cupsd.pid"
  _stop_pid "$QR_PRINT_SERVICES_STATE/xvfb/xvfb.pid"
  unset CUPS_SERVER QR_TEST_PRINTER QR_TEST_PRINTED_JOB QR_TEST_CUPS_PAGE_LOG QR_TEST_XVFB_DISPLAY
  return 0
}

_free_port() {
  python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])'
}

_stop_pid() {
  local file=$1 pid n
  [ -f "$file" ] || return 0
  pid=$(cat "$file")
  rm -f "$file"
  kill "$pid" 2>/dev/null || return 0
  for n in $(seq 50); do
    kill -0 "$pid" 2>/dev/null || return 0
    sleep 0.1
  done
  kill -9 "$pid" 2>/dev/null || true
}

_cups_write_config() {
  local dir=$1 port=$2 user group
  user=$(id -un)
  group=$(id -gn)
  # cupsd runs filters and backends as an unprivileged account; as root that is lp.
  if [ "$(id -u)" -eq 0 ]; then user=lp; group=lp; fi
  cat >"$dir/etc/cups-files.conf" <<EOF
ServerRoot $dir/etc
RequestRoot $dir/spool
CacheDir $dir/cache
StateDir $dir/state
TempDir $dir/tmp
ErrorLog $dir/log/error_log
AccessLog $dir/log/access_log
PageLog $dir/log/page_log
Printcap
FileDevice Yes
User $user
Group $group
SystemGroup $(id -gn)
EOF
  cat >"$dir/etc/cupsd.conf" <<EOF
Listen 127.0.0.1:$port
Browsing No
WebInterface No
LogLevel info
DefaultAuthType None
DefaultEncryption Never
MaxLogSize 0
PreserveJobHistory Yes
PreserveJobFiles No
PageLogFormat job %j pages %P %C name %{job-name}
<Location />
  Order allow,deny
  Allow from 127.0.0.1
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
  # Raw queues pass the job's data to the device unchanged.
  cp /etc/cups/raw.types /etc/cups/raw.convs "$dir/etc/" 2>/dev/null || true
}

# The queue's driver: a PDF printer (the job reaches the file as PDF after CUPS's own filters),
# or the generic PostScript printer when cups-filters is missing.
_cups_ppd() {
  local pdf=/usr/share/ppd/cupsfilters/Generic-PDF_Printer-PDF.ppd
  if [ -f "$pdf" ]; then echo "$pdf"; else echo "drv:///sample.drv/generic.ppd"; fi
}

_cups_start() {
  local dir=$1 port n ppd
  if ! command -v cupsd >/dev/null || ! command -v lpadmin >/dev/null; then
    _print_service_failed "CUPS (no cupsd or lpadmin: are cups and cups-client installed?)"
    return 1
  fi
  ppd=$(_cups_ppd)
  mkdir -p "$dir"/etc/ppd "$dir"/spool/tmp "$dir"/cache "$dir"/state "$dir"/tmp "$dir"/log "$dir"/out ||
    { _print_service_failed "making $dir"; return 1; }
  port=$(_free_port)
  _cups_write_config "$dir" "$port"
  if [ "$(id -u)" -eq 0 ]; then
    chown -R lp:lp "$dir/spool" "$dir/tmp" "$dir/out"
    chmod 0755 "$dir" "$dir/out"
    # Filters and the file backend run as lp and must reach the spool and the output file.
    runuser -u lp -- test -w "$dir/out" ||
      { _print_service_failed "CUPS (the lp account cannot enter $dir)"; return 1; }
  fi
  cupsd -f -c "$dir/etc/cupsd.conf" -s "$dir/etc/cups-files.conf" >"$dir/log/cupsd.out" 2>&1 &
  echo $! >"$dir/cupsd.pid"
  for n in $(seq 100); do
    lpstat -h "127.0.0.1:$port" -r >/dev/null 2>&1 && break
    sleep 0.1
  done
  if ! lpstat -h "127.0.0.1:$port" -r >/dev/null 2>&1; then
    _stop_pid "$dir/cupsd.pid"
    cat "$dir/log/error_log" >>"$dir/log/cupsd.out" 2>/dev/null
    _print_service_failed "starting cupsd" "$dir/log/cupsd.out"
    return 1
  fi
  local driver=(-P "$ppd")
  [ "${ppd#drv:}" != "$ppd" ] && driver=(-m "$ppd")
  lpadmin -h "127.0.0.1:$port" -p QuarvexTest -E -v "file://$dir/out/printed-job" "${driver[@]}" \
    -D "Quarvex test queue" >"$dir/log/lpadmin.log" 2>&1 &&
    lpadmin -h "127.0.0.1:$port" -d QuarvexTest >>"$dir/log/lpadmin.log" 2>&1 || {
    _stop_pid "$dir/cupsd.pid"
    _print_service_failed "making the test print queue" "$dir/log/lpadmin.log"
    return 1
  }
  export CUPS_SERVER="127.0.0.1:$port"
  export QR_TEST_PRINTER=QuarvexTest
  export QR_TEST_PRINTED_JOB="$dir/out/printed-job"
  export QR_TEST_CUPS_PAGE_LOG="$dir/log/page_log"
  echo "print-services: CUPS on $CUPS_SERVER, default queue QuarvexTest -> $QR_TEST_PRINTED_JOB"
}

_xvfb_start() {
  local dir=$1 n display=""
  command -v Xvfb >/dev/null || { _print_service_failed "Xvfb (is the xvfb package installed?)"; return 1; }
  mkdir -p "$dir" || { _print_service_failed "making $dir"; return 1; }
  # Xvfb picks the first free display number itself and writes it to the descriptor.
  Xvfb -displayfd 3 -screen 0 1400x1000x24 -nolisten tcp 3>"$dir/display" \
    >"$dir/xvfb.log" 2>&1 &
  echo $! >"$dir/xvfb.pid"
  for n in $(seq 100); do
    display=$(head -n 1 "$dir/display" 2>/dev/null || true)
    [ -n "$display" ] && break
    sleep 0.1
  done
  if [ -z "$display" ]; then
    _stop_pid "$dir/xvfb.pid"
    _print_service_failed "starting Xvfb" "$dir/xvfb.log"
    return 1
  fi
  export QR_TEST_XVFB_DISPLAY=":$display"
  echo "print-services: Xvfb on $QR_TEST_XVFB_DISPLAY"
}
