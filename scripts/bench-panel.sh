#!/usr/bin/env bash
# Measures how long a hand waits for the picture while it drags a slider of the panel program, and
# writes the table of docs/panel.md. Nothing else should work on the machine meanwhile.
#
#   scripts/bench-panel.sh           200 changes of each slider at 1080p; two minutes behind the build
#   scripts/bench-panel.sh --quick   20 changes; the table and the ten worst go to the terminal
#   scripts/bench-panel.sh --help
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

changes=200 worst=0
case "${1:-}" in
  "") ;;
  --quick) changes=20 worst=10 ;;
  -h | --help) usage && exit 0 ;;
  *) echo "Unknown argument '$1'; see --help" >&2 && exit 2 ;;
esac

bash scripts/setup.sh --panel
configure_options+=(-DVITRELL_BUILD_PANEL=ON)
build_preset release panel_answer_times

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
{
  printf '%s, %s processors, %s; %s. Load average before the run %s.\n\n' \
    "$(lscpu | sed -n 's/^Model name: *//p')" "$(nproc)" \
    "$(. /etc/os-release && echo "$PRETTY_NAME")" "$(date -u +%Y-%m-%d)" \
    "$(cut -d' ' -f1 /proc/loadavg)"
  build/release/tests/panel/panel_answer_times --changes "$changes" --worst "$worst"
} | tee "$work/table.md"
((changes == 200)) || exit 0
{
  sed '/<!-- panel -->/q' docs/panel.md
  printf '\n'
  cat "$work/table.md"
  printf '\n'
  sed -n '/<!-- \/panel -->/,$p' docs/panel.md
} >"$work/panel.md"
mv "$work/panel.md" docs/panel.md
