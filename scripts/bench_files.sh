#!/usr/bin/env bash
# Measures what surrounds the effect: a photograph of 24 megapixels through `vitrell render` with the
# default look, beside `oiiotool` copying the same file, each on one thread, the best of three runs.
# Prints a table in Markdown; see scripts/bench.sh. Nothing else should work on the machine meanwhile.
#
#   scripts/bench_files.sh VITRELL SAMPLE_PICTURE [WIDTH HEIGHT]
set -euo pipefail

vitrell="$(realpath "$1")"
sample_picture="$(realpath "$2")"
width="${3:-6000}" height="${4:-4000}"
runs=3

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work"

"$sample_picture" street.tif --width "$width" --height "$height" --depth 16 --opaque
oiiotool street.tif -d uint8 -o jpeg-8.jpg
oiiotool street.tif -d uint8 -o png-8.png
oiiotool street.tif -o png-16.png
oiiotool street.tif -o tiff-16.tif
oiiotool street.tif -d half -o exr-half.exr

# Seconds and kilobytes of one run.
timed() {
  /usr/bin/time -o time.txt -f '%e %M' "$@" >out.txt
}

printf '| %s | %s | %s | %s | %s |\n' File "copy, s" "around the effect, s" ratio "bytes a pixel"
printf '|---|---:|---:|---:|---:|\n'
for file in jpeg-8.jpg png-8.png png-16.png tiff-16.tif exr-half.exr; do
  copy=1e9 around=1e9 memory=0
  for ((run = 0; run < runs; run++)); do
    timed oiiotool --threads 1 "$file" -o "copy-$file"
    read -r seconds _ <time.txt
    copy="$(awk -v a="$copy" -v b="$seconds" 'BEGIN { print a < b ? a : b }')"
    timed "$vitrell" render "$file" "render-$file" --threads 1 --force
    read -r seconds memory <time.txt
    effect="$(sed -n 's/.*effect \([0-9.]*\) s.*/\1/p' out.txt)"
    around="$(awk -v a="$around" -v b="$seconds" -v c="$effect" \
      'BEGIN { b -= c; print a < b ? a : b }')"
  done
  awk -v file="$file" -v copy="$copy" -v around="$around" -v memory="$memory" \
    -v pixels="$((width * height))" 'BEGIN {
      printf "| %s | %.2f | %.2f | %.2f | %.1f |\n", file, copy, around, around / copy,
        memory * 1024 / pixels }'
done
