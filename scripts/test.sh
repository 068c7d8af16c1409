#!/usr/bin/env bash
# Builds the release and the sanitizer build and runs the tests of both.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

failed=()
for preset in release asan; do
    printf '\n== %s: building in build/%s\n' "$preset" "$preset"
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    printf '\n== %s: testing\n' "$preset"
    ctest --preset "$preset" --parallel "$(nproc)" || failed+=("$preset")
done

if ((${#failed[@]})); then
    printf '\nTests failed in: %s\n' "${failed[*]}" >&2
    exit 1
fi
printf '\nAll tests passed in release and asan.\n'
