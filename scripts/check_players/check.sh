#!/bin/sh
# Compares what players show of baked files with the simulation's samples. README.md beside it tells more.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../player_setup.sh"
if [ "${1:-}" = --matrices ]; then
    shift
    exec node "$here/matrices.mjs" "$@"
fi
exec node "$here/main.mjs" "$@"
