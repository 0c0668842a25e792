#!/bin/sh
# Writes netcdflib-<version>.tar.gz, a package in Octave's format, into the directory $1
# (default: the current one): DESCRIPTION, COPYING, INDEX, inst/ with the Octave files,
# and src/ with a Makefile that builds the rest from the sources it holds.
set -eu
out=$(cd "${1:-.}" && pwd)
cd "$(dirname "$0")/.."
version=$(sed -n 's/^project(netcdflib VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
name=netcdflib-$version
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pkgdir=$work/$name
mkdir -p "$pkgdir/inst" "$pkgdir/src/netcdflib"

sed -e "s/@VERSION@/$version/" -e "s/@DATE@/$(date -u +%Y-%m-%d)/" \
  octave/package/DESCRIPTION.in > "$pkgdir/DESCRIPTION"
cp COPYING "$pkgdir/"
cp octave/package/Makefile "$pkgdir/src/"
# The sources the libraries and the Octave functions build from; no tests or benchmarks.
git ls-files -co --exclude-standard CMakeLists.txt COPYING README.md cmake gateway convert ops \
  host octave examples | while read -r f; do
  [ -f "$f" ] || continue
  mkdir -p "$pkgdir/src/netcdflib/$(dirname "$f")"
  cp "$f" "$pkgdir/src/netcdflib/$f"
done
for m in octave/inst/*.m; do
  [ -f "$m" ] && cp "$m" "$pkgdir/inst/"
done

# Every function the package gives: the compiled ones and the Octave files.
{
  echo "netcdflib >> netCDF-C's data-access interface for GNU Octave"
  echo "netCDF"
  sed -n 's/.*add_octave_function([A-Za-z0-9_]* FUNCTION \([A-Za-z0-9_]*\).*/  \1/p' \
    octave/CMakeLists.txt
  for m in octave/inst/*.m; do
    [ -f "$m" ] && echo "  $(basename "$m" .m)"
  done
} > "$pkgdir/INDEX"

tar -C "$work" -czf "$out/$name.tar.gz" "$name"
echo "$out/$name.tar.gz"
