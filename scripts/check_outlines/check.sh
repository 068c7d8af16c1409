#!/bin/sh
# Compares the outlines of bodies with what a player shows of their layers. README.md beside it tells more.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../player_setup.sh"
exec node "$here/main.mjs" "$@"
