#!/usr/bin/env bash
# search.sh BUILD_FOLDER CORPUS_FOLDER SECONDS   runs the fuzz targets of a core-fuzz build for about that long together, as
# many at a time as there are processors. CORPUS_FOLDER/TARGET keeps what was learnt from one search to the next, and the
# bytes that broke something. Prints a line a target; ends with 1 when something was found.
# shellcheck disable=SC2086 # $limits is a list of words
set -euo pipefail
build=$(readlink -f "$1")/tests/fuzz
mkdir -p "$2"
corpora=$(readlink -f "$2")
seconds=$3

export limits='-timeout=10 -rss_limit_mb=2048' # words: seconds for one input, megabytes
export UBSAN_OPTIONS=print_stacktrace=1

# The last number that the log states under a name.
stated() { grep -oE "$2:? +[0-9]+" "$1" | tail -1 | grep -oE '[0-9]+$' || echo 0; }

# Keeps the fewest files that reach as much, of the seeds and of what has been learnt, when the files have become many.
minimise() {
    local files kept
    files=$(find "$folder/corpus" -type f | wc -l)
    kept=$(cat "$folder/kept" 2>/dev/null || echo 100)
    [ "$files" -gt $((2 * kept)) ] || return 0
    rm -rf "$folder/smaller"
    mkdir "$folder/smaller"
    "$program" -merge=1 $limits "$folder/smaller" "$folder/corpus" "$build/seeds/$name" \
        >"$folder/merge.log" 2>&1 || return 0
    rm -rf "$folder/corpus"
    mv "$folder/smaller" "$folder/corpus"
    find "$folder/corpus" -type f | wc -l >"$folder/kept"
}

# The smallest input that still fails, beside the one that was found.
shorten() {
    "$program" -minimize_crash=1 -max_total_time=10 $limits -exact_artifact_path="$folder/shorter" "$1" \
        >"$folder/shorten.log" 2>&1 || true
    [ ! -s "$folder/shorter" ] || mv "$folder/shorter" "$1"
}

# search NAME LONGEST SECONDS
search() {
    local name=$1 longest=$2 time=$3
    local program=$build/fuzz_$name folder=$corpora/$name found line status=0
    local log=$folder/log words=()
    mkdir -p "$folder/corpus"
    find "$folder" -maxdepth 1 -name 'found-*' -exec mv {} "$folder/corpus" \; # to be tried again first
    [ ! -f "$build/seeds/$name.dict" ] || words=(-dict="$build/seeds/$name.dict")
    "$program" -max_len="$longest" -max_total_time="$time" $limits "${words[@]}" -print_final_stats=1 \
        -artifact_prefix="$folder/found-" "$folder/corpus" "$build/seeds/$name" >"$log" 2>&1 || status=$?
    found=$(find "$folder" -maxdepth 1 -name 'found-*' | head -1)
    line=$(printf '%-15s %9s runs, %5s places, %6s features, %5s files' "$name" \
        "$(stated "$log" stat::number_of_executed_units)" "$(stated "$log" cov)" "$(stated "$log" ft)" \
        "$(find "$folder/corpus" -type f | wc -l)")
    if [ "$status" -eq 0 ]; then
        echo "$line: nothing found"
        minimise
        return
    fi
    [ -z "$found" ] || shorten "$found"
    # One write, so that lines of targets that run beside it stay apart.
    printf '%s: FOUND\n    %s\n    again: %s %s\n    log:   %s\n' "$line" \
        "$(grep -oE '^Does not hold: .*|SUMMARY: .*|terminate called .*|what\(\): .*' "$log" | head -1)" \
        "$program" "${found:-$build/seeds/$name}" "$log"
    return 1
}

targets=$(wc -l <"$build/targets.txt")
processors=$(nproc)
each=$(((seconds * processors + targets - 1) / targets))
export -f search stated minimise shorten
export build corpora each
# shellcheck disable=SC2016 # expanded by the shell that is started
xargs -P "$processors" -L 1 bash -c 'search "$0" "$1" "$each"' <"$build/targets.txt" || exit 1
