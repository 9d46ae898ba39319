#!/usr/bin/env bash
# Tries the frei0r modules in the programs that load them, which are installed with apt: FFmpeg, melt
# and GStreamer. Their frames must be those of `vitrell render`, byte for byte.
#
#   scripts/test-frei0r.sh             builds what is needed and runs everything; three minutes
#   scripts/test-frei0r.sh --help
#
# What the programs write stays in build/frei0r-hosts until the next run.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

settings=40
frames=10
seed=11
width=480
height=270

work="$root/build/frei0r-hosts"
bin="$root/build/release"
tool="$bin/cli/vitrell"
export FREI0R_PATH="$bin/frei0r/modules"
export GST_REGISTRY="$work/gstreamer.registry" QT_QPA_PLATFORM=offscreen

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# A program that hangs must not hang the test.
within() { timeout --kill-after=5 "$@"; }

ff() { within 120 ffmpeg -nostdin -v error -y "$@"; }

# The pixels of any picture or film, as bytes red, green, blue, alpha.
pixels() { ff -i "$1" -pix_fmt rgba -f rawvideo "$2"; }

same() {
  cmp -s "$1" "$2" || fail "$3: the frames differ ($1, $2)."
}

# The sample clip, its frames spread over the two seconds, every other one with all kinds of alpha;
# a lens layer, and a picture in each size given.
draw_clip() {
  local size i street="$bin/tools/sample_picture/sample_picture"
  "$street" "$work/street.####.png" --frames 50 --width "$width" --height "$height"
  for ((i = 0; i < frames; i++)); do
    ff -i "$work/street.$(printf %04d $((1 + i * 50 / frames))).png" -frames:v 1 -vf "format=rgba,
      geq=r='r(X,Y)':g='g(X,Y)':b='b(X,Y)':a='255-mod(X+3*Y,$((1 + 200 * (i % 2))))'" \
      "$work/clip-$i.png"
  done
  "$street" "$work/street.png" --width 960 --height 540
  ff -i "$work/street.png" -frames:v 1 -vf "scale=$width:$height,format=rgba" "$work/layer.png"
  for size in "$@"; do
    ff -i "$work/street.png" -frames:v 1 -vf "scale=${size/x/:},format=rgba" "$work/$size.png"
  done
  ff -i "$work/clip-%d.png" -pix_fmt rgba -f rawvideo "$work/clip.rgba"
}

# Renders the clip with these options of the command line.
render_clip() {
  local target="$1" i
  shift
  for ((i = 0; i < frames; i++)); do
    "$tool" render "$work/clip-$i.png" "$work/rendered-$i.png" --depth 8 --force --quiet "$@"
  done
  ff -i "$work/rendered-%d.png" -pix_fmt rgba -f rawvideo "$target"
}

filter_with_ffmpeg() {
  ff -f rawvideo -pix_fmt rgba -s "$1" -i "$2" -vf "$3" -pix_fmt rgba -f rawvideo "$4"
}

try_ffmpeg() {
  local i preset
  say "FFmpeg: $settings random settings on $frames frames"
  "$bin/tests/frei0r/random_presets" "$work" "$settings" "$seed"
  for ((i = 0; i < settings; i++)); do
    preset="$work/$i.json"
    render_clip "$work/expected.rgba" --preset "$preset"
    filter_with_ffmpeg "${width}x$height" "$work/clip.rgba" "$("$tool" params --frei0r "$preset")" \
      "$work/ffmpeg.rgba"
    same "$work/expected.rgba" "$work/ffmpeg.rgba" "FFmpeg, $preset"
    ! cmp -s "$work/expected.rgba" "$work/clip.rgba" || echo "  $preset changes nothing"
  done
  echo "  $settings settings, every frame that of the command line"
}

# The memory of ten times as many frames, by FFmpeg's own account of it.
maximum_kib() {
  within 120 ffmpeg -nostdin -v info -benchmark -f lavfi -i color=c=gray:size=16x16:rate=25 \
    -frames:v "$1" -vf "frei0r=filter_name=vitrell" -f null - 2>&1 |
    sed -n 's/.*maxrss=\([0-9]*\)k.*/\1/p'
}

try_long_film() {
  local short long
  say "FFmpeg: 10,000 frames"
  short="$(maximum_kib 1000)"
  long="$(maximum_kib 10000)"
  echo "  1,000 frames $short KiB, 10,000 frames $long KiB"
  ((short > 0 && long <= short + 2048)) || fail "The memory grows."
}

# Killed, and asked to end, in between; what was written is what was rendered.
try_ending() {
  local process kind written
  say "FFmpeg: ended in between"
  for kind in KILL TERM; do
    ffmpeg -nostdin -v quiet -y -stream_loop -1 -f rawvideo -pix_fmt rgba -s "${width}x$height" \
      -i "$work/clip.rgba" -t 600 -vf "frei0r=filter_name=vitrell" -pix_fmt rgba -f rawvideo \
      "$work/ended.rgba" &
    process=$!
    for _ in {1..100}; do
      sleep 0.1
      (($(stat -c %s "$work/ended.rgba" 2>/dev/null || echo 0) < width * height * 4 * (frames + 3))) || break
    done
    kill "-$kind" "$process"
    within 10 tail --pid="$process" -f /dev/null || {
      kill -KILL "$process"
      fail "FFmpeg does not end on $kind."
    }
    wait "$process" || true
    written="$(stat -c %s "$work/ended.rgba")"
    ((written > width * height * 4 * frames)) || fail "FFmpeg wrote nothing before $kind."
    render_clip "$work/expected.rgba"
    cmp -n "$((width * height * 4 * frames))" "$work/expected.rgba" "$work/ended.rgba" ||
      fail "The frames before $kind are wrong."
  done
}

# Through one picture file to a film without loss; further arguments follow the tracks.
run_melt() {
  local target="$1"
  shift
  within 60 melt -silent "$@" -consumer "avformat:$work/melt.mkv" vcodec=ffv1 pix_fmt=bgra \
    mlt_image_format=rgba real_time=-1 an=1 >"$work/melt.log" 2>&1 || fail "melt fails: $work/melt.log"
  pixels "$work/melt.mkv" "$target"
}

write_profile() {
  printf '%s\n' description=test frame_rate_num=25 frame_rate_den=1 "width=$width" "height=$height" \
    progressive=1 sample_aspect_num=1 sample_aspect_den=1 display_aspect_num=16 \
    display_aspect_den=9 colorspace=709 >"$work/profile"
}

try_melt() {
  local i arguments
  say "melt: the filter with 10 of the settings, animated, and the mixer"
  write_profile
  within 60 melt -query filter=frei0r.vitrell 2>/dev/null >"$work/melt-query"
  grep -q 'title: fast-blur.amount' "$work/melt-query" || fail "melt does not list the parameters."
  for ((i = 0; i < 10; i++)); do
    "$tool" render "$work/clip-0.png" "$work/expected.png" --depth 8 --force --quiet \
      --preset "$work/$i.json"
    pixels "$work/expected.png" "$work/expected.rgba"
    read -ra arguments < <("$tool" params --mlt "$work/$i.json")
    # The custom lens has a test of its own, below.
    [[ "${arguments[0]}" == -filter ]] || continue
    run_melt "$work/melt.rgba" -profile "$work/profile" "$work/clip-0.png" out=0 "${arguments[@]}"
    same "$work/expected.rgba" "$work/melt.rgba" "melt, $work/$i.json"
  done
  try_melt_animation
  "$tool" render "$work/clip-0.png" "$work/expected.png" --depth 8 --force --quiet \
    --set lens.type=custom --custom-layer "$work/layer.png"
  pixels "$work/expected.png" "$work/expected.rgba"
  read -ra arguments < <("$tool" params --mlt --set lens.type=custom)
  run_melt "$work/melt.rgba" -profile "$work/profile" "$work/clip-0.png" out=0 \
    -track "$work/layer.png" out=0 "${arguments[@]}" a_track=0 b_track=1 in=0 out=0
  same "$work/expected.rgba" "$work/melt.rgba" "melt's custom lens"
}

# A preset's keys as melt's animation strings: straight, smooth, held and between two frames, for
# every kind of control.
try_melt_animation() {
  local frame arguments
  cat >"$work/moving.json" <<'END'
{"fast-blur.amount": "0=0; 4=63.5", "lens.position": "0~=20%,30%; 2~=70%,40%; 4=50%,80%",
 "lens.feather": "0.5=0; 3.5=120", "lens.rotation": "0=0; 4=90", "lens.type": "0|=circle; 3=triangle",
 "color.opacity": 50, "color.color": "0=#ff8800; 4=#0011ff", "lightness.visible": "0|=off; 2=on",
 "lightness.amount": -40}
END
  : >"$work/expected.rgba"
  for frame in 0 1 2 3 4; do
    "$tool" render "$work/clip-0.png" "$work/expected.png" --depth 8 --force --quiet \
      --preset "$work/moving.json" --at "$frame"
    pixels "$work/expected.png" "$work/frame.rgba"
    cat "$work/frame.rgba" >>"$work/expected.rgba"
  done
  read -ra arguments < <("$tool" params --mlt "$work/moving.json")
  run_melt "$work/melt.rgba" -profile "$work/profile" "$work/clip-0.png" out=4 "${arguments[@]}"
  same "$work/expected.rgba" "$work/melt.rgba" "melt's animation"
  echo "  5 frames of 6 controls with keys: those of the command line"
}

try_gstreamer() {
  local size
  say "GStreamer: the filter in the sizes $*"
  within 60 gst-inspect-1.0 frei0r-filter-vitrell >"$work/gst-filter"
  within 60 gst-inspect-1.0 frei0r-mixer-vitrell-custom >"$work/gst-mixer"
  grep -q 'fast-blur-amount' "$work/gst-filter" || fail "GStreamer does not list the parameters."
  for size in "$@"; do
    pixels "$work/$size.png" "$work/size.rgba"
    "$tool" render "$work/$size.png" "$work/expected.png" --depth 8 --force --quiet \
      --set lens.feather=12.5 --set fast-blur.amount=31.75 --set mode=add
    pixels "$work/expected.png" "$work/expected.rgba"
    within 60 gst-launch-1.0 -q filesrc "location=$work/size.rgba" ! rawvideoparse format=rgba \
      "width=${size%x*}" "height=${size#*x}" framerate=25/1 ! \
      frei0r-filter-vitrell lens-feather=0.025 fast-blur-amount=0.25 mode=0.333 ! \
      filesink "location=$work/gstreamer.rgba" || fail "GStreamer fails on $size."
    same "$work/expected.rgba" "$work/gstreamer.rgba" "GStreamer, $size"
    echo "  $size: the frame of the command line"
  done
  try_gstreamer_mixer
  try_gstreamer_at_once
}

# The second input is the custom lens.
try_gstreamer_mixer() {
  local input form=(rawvideoparse format=rgba "width=$width" "height=$height" framerate=25/1)
  for input in clip-0 layer expected; do
    if [[ "$input" == expected ]]; then
      "$tool" render "$work/clip-0.png" "$work/expected.png" --depth 8 --force --quiet \
        --set lens.type=custom --custom-layer "$work/layer.png" --set fast-blur.amount=31.75 \
        --set lens.feather=12.5
    fi
    pixels "$work/$input.png" "$work/$input.rgba"
  done
  within 60 gst-launch-1.0 -q frei0r-mixer-vitrell-custom name=mix lens-feather=0.025 \
    fast-blur-amount=0.25 ! filesink "location=$work/gstreamer.rgba" \
    filesrc "location=$work/clip-0.rgba" ! "${form[@]}" ! mix.sink_0 \
    filesrc "location=$work/layer.rgba" ! "${form[@]}" ! mix.sink_1 ||
    fail "GStreamer fails on the mixer."
  same "$work/expected.rgba" "$work/gstreamer.rgba" "GStreamer's mixer"
  echo "  the mixer: the frame of the command line"
}

# Four instances in one process, each fed by a thread of its own with the clip twice over.
try_gstreamer_at_once() {
  local i branches=() amounts=(0 31.75 63.5 127) numbers=(0 0.25 0.5 1)
  cat "$work/clip.rgba" "$work/clip.rgba" >"$work/film.rgba"
  for i in "${!amounts[@]}"; do
    branches+=(split. ! queue max-size-buffers=2 ! frei0r-filter-vitrell lens-feather=0.025
      "fast-blur-amount=${numbers[i]}" ! filesink "location=$work/branch-$i.rgba")
  done
  within 120 gst-launch-1.0 -q filesrc "location=$work/film.rgba" ! rawvideoparse format=rgba \
    "width=$width" "height=$height" framerate=25/1 ! tee name=split "${branches[@]}" ||
    fail "GStreamer fails on four instances."
  for i in "${!amounts[@]}"; do
    render_clip "$work/expected.rgba" --set lens.feather=12.5 --set "fast-blur.amount=${amounts[i]}"
    cat "$work/expected.rgba" "$work/expected.rgba" >"$work/film.rgba"
    same "$work/film.rgba" "$work/branch-$i.rgba" "Instance $i of four"
  done
  echo "  four instances at once, $((frames * 2)) frames each: those of the command line"
}

# FFmpeg pads its rows to a multiple of 64 bytes and tells modules nothing of it, so that odd widths
# come out slanted; they must do no harm.
try_odd_widths() {
  local size
  say "FFmpeg: the sizes $*"
  for size in "$@"; do
    pixels "$work/$size.png" "$work/size.rgba"
    filter_with_ffmpeg "$size" "$work/size.rgba" "$("$tool" params --frei0r)" "$work/ffmpeg.rgba"
    [[ "$(stat -c %s "$work/ffmpeg.rgba")" == "$(stat -c %s "$work/size.rgba")" ]] ||
      fail "FFmpeg fails on $size."
  done
}

case "${1:-}" in
  "") ;;
  -h | --help) usage && exit 0 ;;
  *) echo "Unknown argument '$1'; see --help" >&2 && exit 2 ;;
esac

bash scripts/setup.sh
install_packages ffmpeg melt gstreamer1.0-tools gstreamer1.0-plugins-base gstreamer1.0-plugins-bad
build_preset release vitrell sample_picture vitrell_frei0r_filter vitrell_frei0r_mixer random_presets
rm -rf "$work"
mkdir -p "$work"
sizes=(1x1 7x5 1921x1081)
draw_clip "${sizes[@]}"
try_ffmpeg
try_long_film
try_ending
try_odd_widths "${sizes[@]}"
try_melt
try_gstreamer "${sizes[@]}"
say "FFmpeg, melt and GStreamer show what the command line renders."
