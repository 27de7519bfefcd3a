# service_failed WHO STEP [LOG]: the one-line reason a test service did not start ("WHO: STEP
# failed"), followed by the tail of the step's log when there is one; returns 1. Sourced by the
# service scripts.
service_failed() {
  local who=$1 step=$2 log=${3:-}
  if [ -n "$log" ] && [ -s "$log" ]; then
    echo "$who: $step failed; last lines of $log:" >&2
    tail -n 15 "$log" | sed 's/^/  | /' >&2
  else
    echo "$who: $step failed" >&2
  fi
  return 1
}
