#!/usr/bin/env bash
# Sets the machine up, builds the panel program and opens it with the sample picture.
#
#   scripts/panel.sh [FILE]    FILE: a picture, a sequence (plate.####.exr) or a video instead
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash scripts/setup.sh --panel
configure_options+=(-DVITRELL_BUILD_PANEL=ON)
build_preset release vitrell vitrell-panel sample_picture

bin=build/release
if ((!$#)); then
  mkdir -p out
  "$bin/tools/sample_picture/sample_picture" out/sample.png
  set -- out/sample.png
fi
exec "$bin/panel/vitrell-panel" "$@"
