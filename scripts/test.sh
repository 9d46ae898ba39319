#!/usr/bin/env bash
# Sets the machine up and checks the project.
#
#   scripts/test.sh              builds the release build and runs every test of it; minutes
#   scripts/test.sh --thorough   every part below but bundle, windows, frei0r, farm and packages, which
#                                are named by hand; the release suite last; more than an hour
#   scripts/test.sh PART...      only these parts, in this order
#   scripts/test.sh --help
#
# The parts:
#   format      clang-format over all sources
#   arrows      who includes whom, against the table in docs/architecture.md
#   tidy        clang-tidy over the shipped code; what has not changed since it was clean is skipped
#   asan-ubsan  the suite with the address and undefined-behaviour sanitizers
#   fuzz        each fuzzer for a minute (VITRELL_FUZZ_SECONDS)
#   tsan        the suite with the thread sanitizer
#   aarch64     what has to come out the same on every processor, on an emulated 64-bit ARM
#   bundle      the bundle for macOS, built here, and both its halves run against the Linux module
#   windows     the module for Windows, built here, and the tests under Wine
#   frei0r      the frei0r modules in FFmpeg, melt and GStreamer, beside the command line
#   farm        a sequence as a Slurm job array and under GNU parallel, beside one run
#   panel       the panel program under a window manager, with a real mouse and real keys
#   packages    the Debian packages, built, checked, installed in a clean Debian and removed
#   clang       the effect's suite built with clang; what is around the effect is built with clang for
#               the sanitizers
#   release     the suite built with gcc
#
# The exit code is 0 when everything passed, 1 when something failed, 2 for wrong usage.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# A part is a name here and a function check_NAME below (a - in the name is a _ there).
all_parts=(format arrows tidy asan-ubsan fuzz tsan aarch64 bundle windows frei0r farm panel packages clang release)

# Parts that fetch compilers and emulators of other systems, video programs, or a whole system.
by_hand=(bundle windows frei0r farm packages)

# The random renders are compared in full by the two release suites. Under a sanitizer every
# render costs many times as much and looks for another kind of mistake: a few are enough.
sanitizer_random_renders="${VITRELL_SANITIZER_RANDOM_RENDERS:-60}"

# For each target, two at a time; a longer search is made by hand (scripts/fuzz.sh --seconds).
fuzz_seconds="${VITRELL_FUZZ_SECONDS:-60}"

# Whole renders beside the literal one, by each compiler; the quick command takes fewer.
thorough_literal_renders=12000

# Of each picture format; the quick command takes the tests' own smaller number.
thorough_damaged_cases=1000

# Settings of which the panel's copied command line is compared with what it shows; the quick command
# takes the test's own smaller number.
thorough_panel_commands=200

# The tests that start the built command line, or read damaged files. Most of what they run is the
# image library, which is built with neither the sanitizers nor clang; the release suite runs them.
tool_runs='DamagedFilesTest|RunTest\.|PictureTest\.|GoldenSetTest'

# Long tests of calculations on one thread, in which the thread sanitizer has nothing to find; their
# stages run on several in other tests.
one_thread='BlendPassTest|FastBlurTest|MaskDrawingTest|PinnedMathsTest|TrailRayTest'

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

check_format() {
  local files
  mapfile -t files < <(own_sources ':!*.inc')
  clang-format-14 --dry-run -Werror "${files[@]}" && echo "${#files[@]} files are formatted."
}

check_arrows() { bash scripts/check_arrows.sh; }

check_tidy() { bash scripts/tidy.sh; }

check_asan_ubsan() { run_sanitized_suite asan-ubsan; }

check_fuzz() { bash scripts/fuzz.sh --seconds "$fuzz_seconds"; }

check_tsan() { run_sanitized_suite tsan "$one_thread"; }

# The renders and the vector engines on another processor: one hash for all of them.
check_aarch64() {
  install_packages g++-aarch64-linux-gnu googletest qemu-user-static || return 1
  build_preset aarch64 platform_hash_test lane_sums_test line_sums_test running_line_sums_test \
    box_lines_test weighted_lines_test bilinear_samples_test blend_modes_test || return 1
  say "Testing build/aarch64"
  ctest --test-dir build/aarch64 --parallel "$jobs" --no-tests=error --output-on-failure \
    -R '^PlatformHashTest|(LaneEngines|LineEngines|RunningSums|BoxLines|WeightedLines|BilinearSamples|BlendPass)Test'
}

check_bundle() { bash scripts/build-macos.sh --test; }

check_windows() { bash scripts/build-windows.sh --test; }

check_frei0r() { bash scripts/test-frei0r.sh; }

check_farm() { bash scripts/test-farm.sh; }

check_panel() { bash scripts/test-panel.sh; }

check_packages() { bash scripts/build-packages.sh --test; }

# Another compiler's optimiser may change a picture, not how files are read: the effect and the
# headless host alone.
check_clang() {
  local configure_options=(-DVITRELL_BUILD_CLI=OFF -DVITRELL_BUILD_BENCH=OFF)
  run_suite clang -E "${tool_runs%|GoldenSetTest}"
}

check_release() {
  # What no test needs is left to the thorough run.
  local more=OFF
  [[ -z "$thorough" ]] || more=ON
  configure_options+=(-DVITRELL_BUILD_BENCH=$more -DVITRELL_LONE_HEADERS=$more)
  run_suite release
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

# Without the tests that start the command line, and others by a pattern.
run_sanitized_suite() {
  VITRELL_RANDOM_RENDERS="$sanitizer_random_renders" run_suite "$1" -E "$tool_runs${2:+|$2}"
}

wrong_usage() {
  echo "$1 See scripts/test.sh --help." >&2
  exit 2
}

parts=()
thorough=
for argument in "$@"; do
  case "$argument" in
    -h | --help)
      usage
      exit 0
      ;;
    --thorough) thorough=1 ;;
    *)
      [[ " ${all_parts[*]} " == *" $argument "* ]] ||
        wrong_usage "Unknown part '$argument'; the parts are: ${all_parts[*]}."
      parts+=("$argument")
      ;;
  esac
done
if [[ -n "$thorough" ]]; then
  ((${#parts[@]} == 0)) || wrong_usage "--thorough chooses the parts; name none beside it."
  for part in "${all_parts[@]}"; do
    [[ " ${by_hand[*]} " == *" $part "* ]] || parts+=("$part")
  done
fi
((${#parts[@]})) || parts=(release)
[[ -z "$thorough" ]] || export VITRELL_LITERAL_RENDERS="$thorough_literal_renders" \
  VITRELL_DAMAGED_CASES="$thorough_damaged_cases" VITRELL_PANEL_COMMANDS="$thorough_panel_commands"

checks=(--checks)
[[ "${parts[*]}" != release ]] || checks=()
bash scripts/setup.sh --panel "${checks[@]}"
configure_options+=(-DVITRELL_BUILD_PANEL=ON)

failed=()
done_so_far=()
for part in "${parts[@]}"; do
  if ((${#done_so_far[@]})); then
    say "Done: ${done_so_far[*]}"
  fi
  say "Part: $part"
  start=$SECONDS
  verdict=passed
  "check_${part//-/_}" || {
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
