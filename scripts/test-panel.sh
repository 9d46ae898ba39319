#!/usr/bin/env bash
# Uses the panel program as a person does: with a window manager, a real mouse and real keys, on a
# display of its own.
#
#   scripts/test-panel.sh               opens a picture, drags the lens, types a value, renders; kills
#                                       the program and takes its last state up; plays a clip
#   scripts/test-panel.sh --pictures    also takes the pictures of docs/panel.md
#   scripts/test-panel.sh --help
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

pictures=
case "${1:-}" in
  "") ;;
  --pictures) pictures=1 ;;
  -h | --help) usage && exit 0 ;;
  *) echo "Unknown argument '$1'; see --help" >&2 && exit 2 ;;
esac

width=1600
height=900

bash scripts/setup.sh --panel
install_packages xvfb xdotool openbox
configure_options+=(-DVITRELL_BUILD_PANEL=ON)
build_preset release vitrell vitrell-panel sample_picture
bin="$root/build/release"

work="$(mktemp -d)"
processes=()
end() {
  local process
  for process in "${processes[@]}"; do kill "$process" 2>/dev/null || true; done
  wait
  rm -rf "$work"
}
trap end EXIT
# Nothing of the user's own, and the same on every machine; no bus that a desktop would be asked on.
export HOME="$work" XDG_RUNTIME_DIR="$work" XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" LC_ALL=C.UTF-8
unset QT_QPA_PLATFORM WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS

start_display() {
  mkfifo "$work/display"
  Xvfb -displayfd 3 -screen 0 "${width}x${height}x24" -nolisten tcp 3>"$work/display" \
    2>"$work/xvfb.log" &
  processes+=($!)
  read -r DISPLAY <"$work/display"
  export DISPLAY=":$DISPLAY"
  openbox 2>"$work/openbox.log" &
  processes+=($!)
}

# Waits until the command succeeds, at most 30 s.
await() {
  local what="$1" tries=0
  shift
  until "$@" >/dev/null 2>&1; do
    ((++tries < 300)) || {
      take "$work/failed.png"
      cp "$work/failed.png" "$root/build/panel-failed.png"
      fail "Not within 30 s: $what. build/panel-failed.png shows the display."
    }
    sleep 0.1
  done
}

# The whole display as a picture.
take() {
  ffmpeg -v error -y -f x11grab -video_size "${width}x${height}" -draw_mouse 0 -i "$DISPLAY" \
    -frames:v 1 "$1" </dev/null
}

# Where the clip is shown: the centre of the window's upper left part.
take_view() {
  take "$work/display.png"
  ffmpeg -v error -y -i "$work/display.png" -vf crop=iw*0.4:ih*0.4:iw*0.2:ih*0.12 "$1" </dev/null
}

view_differs_from() { take_view "$work/view.png" && ! cmp -s "$work/view.png" "$1"; }

# A picture for the documentation.
take_picture() {
  take "$work/$1.png"
  ffmpeg -v error -y -i "$work/$1.png" -vf scale=1280:-1 -q:v 4 "$root/docs/images/$1.jpg" </dev/null
}

# By its class: of a title only what stands before its dash can be searched for.
window_of_panel() { xdotool search --onlyvisible --class vitrell-panel; }
window_named() { xdotool search --onlyvisible --name "$1"; }
key() { xdotool key --clearmodifiers "$@"; }
type_text() { xdotool type --delay 12 "$1"; }
value_of() { sed -n "s/^  \"$2\": \(.*[^,]\),\{0,1\}$/\1/p" "$1"; }

start_panel() {
  "$bin/panel/vitrell-panel" "$@" 2>"$work/panel.log" &
  panel=$!
  processes+=("$panel")
  await "the panel's window" window_of_panel
  local window=
  # A window manager may take it away for a moment while it dresses it.
  until [[ -n "$window" ]]; do
    window="$(window_of_panel | head -n 1 || true)"
  done
  xdotool windowsize "$window" "$width" "$height" windowmove "$window" 0 0 \
    windowactivate "$window"
  sleep 1
}

# As a dark desktop tells them to its programs.
write_dark_colours() {
  local group
  for group in Window View Button Tooltip Selection; do
    printf '[Colors:%s]\nBackgroundNormal=%s\nBackgroundAlternate=%s\nForegroundNormal=%s\n' \
      "$group" "$(dark_background "$group")" 54,59,64 239,240,241
  done
}
dark_background() {
  case "$1" in
    View) echo 35,38,41 ;;
    Selection) echo 61,174,233 ;;
    *) echo 49,54,59 ;;
  esac
}

# A dialog for files takes a typed name.
answer_dialog() {
  await "the dialog $1" window_named "$1"
  sleep 0.5
  key ctrl+a
  type_text "$2"
  key Return
}

say "Opening"
"$bin/tools/sample_picture/sample_picture" --opaque --width 960 --height 540 "$work/street.png"
start_display
start_panel
key ctrl+o
answer_dialog '^Open' "$work/street.png"
await "the picture" window_named 'street.png'
sleep 2

say "Dragging the lens"
# Without docks the picture, and the handle of its centre, is in the middle of the window.
key ctrl+1 ctrl+2
sleep 1
xdotool mousemove $((width / 2)) $((height / 2)) mousedown 1
for step in $(seq 1 20); do
  xdotool mousemove $((width / 2 - 10 * step)) $((height / 2 - 5 * step))
  sleep 0.02
done
xdotool mouseup 1
key ctrl+1 ctrl+2
sleep 1

say "Typing a value"
# The field of Feather, in a window of this size without remembered places.
xdotool mousemove $((width * 85 / 100)) $((height * 23 / 100)) click 1
sleep 0.3
key ctrl+a
type_text 40
key Return
sleep 1
if [[ -n "$pictures" ]]; then
  key shift+Tab
  take_picture panel
fi

say "Dragging the divider"
key ctrl+1 ctrl+2
sleep 1
key d
xdotool mousemove $((width / 2)) $((height * 3 / 4)) mousedown 1
for step in $(seq 1 20); do
  xdotool mousemove $((width / 2 - 12 * step)) $((height * 3 / 4))
  sleep 0.02
done
xdotool mouseup 1
sleep 1
[[ -z "$pictures" ]] || take_picture panel-divider
key d ctrl+1 ctrl+2
sleep 1

say "Saving the preset and rendering"
key ctrl+shift+s
answer_dialog 'Save Preset' "$work/look.json"
await "the preset" test -s "$work/look.json"
key ctrl+r
answer_dialog 'Render to File' "$work/shown.png"
await "the rendered file" test -s "$work/shown.png"

say "Comparing"
position="$(value_of "$work/look.json" lens.position)"
[[ "$position" != '"50%,50%"' ]] || fail "The lens was not dragged."
[[ "$(value_of "$work/look.json" lens.feather)" == 40.0 ]] || fail "The value was not typed."
"$bin/cli/vitrell" render --quiet "$work/street.png" "$work/expected.png" --preset "$work/look.json"
cmp "$work/expected.png" "$work/shown.png" || fail "The panel renders something else."
say "The lens is at $position; the file is what the command line renders."

say "Killing it, and taking up its last state"
kill -KILL "$panel" && wait "$panel" || true
start_panel
key alt+r
await "the picture of the last session" window_named 'street.png'
sleep 1
key ctrl+shift+s
answer_dialog 'Save Preset' "$work/again.json"
await "the preset" test -s "$work/again.json"
cmp "$work/look.json" "$work/again.json" || fail "The last state is not what it was."
key ctrl+q
wait "$panel" || fail "The program does not close as it should."

say "A clip, with a desktop that is dark"
rm -rf "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"
mkdir -p "$XDG_CONFIG_HOME"
write_dark_colours >"$XDG_CONFIG_HOME/kdeglobals"
"$bin/tools/sample_picture/sample_picture" --opaque --width 640 --height 360 \
  "$work/clip.####.png" --frames 25
cat >"$work/moving.json" <<<'{"lens.scale": "0=30; 12~=70; 24=30",
  "lens.position": "0=25%,40%; 24~=75%,60%", "lens.feather": 60}'
XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5 start_panel "$work/clip.####.png" \
  --preset "$work/moving.json"
await "the clip" window_named 'clip.####.png'
sleep 2
# The lens's scale and its curve; then a part of the clip is played, by the button.
xdotool mousemove $((width * 85 / 100)) $((height * 29 / 100)) click 1
sleep 1
take_view "$work/resting.png"
xdotool mousemove $((width * 4 / 100)) $((height * 737 / 1000)) click 1
await "another frame of the clip that plays" view_differs_from "$work/resting.png"
sleep 2
xdotool click 1
sleep 3
[[ -z "$pictures" ]] || take_picture panel-clip
key ctrl+q
wait "$panel" || fail "The program does not close as it should."
