#!/usr/bin/env bash
# Builds the release and solves the examples: each composition in examples/ gets its layers' motion baked, and a moving
# picture of the simulation is made.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

printf '\n== building in build/release\n'
cmake --preset release
cmake --build --preset release

# solve EXAMPLE SETTING... : solves examples/EXAMPLE.json into build/demo
solve() {
    local example="$1" command
    shift
    command=(build/release/bin/jostle solve "examples/$example.json" -o "build/demo/$example.json"
        --preview "build/demo/$example.gif")
    for setting in "$@"; do command+=(--set "$setting"); done
    printf '\n$'
    printf ' %q' "${command[@]}"
    printf '\n'
    "${command[@]}"
    printf 'The result is in %s: a Lottie file; open it in any player.\n' "$PWD/build/demo/$example.json"
    printf 'What was simulated is in %s: open it in any browser.\n' "$PWD/build/demo/$example.gif"
}

printf '\n== solving the examples\n'
mkdir -p build/demo
solve falling_blocks ramp.type=Static peg.type=Static floor.type=Static wall.type=Static
