#!/usr/bin/env bash
# Sets the machine up, builds Vitrell and renders the sample picture with the default settings:
# out/sample.png goes in, out/sample-vitrell.png comes out.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bash scripts/setup.sh
build_preset release vitrell sample_picture

bin=build/release
say "Drawing out/sample.png"
mkdir -p out
"$bin/tools/sample_picture/sample_picture" out/sample.png

say "Rendering it through the effect"
"$bin/cli/vitrell" render out/sample.png out/sample-vitrell.png --force

printf '\n%s\n%s\n%s\n' \
  "Drawn:    out/sample.png" \
  "Rendered: out/sample-vitrell.png" \
  "Try next: $bin/cli/vitrell render out/sample.png out/soft.png --set lens.feather=60"
