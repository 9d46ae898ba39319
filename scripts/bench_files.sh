#!/usr/bin/env bash
# Measures what surrounds the effect: a picture of 24 megapixels, like a photograph, through `vitrell
# render` with the default look, beside `oiiotool` copying the same file. Each runs on one thread, in
# turns, and the best of three counts: processor time, for the render less that of the effect. Memory
# is what a picture of 64 x 64 pixels does not need. Prints a table in Markdown; see scripts/bench.sh.
#
#   scripts/bench_files.sh VITRELL SAMPLE_PICTURE [WIDTH HEIGHT [RUNS]]
set -euo pipefail

vitrell="$(realpath "$1")"
sample_picture="$(realpath "$2")"
width="${3:-6000}" height="${4:-4000}"
runs="${5:-3}"

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work"

"$sample_picture" street.tif --width "$width" --height "$height" --depth 16 --opaque
oiiotool street.tif -d uint8 -o jpeg-8.jpg
oiiotool street.tif -d uint8 -o png-8.png
oiiotool street.tif -o png-16.png
oiiotool street.tif -o tiff-16.tif
oiiotool street.tif -d half -o exr-half.exr

"$sample_picture" small.tif --width 64 --height 64 --depth 16 --opaque

# Runs a command; sets `seconds` of processor time and `kilobytes`.
timed() {
  local user system
  /usr/bin/time -o time.txt -f '%U %S %M' "$@" >out.txt
  read -r user system kilobytes <time.txt
  seconds="$(awk -v a="$user" -v b="$system" 'BEGIN { print a + b }')"
}

render() {
  timed "$vitrell" render "$1" "render-$1" --threads 1 --force --report report.json
}

least() {
  awk -v a="$1" -v b="$2" 'BEGIN { print a < b ? a : b }'
}

render small.tif
small="$kilobytes"
printf '| %s | %s | %s | %s | %s |\n' File "copy, s" "around the effect, s" ratio "bytes a pixel"
printf '|---|--:|--:|--:|--:|\n'
for file in jpeg-8.jpg png-8.png png-16.png tiff-16.tif exr-half.exr; do
  copy=1e9 around=1e9
  for ((run = 0; run < runs; run++)); do
    timed oiiotool --threads 1 "$file" -o "copy-$file"
    copy="$(least "$copy" "$seconds")"
    render "$file"
    effect="$(awk -F '[:,]' '/"processorSeconds"/ { print $3 + 0 }' <(tr -d '\n' <report.json |
      grep -o '"processorSeconds"[^}]*'))"
    around="$(least "$around" "$(awk -v a="$seconds" -v b="$effect" 'BEGIN { print a - b }')")"
  done
  awk -v file="$file" -v copy="$copy" -v around="$around" -v memory="$((kilobytes - small))" \
    -v pixels="$((width * height))" 'BEGIN {
      printf "| %s | %.2f | %.2f | %.2f | %.1f |\n", file, copy, around, around / copy,
        memory * 1024 / pixels }'
done
