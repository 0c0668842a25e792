#!/bin/sh
# Runs the Octave demo against the build in $1 (default build/).
set -e
build=$(cd "${1:-build}" && pwd)
cd "$(dirname "$0")/.."
exec octave-cli --no-gui --no-history --norc --no-window-system \
  --eval "addpath('$build/octave'); run('examples/demo.m')"
