#!/usr/bin/env bash
# Kills "jostle solve" at random times and looks at what is left: the result must be the old file or the new one, whole,
# with nothing beside it but one temporary, which the next run removes. A batch must leave that of each of its files.
#
#     scripts/check_kill/check.sh [KILLS] [PROGRAM]
#
# 200 kills unless given, half of single runs, half of batches; SEED chooses the times. Exit status: 0 all well, 1 not,
# 2 wrong use.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
kills=${1:-200}
program=$(realpath "${2:-$root/build/release/bin/jostle}")
[[ $kills =~ ^[0-9]+$ && -x $program ]] || { echo "usage: check.sh [KILLS] [PROGRAM]" >&2; exit 2; }
RANDOM=${SEED:-1}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir in one many reference
for name in a b c; do cp "$root/examples/falling_blocks.json" "in/$name.json"; done

# The old result is short, the new one takes long enough to be hit anywhere.
old=(--quiet --end 20)
new=(--quiet --end 4000)
"$program" solve in/a.json -o reference/old.json "${old[@]}"
start=$(date +%s%N)
"$program" solve in/a.json -o reference/new.json "${new[@]}"
milliseconds=$((($(date +%s%N) - start) / 1000000 + 1))

# state FOLDER NAME... : every result is whole, and only temporaries of these results stand beside them.
state() {
    local folder=$1 name
    shift
    for name in "$@"; do
        if cmp -s "$folder/$name.json" reference/new.json; then
            newCount=$((newCount + 1))
        elif cmp -s "$folder/$name.json" reference/old.json; then
            oldCount=$((oldCount + 1))
        else
            echo "kill $i: $folder/$name.json is neither the old result nor the new one" >&2
            bad=$((bad + 1))
        fi
    done
    local -A allowed=()
    for name in "$@"; do
        allowed[".$name.json.jostle-part"]=1 allowed["$name.json"]=1
    done
    for name in $(ls -A "$folder"); do
        if [[ ${allowed[$name]:-} != 1 ]]; then
            echo "kill $i: left behind: $folder/$name" >&2
            bad=$((bad + 1))
        elif [[ $name == .* ]]; then
            leftovers=$((leftovers + 1))
        fi
    done
}

bad=0 oldCount=0 newCount=0 leftovers=0 endedFirst=0 notRemoved=0
for ((i = 1; i <= kills; i++)); do
    names=(a) folder=one factor=11
    if ((i % 2 == 0)); then names=(a b c) folder=many factor=22; fi
    # Leftovers of the run before stay where they are, for this one to take over.
    for name in "${names[@]}"; do cp reference/old.json "$folder/$name.json"; done
    inputs=("${names[@]/#/in/}")
    inputs=("${inputs[@]/%/.json}")
    setsid "$program" solve "${inputs[@]}" -o "$folder/" "${new[@]}" --jobs 2 >/dev/null 2>&1 &
    process=$!
    microseconds=$((milliseconds * factor * (RANDOM % 1000) / 10))
    sleep "$((microseconds / 1000000)).$(printf %06d $((microseconds % 1000000)))"
    kill -KILL "$process" 2>/dev/null || endedFirst=$((endedFirst + 1))
    status=0
    wait "$process" 2>/dev/null || status=$?
    # Killed, or at its end before that.
    if ((status != 128 + 9 && status != 0)); then
        echo "kill $i: ended with status $status" >&2
        bad=$((bad + 1))
    fi
    # Jobs of a batch hear that it is gone, and end in order; the group is empty when the last has.
    while kill -0 -- "-$process" 2>/dev/null; do sleep 0.01; done
    state "$folder" "${names[@]}"
    if ((i % 10 < 2)); then
        "$program" solve "${inputs[@]}" -o "$folder/" "${new[@]}"
        if [[ -n $(find "$folder" -name '.*' -type f) ]]; then
            echo "kill $i: the next run left a temporary behind" >&2
            notRemoved=$((notRemoved + 1))
        fi
    fi
done
echo "$kills kills in up to $((milliseconds * 11 / 10)) ms ($((milliseconds * 22 / 10)) ms of batches), $endedFirst after the end:" \
    "$oldCount results old, $newCount new, $bad broken or with litter;" \
    "$leftovers temporaries left, $notRemoved not removed by the next run"
((bad == 0 && notRemoved == 0))
