#!/usr/bin/env bash
# The sample clip begins with the sample picture, and goes on with others.
#
#   sample_clip_test.sh SAMPLE_PICTURE
set -euo pipefail
sample="$1"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
cd "$folder"

fail() {
  echo "$*" >&2
  exit 1
}

"$sample" still.png --width 160 --height 90
"$sample" 'clip.###.png' --width 160 --height 90 --frames 3 --rate 2
[[ "$(echo clip.*)" == "clip.001.png clip.002.png clip.003.png" ]] || fail "Frames: $(echo clip.*)"
cmp still.png clip.001.png || fail "The first frame is not the sample picture."
! cmp -s clip.001.png clip.002.png || fail "Nothing moves in the first half second."
! cmp -s clip.002.png clip.003.png || fail "Nothing moves in the second half second."

for arguments in 'still.png --frames 3' 'clip.###.png'; do
  code=0
  # shellcheck disable=SC2086
  "$sample" $arguments 2>/dev/null || code=$?
  [[ "$code" == 2 ]] || fail "'$arguments' ends with $code instead of 2."
done
