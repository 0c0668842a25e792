#!/bin/sh
# Runs the demo against the build in $1.
set -e
build=${1:-build}
"$build/bin/demo_host"
