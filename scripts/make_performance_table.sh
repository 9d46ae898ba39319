#!/usr/bin/env bash
# Runs the benchmarks and writes the measured table into docs/performance.md, between its two
# marker lines. Only worth doing on a machine that does nothing else.
#
#   scripts/make_performance_table.sh [BUILD_FOLDER]    default: build/release, built first
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

if (($#)); then
  build="$1"
else
  bash scripts/setup.sh
  build_preset release vitrell_bench
  build=build/release
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
load="$(cut -d" " -f1 /proc/loadavg)"
"$build/bench/vitrell_bench" --benchmark_format=csv >"$work/all.csv"
if grep -q -i 'error occurred\|,true,' "$work/all.csv"; then
  echo "A benchmark's picture is wrong; the table stays as it is." >&2
  exit 1
fi

# From the columns of the csv: a row for each benchmark, a pair of columns for each number of
# threads.
table() {
  awk -F, '
    $1 == "name" { for (i = 1; i <= NF; ++i) { gsub(/"/, "", $i); column[$i] = i } next }
    column["best_ms"] && /manual_time/ {
      name = $1
      gsub(/"/, "", name)
      sub(/\/iterations.*/, "", name)
      threads = name ~ /threads2$/ ? 2 : 1
      sub(/\/threads[12]$/, "", name)
      if (!(name in seen)) { seen[name] = 1; order[++count] = name }
      best[name, threads] = sprintf("%.1f", $column["best_ms"])
      ratio = $column["x_floor"]
      floor[name, threads] = ratio == "" ? "1" : sprintf("%.2f", ratio)
    }
    END {
      print "| Frame | ms, 1 thread | x floor | ms, 2 threads | x floor |"
      print "|---|--:|--:|--:|--:|"
      for (i = 1; i <= count; ++i) {
        n = order[i]
        if (!((n, 2) in best)) { best[n, 2] = "-"; floor[n, 2] = "-" }
        printf "| %s | %s | %s | %s | %s |\n", n, best[n, 1], floor[n, 1], best[n, 2], floor[n, 2]
      }
    }' "$work/all.csv"
}

{
  sed '/<!-- measured -->/q' docs/performance.md
  printf '\n%s, %s processors, %s; %s. Load average before the run %s.\n\n' \
    "$(lscpu | sed -n 's/^Model name: *//p')" "$(nproc)" \
    "$(. /etc/os-release && echo "$PRETTY_NAME")" "$(g++ --version | head -1)" "$load"
  table
  printf '\n'
  sed -n '/<!-- end -->/,$p' docs/performance.md
} >"$work/performance.md"
mv "$work/performance.md" docs/performance.md
