#!/usr/bin/env bash
# Builds the benchmarks and the programs on other libraries that they are compared with, runs all of
# them and writes the tables of docs/performance.md. Nothing else should work on the machine meanwhile.
# What the comparisons need of Debian's packages is installed.
#
#   scripts/bench.sh                  everything; takes six to eight minutes behind the build
#   scripts/bench.sh --quick          8 bit at 1080p only and few renders; the tables go to the terminal
#   scripts/bench.sh --no-peers       without the other libraries; to the terminal, too
#   scripts/bench.sh --filter REGEX   the same for the cases of these names only, see --list
#   scripts/bench.sh --files          only the table of picture files of 24 megapixels; ten minutes
#   scripts/bench.sh --frames         only the tables of sequences and videos; twenty minutes
#   scripts/bench.sh --list           names all cases
#   scripts/bench.sh --help
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build=build/bench
peer_packages=(libopencv-core-dev libopencv-imgproc-dev libfftw3-dev libvips-dev libgegl-dev
  libavfilter-dev)
peer_names=(opencv fftw vips gegl ffmpeg)

# Every case on one thread at 1080p; some on two threads; some in larger frames.
whole_filter='/1080p/(.*/)?threads1/'
whole_filter+='|^(WholeDefault|AllOff)/.*/1080p/threads2/'
whole_filter+='|^(FastBlur|FastBlurMapped|RealisticBlur|RealisticBlurMapped)/.*/1080p/r20(-feather50)?/threads2/'
whole_filter+='|^DirectionalBlur/.*/1080p/20/threads2/'
whole_filter+='|^WholeDefault/.*/(2160p|4320p)/threads1/'
whole_filter+='|^(FastBlur|RealisticBlur)/8bit/(2160p|4320p)/r20/threads1/'
quick_filter='/8bit/1080p/(.*/)?threads1/'

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

build_all() {
  local targets=(vitrell_bench vitrell_bench_report) with_peers=OFF
  if ((peers)); then
    install_packages "${peer_packages[@]}" ffmpeg
    targets+=(vitrell_peers vitrell_frei0r_filter)
    with_peers=ON
  fi
  if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  fi
  # shellcheck disable=SC2154 # jobs comes from common.sh.
  say "Building $build ($jobs jobs)"
  cmake --preset release -B "$build" -DVITRELL_BUILD_PEERS="$with_peers" --log-level=WARNING
  cmake --build "$build" --parallel "$jobs" --target "${targets[@]}"
}

run_peers() {
  local name
  for name in "${peer_names[@]}"; do
    say "Measuring $name" >&2
    "$build/bench/peers/${name}_peer" "$build/bench/street.png" "${quick[@]}"
  done
}

# Frames per second of a whole FFmpeg command that filters the sample street, in 1080p.
ffmpeg_speed() {
  local frames=30 start
  ((${#quick[@]} == 0)) || frames=10
  start="$(date +%s%N)"
  FREI0R_PATH="$root/$build/frei0r/modules" ffmpeg -nostdin -v error -f lavfi \
    -i "movie=$build/bench/street.png,format=rgba,loop=-1:1:0" -frames:v "$frames" -vf "$1" \
    -f null - || return 1
  echo "$((frames * 1000000000000 / ($(date +%s%N) - start)))"
}

# The module on the default look beside what FFmpeg itself has for it: three box blurs of the same
# radius, and a Gaussian blur as wide as they are together. Alternately, three times; the medians.
ffmpeg_table() {
  local i name filters=("frei0r=filter_name=vitrell"
    "boxblur=luma_radius=20:luma_power=3:chroma_radius=20:chroma_power=3:alpha_radius=20:alpha_power=3"
    "gblur=sigma=20.5:steps=3" "null")
  local names=("Vitrell, default look" "\`boxblur\`, radius 20, three times" "\`gblur\`" "no filter")
  for _ in 1 2 3; do
    for i in "${!filters[@]}"; do
      ffmpeg_speed "${filters[i]}" >>"$work/ffmpeg-$i"
    done
  done
  printf '\n### In FFmpeg\n\nFrames per second of the whole command, 8 bit, 1080p, all processors.\n\n'
  printf '| Filter | frames/s |\n|---|--:|\n'
  for i in "${!filters[@]}"; do
    printf '| %s | %s |\n' "${names[i]}" \
      "$(sort -n "$work/ffmpeg-$i" | sed -n 2p | awk '{ printf "%.1f", $1 / 1000 }')"
  done
}

heading() {
  printf '%s, %s processors, %s; %s; %s. Load average before the run %s.\n' \
    "$(lscpu | sed -n 's/^Model name: *//p')" "$(nproc)" \
    "$(. /etc/os-release && echo "$PRETTY_NAME")" "$(g++ --version | head -1)" \
    "$(date -u +%Y-%m-%d)" "$load"
}

# Puts a file between two marks of docs/performance.md.
write_page() {
  {
    sed "/<!-- $2 -->/q" docs/performance.md
    printf '\n'
    cat "$1"
    printf '\n'
    sed -n "/<!-- $3 -->/,\$p" docs/performance.md
  } >"$work/performance.md"
  mv "$work/performance.md" docs/performance.md
}

filter=
quick=()
peers=1
list=0
around=
while (($#)); do
  case "$1" in
    -h | --help)
      usage
      exit 0
      ;;
    --quick) quick=(--quick) ;;
    --no-peers) peers=0 ;;
    --list) list=1 ;;
    --files) around=files ;;
    --frames) around=frames ;;
    --filter)
      [[ $# -ge 2 ]] || { echo "--filter needs a pattern" >&2; exit 2; }
      filter="$2"
      peers=0
      shift
      ;;
    *)
      echo "Unknown option '$1'; see --help" >&2
      exit 2
      ;;
  esac
  shift
done

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
load="$(cut -d' ' -f1 /proc/loadavg)"

if ((list)); then
  peers=0
  build_all >&2
  "$build/bench/vitrell_bench" --benchmark_list_tests | sed 's|/iterations.*||'
  exit 0
fi

if [[ -n "$around" ]]; then
  say "Building $build ($jobs jobs)"
  cmake --preset release -B "$build" --log-level=WARNING
  cmake --build "$build" --parallel "$jobs" --target vitrell sample_picture
  say "Measuring $around"
  {
    heading
    printf '\n'
    "scripts/bench_$around.sh" "$build/cli/vitrell" "$build/tools/sample_picture/sample_picture"
  } | tee "$work/around.md"
  write_page "$work/around.md" "$around" "$around end"
  echo "docs/performance.md has the tables."
  exit 0
fi

build_all
write=1
if ((${#quick[@]} || !peers)); then
  write=0
fi
if [[ -z "$filter" ]]; then
  filter="$whole_filter"
  ((${#quick[@]} == 0)) || filter="$quick_filter"
fi

start=$SECONDS
load="$(cut -d' ' -f1 /proc/loadavg)"
say "Measuring the effect"
"$build/bench/vitrell_bench" "${quick[@]}" --benchmark_filter="$filter" --benchmark_counters_tabular=true \
  --benchmark_out="$work/effect.json" --benchmark_out_format=json
: >"$work/peers.tsv"
if ((peers)); then
  run_peers | tee "$work/peers.tsv"
fi
{
  heading
  "$build/bench/vitrell_bench_report" "$work/effect.json" "$work/peers.tsv"
  ((!peers)) || ffmpeg_table
} >"$work/tables.md"
say "Measured in $((SECONDS - start)) s"
if ((write)); then
  write_page "$work/tables.md" measured end
  echo "docs/performance.md has the tables."
else
  cat "$work/tables.md"
fi
