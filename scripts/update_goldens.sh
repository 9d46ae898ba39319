#!/usr/bin/env bash
# Writes the golden pictures anew, where the built command line and the literal render agree, and
# shows all of them in docs/images/goldens.jpg. Say in the commit why they changed.
#
#   scripts/update_goldens.sh [BUILD_FOLDER]    default: build/release, built first
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

if (($#)); then
  build="$1"
else
  bash scripts/setup.sh
  build_preset release golden_test vitrell sample_picture
  build=build/release
fi

say "Rendering tests/golden"
VITRELL_UPDATE_GOLDENS=1 "$build/tests/whole/golden_test" --gtest_filter='Goldens/*' |
  grep -E 'written anew|Failure|PASSED|FAILED'

say "Contact sheet"
# Without metadata, so that the same pixels are always the same file.
oiiotool --nosoftwareattrib tests/golden/*/expected.png --mosaic:pad=4 4x4 --ch R,G,B \
  -d uint8 --resize 968x548 --eraseattrib '.*' --quality 80 -o docs/images/goldens.jpg
