#!/bin/sh
# Installs the build in $1 into a temporary prefix, then builds and runs a program outside
# the tree against it (find_package and pkg-config), and calls the installed Octave function
# with no library path set.
set -eu
build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
echo "installed: $(cd "$prefix" && find . -type f -o -type l | sort | tr '\n' ' ')"
# Only the public headers: any other is listed, and fails the check.
! find "$prefix/include" -name '*.hpp' | grep -v -e '/qvhost/' -e '/netcdflib.hpp$' ||
  { echo "internal headers installed" >&2; exit 1; }

unset LD_LIBRARY_PATH
cmake -S "$here/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
"$work/consumer/consumer"

libdir=$(dirname "$(find "$prefix" -name libnetcdflib.so)")
export PKG_CONFIG_PATH="$libdir/pkgconfig"
echo "pkg-config: netcdflib $(pkg-config --modversion netcdflib)"
c++ -std=c++20 "$here/consumer/consumer.cpp" -o "$work/consumer-pc" \
  $(pkg-config --cflags --libs netcdflib) -Wl,-rpath,"$libdir"
"$work/consumer-pc"

octdir=$(dirname "$(find "$prefix" -name netcdflib.oct)")
octave-cli --no-gui --no-history --norc --no-window-system --eval "
  addpath('$octdir');
  printf('installed Octave function: netCDF-C %s\n', netcdflib('inqLibVers'));
  assert(! isempty(strfind(help('netcdflib'), 'getConstantNames')));"
echo "install check passed"
