#!/usr/bin/env bash
# Holds our engine against Box2D as it comes: medians of interleaved runs of engine_run_plain and engine_run.
# benchmarks/engine_ratios.sh [ROUNDS [FOLDER OF THE PROGRAMS [SCENE:FRAMES...]]]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export LC_ALL=C

rounds="${1:-5}"
programs="${2:-build/release/bin}"
shift $(($# < 2 ? $# : 2))
runs=("$@")
((${#runs[@]})) || runs=(pyramid:300 circles:300 chain:600 compounds:120 compounds:600)

median() { # column of the lines on standard input
    awk -v column="$1" '{ print $column }' | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

printf '%-16s %6s %12s %12s %7s %9s  %s\n' scene frames 'plain ms' 'ours ms' ratio memory bits
for run in "${runs[@]}"; do
    scene="${run%:*}" frames="${run#*:}" plain='' ours=''
    for ((round = 0; round < rounds; ++round)); do
        plain+="$("$programs/engine_run_plain" "$scene" "$frames")"$'\n'
        ours+="$("$programs/engine_run" "$scene" "$frames")"$'\n'
    done
    bits="$(printf '%s%s' "$plain" "$ours" | awk '{ print $3 }' | sort -u | wc -l)"
    plain_ms="$(median 1 <<<"${plain%$'\n'}")" ours_ms="$(median 1 <<<"${ours%$'\n'}")"
    plain_kb="$(median 2 <<<"${plain%$'\n'}")" ours_kb="$(median 2 <<<"${ours%$'\n'}")"
    awk -v scene="$scene" -v frames="$frames" -v p="$plain_ms" -v o="$ours_ms" -v pk="$plain_kb" -v ok="$ours_kb" \
        -v bits="$bits" 'BEGIN {
            printf "%-16s %6d %12.3f %12.3f %7.2f %9.2f  %s\n", scene, frames, p, o, p / o, ok / pk,
                bits == 1 ? "same" : "DIFFERENT"
        }'
done
