#!/bin/sh
# print_from_c.sh PREFIX LIBDIR WORK [CFLAGS...]: builds print_from_c.c against the library
# installed under PREFIX, as its pkg-config file says, makes the sample databases with the
# installed command and runs the program over them in WORK.
set -eu
prefix=$1 libdir=$2 work=$3
shift 3
here=$(dirname "$0")
rm -rf "$work"
mkdir -p "$work"
export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs quarvex-reports)
# pkg-config escapes the spaces of a path; eval reads them back as one word.
eval "cc -std=c99 -Wall -Wextra -Werror \"\$@\" -o \"\$work/print_from_c\" \
  \"\$here/print_from_c.c\" $flags -Wl,-rpath,\"\$prefix/\$libdir\""
"$prefix/bin/quarvex-reports" make-sample --vendor "sqlite:$work/vendor.db" \
  --master "sqlite:$work/master.db" --data-dir "$work/data" >/dev/null
"$work/print_from_c" "$work"
