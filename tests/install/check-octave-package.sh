#!/bin/sh
# Installs the Octave package $1 with `pkg install` into a temporary Octave prefix, then in
# a new octave-cli loads it and uses it, and finally uninstalls it.
set -eu
tarball=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A home and a package list of its own, so nothing of the user's Octave setup is touched.
export HOME=$work/home
mkdir -p "$HOME"
octave() {
  octave-cli --no-gui --no-history --norc --no-window-system --eval "
    pkg prefix '$work/pkg' '$work/pkg-arch'; pkg local_list '$work/octave_packages'; $1"
}
unset LD_LIBRARY_PATH
octave "pkg install -local '$tarball'" >"$work/install.log" 2>&1 || { cat "$work/install.log"; exit 1; }
echo "pkg install: $(find "$work/pkg-arch" -name '*.oct' -o -name '*.so*' | sed "s|$work/||" | sort | tr '\n' ' ')"
octave "pkg load netcdflib;
  f = fullfile ('$work', 'smoke.nc');
  ncid = netcdflib ('create', f, 'NC_NETCDF4');
  netcdflib ('defVar', ncid, 'v', 6, netcdflib ('defDim', ncid, 'x', 3));
  netcdflib ('putVarDouble', ncid, 0, [1; 2; 3]);
  netcdflib ('close', ncid);
  ds = ncdataset (f);
  assert (ds.read ('v', 2, Inf), [2; 3]);
  assert (! isempty (strfind (evalc ('disp (ds)'), 'double v(x) ;')));
  ds.close ();
  assert (! isempty (strfind (help ('netcdflib'), 'getConstantNames')));
  assert (! isempty (strfind (help ('ncdataset'), 'CF decoding')));
  printf ('pkg load netcdflib: %s, netCDF-C %s\n', which ('netcdflib'), netcdflib ('inqLibVers'));"
octave "pkg uninstall -local netcdflib" >/dev/null
octave "assert (isempty (pkg ('list', 'netcdflib'))); assert (exist ('netcdflib') == 0)"
[ -z "$(find "$work/pkg-arch" -name '*.oct')" ] || { echo "pkg uninstall left files" >&2; exit 1; }
echo "octave package check passed"
