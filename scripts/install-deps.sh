#!/bin/sh
# Installs the Debian packages the build and the tests need, when any is missing.
set -e
packages="build-essential cmake pkg-config libnetcdf-dev netcdf-bin libboost-dev \
libboost-locale-dev libgtest-dev octave liboctave-dev python3-netcdf4 clang libclang-rt-14-dev git gcovr \
hdf5-filter-plugin hdf5-filter-plugin-blosc-serial"
missing=""
for p in $packages; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed" || missing="$missing $p"
done
[ -z "$missing" ] && exit 0
echo "Installing:$missing"
if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends $missing >/dev/null
