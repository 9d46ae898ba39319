#!/usr/bin/env bash
# Builds the fuzz targets with the sanitizers (preset asan-ubsan) and lets each look for inputs that
# break a promise, two at a time. It starts from the seeds in tests/fuzz/seeds and what earlier runs
# found (build/fuzz/corpus).
#
#   scripts/fuzz.sh                          every target, 60 seconds each
#   scripts/fuzz.sh [--seconds N] TARGET...  only these: render preset value command
#   scripts/fuzz.sh --help
#
# An input that breaks something is kept in build/fuzz/findings and named; the exit code is then 1.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

all_targets=(render preset value command)
seconds=60
targets=()

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

wrong_usage() {
  echo "$1" >&2
  exit 2
}

while (($#)); do
  case "$1" in
    -h | --help)
      usage
      exit 0
      ;;
    --seconds)
      [[ "${2:-}" =~ ^[1-9][0-9]*$ ]] || wrong_usage "--seconds needs a whole number above 0"
      seconds="$2"
      shift
      ;;
    *)
      [[ " ${all_targets[*]} " == *" $1 "* ]] ||
        wrong_usage "Unknown target '$1'; the targets are: ${all_targets[*]}"
      targets+=("$1")
      ;;
  esac
  shift
done
((${#targets[@]})) || targets=("${all_targets[@]}")

work="$root/build/fuzz"
findings="$work/findings"

# Fuzzes one target; its output goes to a log.
fuzz() {
  local name="$1_fuzzer" corpus="$work/corpus/$1"
  mkdir -p "$corpus"
  "$root/build/asan-ubsan/tests/fuzz/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 \
    -print_final_stats=1 -artifact_prefix="$findings/$1-" \
    "$corpus" "$root/tests/fuzz/seeds/$name" >"$work/$1.log" 2>&1
}

# What a log says: executions, reached edges and, after a failure, the finding.
report() {
  local log="$work/$1.log" executions edges
  executions="$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")"
  edges="$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' "$log" | tail -n 1)"
  echo "$1: ${executions:-unknown} executions, ${edges:-unknown} edges, $2"
  [[ "$2" == clean ]] || grep -E '^finding:|ERROR:|runtime error:|Test unit written' "$log" || tail "$log"
}

build_preset asan-ubsan "${targets[@]/%/_fuzzer}" || exit 1
mkdir -p "$findings"
say "Fuzzing for $seconds s each: ${targets[*]}"
failed=0
for ((i = 0; i < ${#targets[@]}; i += 2)); do
  pair=("${targets[@]:i:2}")
  pids=()
  for target in "${pair[@]}"; do
    fuzz "$target" &
    pids+=("$!")
  done
  for j in "${!pair[@]}"; do
    verdict=clean
    wait "${pids[j]}" || verdict=FAILED
    report "${pair[j]}" "$verdict"
    [[ "$verdict" == clean ]] || failed=1
  done
done
exit "$failed"
