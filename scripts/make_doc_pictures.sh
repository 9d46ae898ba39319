#!/usr/bin/env bash
# Renders every picture of the documentation from the sample picture, through the effect.
#
#   scripts/make_doc_pictures.sh [BUILD_FOLDER]    default: build/release, built first
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

if (($#)); then
  build="$1"
else
  bash scripts/setup.sh
  build_preset release vitrell sample_picture
  build=build/release
fi

images=docs/images
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$images"

street="$work/street.png"
"$build/tools/sample_picture/sample_picture" --opaque --width 960 --height 540 "$street"

# A name, then the settings as NAME=VALUE; or --preset FILE.
render() {
  local name="$1" arguments=()
  shift
  if [[ "$1" == --preset ]]; then
    arguments=("$@")
  else
    for setting in "$@"; do arguments+=(--set "$setting"); done
  fi
  "$build/cli/vitrell" render "$street" "$work/$name.png" --quiet "${arguments[@]}"
}

# Without metadata, so that the same pixels are always the same file.
to_jpeg() {
  oiiotool --nosoftwareattrib "$1" --eraseattrib '.*' --quality 85 -o "$images/$2.jpg"
}

picture() {
  render "$@"
  to_jpeg "$work/$1.png" "$1"
}

# Four renders side by side, at half size.
four() {
  local name="$1"
  shift
  oiiotool "${@/#/$work/}" --mosaic:pad=4 2x2 --resize 962x542 -o "$work/$name.png"
  to_jpeg "$work/$name.png" "$name"
}

say "Rendering into $images"
to_jpeg "$street" street

# Lens. A strong blur and a little darkness make the shape visible.
seen=(fast-blur.amount=22 lightness.amount=-14 lens.feather=15)
render type-circle "${seen[@]}" lens.type=circle lens.scale=60
render type-wide "${seen[@]}" lens.type='rectangle --' lens.scale=60
render type-tall "${seen[@]}" lens.type='rectangle l' lens.scale=60
render type-triangle "${seen[@]}" lens.type=triangle lens.scale=80
four lens-types type-circle.png type-wide.png type-tall.png type-triangle.png
seen=(fast-blur.amount=22 lightness.amount=-14 lens.scale=55)
render feather-0 "${seen[@]}" lens.feather=0
render feather-100 "${seen[@]}" lens.feather=100
render feather-invert "${seen[@]}" lens.feather=60 lens.invert-alpha=on
render feather-turned "${seen[@]}" lens.feather=20 lens.rotation=30 lens.type='rectangle l'
four lens-edges feather-0.png feather-100.png feather-invert.png feather-turned.png
picture lens-custom lens.type=custom lens.custom-layer="$street" \
  lens.placement='stretch map to fit' fast-blur.amount=8 mode=add

# Blurs.
picture fast-blur fast-blur.amount=12 lens.scale=60 lens.feather=10
picture fast-blur-mapped fast-blur.amount=4 lens.scale=75 lens.feather=150 \
  fast-blur.use-lens-as-blur-map=on
picture realistic-blur fast-blur.visible=off realistic-blur.amount=9 lens.type=none \
  realistic-blur.iris-sides=hexagon
picture realistic-blur-mapped fast-blur.visible=off realistic-blur.amount=12 lens.scale=90 \
  lens.feather=180 realistic-blur.use-lens-as-blur-map=on lens.invert-alpha=on lens.position=50%,65%
# Small lights on black; the same with black lifted by two levels; and with the blur map.
lights="$work/lights.png"
oiiotool --create 320x180 3 --box:color=1,0.9,0.5:fill=1 60,50,64,54 \
  --box:color=0.6,0.8,1:fill=1 180,100,186,106 --box:color=1,0.3,0.2:fill=1 240,40,243,43 \
  -d uint8 -o "$lights"
oiiotool "$lights" --addc 0.008 -d uint8 -o "$work/lifted.png"
iris=(--set fast-blur.visible=off --set realistic-blur.amount=18
  --set realistic-blur.iris-sides=hexagon --set lens.type=none --quiet)
"$build/cli/vitrell" render "$lights" "$work/black-1.png" "${iris[@]}"
"$build/cli/vitrell" render "$work/lifted.png" "$work/black-2.png" "${iris[@]}"
"$build/cli/vitrell" render "$lights" "$work/black-3.png" "${iris[@]}" \
  --set realistic-blur.use-lens-as-blur-map=on
oiiotool "$work"/black-[123].png --mosaic:pad=4 3x1 -o "$work/realistic-blur-black.png"
to_jpeg "$work/realistic-blur-black.png" realistic-blur-black
picture optical-distortion fast-blur.visible=off optical-distortion.amount=130 lens.scale=65
picture trail fast-blur.visible=off trail.amount=45 lens.feather=60 lens.scale=120 \
  trail.center-of-the-lens=off trail.center=35%,35%
picture directional-blur fast-blur.visible=off directional-blur.amount=18 \
  directional-blur.direction=90 lens.feather=20

# Tone.
picture lightness fast-blur.visible=off lightness.amount=25 lens.scale=65 lens.feather=30
picture color fast-blur.visible=off color.color=#ff7a18 color.opacity=40 lens.scale=65 lens.feather=30
picture chromatic-aberration fast-blur.visible=off chromatic-aberration.red-cyan=4 \
  chromatic-aberration.blue-yellow=8 lens.scale=90 lens.feather=10
render mode-normal fast-blur.amount=10 lens.type=none intensity=50
render mode-add fast-blur.amount=10 lens.type=none mode=add
render mode-screen fast-blur.amount=10 lens.type=none mode=screen
render mode-multiply fast-blur.amount=10 lens.type=none mode=multiply
four modes mode-normal.png mode-add.png mode-screen.png mode-multiply.png

# Recipes.
for preset in presets/*.json; do
  picture "recipe-$(basename "$preset" .json)" --preset "$preset"
done

# The clip: a sequence in, an animation out.
clip="$work/clip"
mkdir "$clip"
"$build/tools/sample_picture/sample_picture" --opaque --frames 50 --width 480 --height 270 \
  "$clip/street.####.png"

animation() {
  local name="$1" settings=() setting
  shift
  for setting in "$@"; do settings+=(--set "$setting"); done
  "$build/cli/vitrell" render "$clip/street.####.png" "$clip/$name.####.png" --quiet "${settings[@]}"
  ffmpeg -nostdin -v error -y -framerate 25 -start_number 1 -i "$clip/$name.%04d.png" \
    -c:v libwebp_anim -quality 60 -compression_level 6 -loop 0 "$images/$name.webp"
}

animation moving-lens fast-blur.amount=7 lens.type=circle lens.invert-alpha=on lens.feather=70 \
  lens.scale=42 lens.position='1~=25%,66%; 20=12%,77%; 50=80%,77%'
animation moving-blur fast-blur.visible=off lens.type=none realistic-blur.iris-sides=hexagon \
  realistic-blur.amount='1~=0; 25~=9; 50=0'

say "$(find "$images" -name '*.jpg' -o -name '*.webp' | wc -l) pictures, $(du -sh "$images" | cut -f1)"
