#!/bin/sh
# Runs a program on the present display, or on a virtual one if there is none.
set -eu
if [ -n "${DISPLAY:-}" ]; then
    exec "$@"
fi
exec xvfb-run --auto-servernum --server-args='-screen 0 1440x960x24' "$@"
