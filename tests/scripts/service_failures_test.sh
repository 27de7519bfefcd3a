#!/usr/bin/env bash
# The test services fail loudly: each broken start prints one line naming the step (and the
# tail of its log) and returns non-zero, instead of ending the test run without a word.
set -uo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d /tmp/quarvex-service-failures.XXXXXX)
chmod 0755 "$work"
trap 'rm -rf "$work"' EXIT
failures=0

# expect_failure NAME PATTERN SCRIPT: SCRIPT must exit non-zero with PATTERN on its first
# line of standard error.
expect_failure() {
  local name=$1 pattern=$2 script=$3 rc first
  bash -c "source '$root/scripts/test-services.sh'; source '$root/scripts/print-services.sh'; $script" \
    >"$work/out" 2>"$work/err"
  rc=$?
  first=$(head -n 1 "$work/err")
  if [ "$rc" -eq 0 ] || ! grep -qE "$pattern" <<<"$first"; then
    echo "FAIL $name: exit $rc, first line of standard error: '$first'"
    sed 's/^/  | /' "$work/err"
    failures=$((failures + 1))
  else
    echo "ok   $name: $first"
  fi
}

if ls -d /usr/lib/postgresql/*/bin >/dev/null 2>&1; then
  # A data folder that something already occupies: initdb refuses it.
  mkdir -p "$work/occupied/pg/data"
  echo "someone else's" >"$work/occupied/pg/data/PG_VERSION"
  expect_failure "occupied data folder" '^test-services: initdb of the test cluster failed; last lines of .*initdb.log:$' \
    "services_start '$work/occupied'"
  if [ "$(id -u)" -eq 0 ]; then
    # A state folder under a private (mode 700) parent, as a checkout in /root would give.
    mkdir -p "$work/private dir"
    chmod 0700 "$work/private dir"
    expect_failure "state under a private folder" '^test-services: PostgreSQL \(the postgres account cannot enter .*private dir' \
      "services_start '$work/private dir/state'"
  fi
fi
if command -v cupsd >/dev/null && [ "$(id -u)" -eq 0 ]; then
  mkdir -p "$work/private print"
  chmod 0700 "$work/private print"
  expect_failure "print state under a private folder" '^print-services: CUPS \(the lp account cannot enter .*private print' \
    "print_services_start '$work/private print/state'"
fi
exit $((failures > 0))
