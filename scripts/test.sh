#!/usr/bin/env bash
# Sets the machine up, then runs every check: format, clang-tidy, and the test suite built with
# gcc, clang, the address and undefined-behaviour sanitizers and the thread sanitizer. The fuzzers
# look for a minute each, and what has to come out the same on every processor also runs on an
# emulated 64-bit ARM.
#
#   scripts/test.sh            everything; the gcc release suite comes last
#   scripts/test.sh PART...    only these parts: format tidy asan-ubsan fuzz tsan aarch64 clang release
#   scripts/test.sh --help
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

all_parts=(format tidy asan-ubsan fuzz tsan aarch64 clang release)

# The random renders are compared in full by the two release suites. Under a sanitizer every
# render costs many times as much and looks for another kind of mistake: a few are enough.
sanitizer_random_renders="${VITRELL_SANITIZER_RANDOM_RENDERS:-60}"

# For each target, two at a time; a longer search is made by hand (scripts/fuzz.sh --seconds).
fuzz_seconds="${VITRELL_FUZZ_SECONDS:-60}"

# The tests that start the built command line. Most of what they run is the picture library, which is
# not built with the sanitizers; the two release suites run them.
tool_runs='RunTest\.|PictureTest\.|GoldenSetTest'

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

own_sources() {
  git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' '*.inc' "$@" |
    while IFS= read -r file; do [[ -f "$file" ]] && printf '%s\n' "$file"; done
}

run_format() {
  local files
  mapfile -t files < <(own_sources ':!*.inc')
  clang-format-14 --dry-run -Werror "${files[@]}" && echo "${#files[@]} files are formatted."
}

# Runs clang-tidy over the shipped code. Headers are checked through the files that include them.
run_tidy() {
  local files
  say "Configuring build/clang for its compile commands"
  cmake --preset clang --log-level=WARNING || return 1
  mapfile -t files < <(own_sources | grep -E '^(src|headless|cli|tools)/.*\.cpp$')
  printf '%s\0' "${files[@]}" |
    xargs -0 -n 1 -P "$jobs" clang-tidy-14 -p build/clang --quiet --warnings-as-errors='*' \
      2> >(grep -v -E '^[0-9]+ warnings? generated\.$|^$|^Suppressed ' >&2) || return 1
  echo "${#files[@]} files are tidy."
}

# Builds a preset and runs its suite; further arguments go to ctest.
run_suite() {
  local preset="$1" launcher
  shift
  mapfile -t launcher < <(launcher_of "$preset")
  build_preset "$preset" || return 1
  say "Testing build/$preset"
  "${launcher[@]}" ctest --preset "$preset" --parallel "$jobs" --no-tests=error --progress "$@"
}

# The renders and the vector engines on another processor: one hash for all of them.
run_aarch64() {
  install_packages g++-aarch64-linux-gnu googletest qemu-user-static || return 1
  build_preset aarch64 platform_hash_test lane_sums_test line_sums_test \
    weighted_lines_test bilinear_samples_test blend_modes_test || return 1
  say "Testing build/aarch64"
  ctest --test-dir build/aarch64 --parallel "$jobs" --no-tests=error --output-on-failure \
    -R '^PlatformHashTest|(LaneEngines|LineEngines|WeightedLines|BilinearSamples|BlendPass)Test'
}

run_part() {
  case "$1" in
    format) run_format ;;
    tidy) run_tidy ;;
    asan-ubsan | tsan)
      VITRELL_RANDOM_RENDERS="$sanitizer_random_renders" run_suite "$1" -E "$tool_runs"
      ;;
    aarch64) run_aarch64 ;;
    fuzz) bash scripts/fuzz.sh --seconds "$fuzz_seconds" ;;
    clang | release) run_suite "$1" ;;
  esac
}

parts=()
for argument in "$@"; do
  if [[ "$argument" == -h || "$argument" == --help ]]; then
    usage
    exit 0
  elif [[ " ${all_parts[*]} " != *" $argument "* ]]; then
    echo "Unknown part '$argument'; the parts are: ${all_parts[*]}" >&2
    exit 2
  fi
  parts+=("$argument")
done
((${#parts[@]})) || parts=("${all_parts[@]}")

bash scripts/setup.sh

failed=()
done_so_far=()
for part in "${parts[@]}"; do
  if ((${#done_so_far[@]})); then
    say "Done: ${done_so_far[*]}"
  fi
  say "Part: $part"
  start=$SECONDS
  verdict=passed
  run_part "$part" || {
    verdict=FAILED
    failed+=("$part")
  }
  done_so_far+=("$part $verdict ($((SECONDS - start)) s);")
done

# When all is well the last suite's own summary closes the output.
if ((${#failed[@]})); then
  say "FAILED: ${failed[*]}" >&2
  exit 1
fi
