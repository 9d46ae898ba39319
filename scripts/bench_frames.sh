#!/usr/bin/env bash
# Measures moving pictures: a sequence of PNG files of 1080p and small ones, a video, and a long one,
# through `vitrell render`, beside FFmpeg's tools on the same frames. Each case runs in turns with what
# it is compared with; the median of three counts. Prints tables in Markdown; see scripts/bench.sh.
#
#   scripts/bench_frames.sh VITRELL SAMPLE_PICTURE [FRAMES [RUNS [LONG]]]
#
# FRAMES of 1080p (48), RUNS of each (3), and the number of frames of the long video (10000).
set -euo pipefail

vitrell="$(realpath "$1")"
sample_picture="$(realpath "$2")"
frames="${3:-48}"
runs="${4:-3}"
long="${5:-10000}"
cores="$(nproc)"
# How `vitrell` converts, and how it writes FFV1.
scale="scale=flags=bicubic+accurate_rnd+bitexact+full_chroma_int+full_chroma_inp"
archive=(-c:v ffv1 -level 3 -slicecrc 1 -g 1)
neutral=(--set lens.type=none --set fast-blur.amount=0)

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir in out small

"$sample_picture" 'in/street.####.png' --frames "$frames" --width 1920 --height 1080 >/dev/null
"$sample_picture" 'small/street.####.png' --frames 400 --width 320 --height 180 >/dev/null
ffmpeg -nostdin -v error -start_number 1 -i in/street.%04d.png -frames:v "$frames" \
  -pix_fmt yuv420p -crf 16 -preset fast street.mp4
for count in "$((long / 20))" "$long"; do
  ffmpeg -nostdin -v error -f lavfi -i testsrc2=size=64x64:rate=25 -frames:v "$count" "$count.mp4"
done

# Appends the microseconds that a command takes to files of the case's name: those on the wall, and
# those of processors. These are told by programs that ended, and `times` knows them only in this shell.
timed() {
  local name="$1" start
  shift
  rm -rf out && mkdir out
  times >before.txt
  start="$(date +%s%N)"
  "$@" >out.txt 2>&1 || {
    cat out.txt >&2
    return 1
  }
  echo "$((($(date +%s%N) - start) / 1000))" >>"times-$name"
  times >after.txt
  awk 'FNR == 2 {
         gsub(/[ms]/, " ")
         sum = 60 * ($1 + $3) + $2 + $4
         if (NR == FNR) before = sum; else printf "%d\n", (sum - before) * 1e6
       }' before.txt after.txt >>"work-$name"
}

# Of a file of numbers.
median() {
  sort -n "$1" | sed -n "$(((runs + 1) / 2))p"
}

sequence() {
  local name="$1" input="$2"
  shift 2
  timed "$name" "$vitrell" render "$input/street.####.png" 'out/look.####.png' --progress none "$@"
}

# One process for each core, each with its share of the files.
codec_alone() {
  local core
  for ((core = 0; core < cores; core++)); do
    find in -name '*.png' | sort | awk -v n="$cores" -v k="$core" 'NR % n == k' |
      xargs -I{} oiiotool --threads 1 {} -o out/copy-"$core".png &
  done
  wait
}

for ((run = 0; run < runs; run++)); do
  sequence one in --jobs 1 --threads 1 --report "report-$run.json"
  sequence default in
  sequence neutral in "${neutral[@]}"
  timed codec codec_alone
  for jobs in 1 2 3 4; do
    ((jobs <= 2 * cores)) || continue
    sequence "jobs-$jobs" in --jobs "$jobs"
    sequence "small-$jobs" small --jobs "$jobs"
  done
  timed ffv1 "$vitrell" render street.mp4 out/a.mkv "${neutral[@]}" --progress none
  timed ffv1-ffmpeg ffmpeg -nostdin -v error -i street.mp4 -an -vf "$scale,format=bgr0" \
    "${archive[@]}" out/a.mkv
  timed mp4 "$vitrell" render street.mp4 out/a.mp4 "${neutral[@]}" --progress none
  timed mp4-ffmpeg ffmpeg -nostdin -v error -i street.mp4 -an \
    -vf "$scale,format=argb,$scale,format=yuv420p" -c:v libx264 -crf 18 \
    -x264-params cpu-independent=1 out/a.mp4
  timed y4m "$vitrell" render street.mp4 out/a.y4m "${neutral[@]}" --progress none
  timed y4m-ffmpeg ffmpeg -nostdin -v error -i street.mp4 -an \
    -vf "$scale,format=argb,$scale,format=yuv420p" out/a.y4m
  timed look-mp4 "$vitrell" render street.mp4 out/a.mp4 --progress none
done

# Frames per second of a case.
speed() {
  awk -v us="$(median "times-$1")" -v n="$2" 'BEGIN { printf "%.2f", n * 1e6 / us }'
}

quotient() {
  awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'
}

# What all processors could do if they did nothing but the effect.
effect_bound() {
  local run
  for ((run = 0; run < runs; run++)); do
    tr -d '\n ' <"report-$run.json" | grep -o '"processorSeconds":{"effect":[0-9.e-]*' |
      awk -F: -v n="$cores" '{ sum += $NF; ++count } END { print n * count / sum }'
  done | sort -n | sed -n "$(((runs + 1) / 2))p"
}

one="$(speed one "$frames")"
all="$(speed default "$frames")"
codec="$(speed codec "$frames")"
effect="$(effect_bound)"
both="$(awk -v a="$codec" -v b="$effect" 'BEGIN { print 1 / (1 / a + 1 / b) }')"

printf '%s\n\n' "A PNG sequence of 1080p, $frames frames, 8 bit, default look, frames per second:"
printf '| Case | frames/s |\n|---|--:|\n'
printf '| `--jobs 1 --threads 1` | %s |\n' "$one"
printf '| as it comes | %s |\n' "$all"
printf '| without lens and blur | %s |\n' "$(speed neutral "$frames")"
printf '| the effect alone, on all processors | %.2f |\n' "$effect"
printf '| `oiiotool` copying the files, one for each processor | %s |\n' "$codec"
printf '| both, one after the other | %.2f |\n' "$both"
printf '\nAs it comes is %s times `--jobs 1 --threads 1`, and %s of both one after the other.\n\n' \
  "$(quotient "$all" "$one")" "$(quotient "$all" "$both")"

printf '| Frames in flight | 1920 x 1080, frames/s | 320 x 180, frames/s |\n|--:|--:|--:|\n'
for jobs in 1 2 3 4; do
  ((jobs <= 2 * cores)) || continue
  printf '| %s | %s | %s |\n' "$jobs" "$(speed "jobs-$jobs" "$frames")" "$(speed "small-$jobs" 400)"
done

printf '\n%s\n\n' "An H.264 video of 1080p through an effect that changes nothing, beside \`ffmpeg\`
with the same decoding, conversion to RGB and encoding:"
printf '| Written | `vitrell`, frames/s | `ffmpeg`, frames/s | time, ratio | processors, ratio |\n'
printf '|---|--:|--:|--:|--:|\n'
row() {
  printf '| %s | %s | %s | %s | %s |\n' "$2" "$(speed "$1" "$frames")" \
    "$(speed "$1-ffmpeg" "$frames")" \
    "$(quotient "$(median "times-$1")" "$(median "times-$1-ffmpeg")")" \
    "$(quotient "$(median "work-$1")" "$(median "work-$1-ffmpeg")")"
}
row ffv1 FFV1
row mp4 H.264
row y4m Y4M
printf '\nWith the default look H.264 is written at %s frames a second.\n' "$(speed look-mp4 "$frames")"

# What a video needs after so many frames, at its highest.
memory_of() {
  /usr/bin/time -o time.txt -f %M "$vitrell" render "$1.mp4" - --quiet >/dev/null
  awk '{ printf "%.1f", $1 / 1024 }' time.txt
}
printf '\nMemory of a video of 64 x 64 pixels: %s MB after %s frames, %s MB after %s.\n' \
  "$(memory_of $((long / 20)))" $((long / 20)) "$(memory_of "$long")" "$long"
