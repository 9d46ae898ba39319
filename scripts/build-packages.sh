#!/usr/bin/env bash
# Builds the Debian packages `vitrell`, `frei0r-vitrell` and `vitrell-panel` into dist/, on Debian 12.
#
#   scripts/build-packages.sh           builds them and asks lintian, which may find no error
#   scripts/build-packages.sh --test    also installs them in a clean Debian 12 in build/packages,
#                                       uses what they hold and removes them again
#   scripts/build-packages.sh --help
#
# The same commit gives the same bytes on the same system. The clean system is fetched once and kept;
# it needs root.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

build="$root/build/packages/release"
base="$root/build/packages/debian.tar"
clean="$root/build/packages/root"

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# No file may tell where it was built: neither by a path in its code, nor by its build ID, which is
# made of the program as it is linked, with the path of its libraries in the build folder.
build_packages() {
  SOURCE_DATE_EPOCH="$(git log -1 --format=%ct)"
  export SOURCE_DATE_EPOCH
  use_ccache
  say "Building build/packages/release"
  cmake --preset release -B "$build" --log-level=WARNING -DVITRELL_PACKAGES=ON \
    -DVITRELL_BUILD_PANEL=ON \
    -DVITRELL_BUILD_TESTS=OFF -DVITRELL_BUILD_BENCH=OFF \
    -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$root=." -DCMAKE_BUILD_RPATH_USE_ORIGIN=ON
  cmake --build "$build" --parallel "$jobs"
  rm -f "$build"/*.deb
  (cd "$build" && umask 022 && cpack)
  mkdir -p dist
  cp "$build"/{vitrell,frei0r-vitrell,vitrell-panel}_*.deb dist/
}

# The test's host programs run inside: nothing of this machine may help.
inside() {
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C DEBIAN_FRONTEND=noninteractive \
    chroot "$clean" "$@"
}

make_clean_root() {
  if [[ ! -f "$base" ]]; then
    say "Fetching a clean Debian 12"
    rm -rf "$clean"
    debootstrap --variant=minbase bookworm "$clean" >"$build/debootstrap.log"
    tar --create --file "$base.new" --directory "$clean" .
    mv "$base.new" "$base"
  fi
  rm -rf "$clean"
  mkdir "$clean"
  tar --extract --file "$base" --directory "$clean"
}

# The panel starts from its entry in the desktop's menu, without a display, and loads the effect.
test_panel() {
  local entry=/usr/share/applications/vitrell-panel.desktop program icon process effects
  desktop-file-validate "$clean$entry" || fail "The desktop entry is wrong."
  program="$(inside sed -n 's/^Exec=\([^ ]*\) %f$/\1/p' "$entry")"
  icon="$(inside sed -n 's/^Icon=//p' "$entry")"
  inside test -s "/usr/share/icons/hicolor/scalable/apps/$icon.svg" || fail "The icon is missing."
  expect "panel" "$(inside env QT_QPA_PLATFORM=offscreen "$program" --version)" \
    "vitrell-panel $(inside vitrell --version | cut -d ' ' -f 2)"
  inside sh -c 'echo $$ >/tmp/panel.id; exec env QT_QPA_PLATFORM=offscreen HOME=/tmp "$0" /tmp/in.png' \
    "$program" >"$work/panel.log" 2>&1 &
  for _ in {1..100}; do
    sleep 0.2
    process="$(cat "$clean/tmp/panel.id" 2>/dev/null || true)"
    effects="$(grep -c /usr/lib/vitrell/Vitrell.so "/proc/$process/maps" 2>/dev/null || true)"
    ((!effects)) || break
  done
  kill "$process" || true
  wait "$!" || true
  ((effects)) || fail "The panel loads no effect: $(cat "$work/panel.log")"
}

test_packages() {
  local before after
  make_clean_root
  before="$(inside dpkg-query -W | wc -l)"
  cp dist/{vitrell,frei0r-vitrell,vitrell-panel}_*.deb "$clean/tmp/"
  cp "$build/tools/sample_picture/sample_picture" "$work/"
  "$work/sample_picture" "$clean/tmp/in.png" --width 320 --height 180
  say "Installing in a clean Debian 12"
  inside apt-get update -qq
  inside sh -c 'apt-get install -y -qq --no-install-recommends /tmp/*.deb' >"$build/install.log"
  expect "version" "$(inside vitrell --version)" "vitrell $(sed -n \
    's/^project(Vitrell VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)"
  inside vitrell render --quiet /tmp/in.png /tmp/out.png \
    --preset /usr/share/vitrell/presets/tilt-shift.json
  "$build/cli/vitrell" render --quiet "$clean/tmp/in.png" "$work/out.png" \
    --preset presets/tilt-shift.json
  cmp "$clean/tmp/out.png" "$work/out.png" || fail "The installed program renders something else."
  inside bash -c '. /usr/share/bash-completion/completions/vitrell
    COMP_WORDS=(vitrell params --mar); COMP_CWORD=2; _vitrell; [[ "${COMPREPLY[*]}" == --markdown ]]' \
    || fail "bash completes nothing."
  expect "frei0r modules" "$(inside ls /usr/lib/frei0r-1)" $'vitrell.so\nvitrell_custom.so'
  expect "controls for Kdenlive" \
    "$(inside grep -c '<parameter ' /usr/share/kdenlive/effects/frei0r_vitrell.xml)" 45
  inside sh -c '! ldd /usr/lib/frei0r-1/*.so | grep "not found"' || fail "A library is missing."
  test_panel
  say "Removing"
  inside apt-get purge -y -qq vitrell frei0r-vitrell vitrell-panel >>"$build/install.log"
  inside apt-get autoremove -y -qq --purge >>"$build/install.log"
  after="$(inside dpkg-query -W | wc -l)"
  expect "packages left behind" "$((after - before))" 0
  expect "files left behind" "$(find "$clean/usr" "$clean/etc" -iname '*vitrell*' | wc -l)" 0
}

test=0
for argument in "$@"; do
  case "$argument" in
    --test) test=1 ;;
    -h | --help) usage && exit 0 ;;
    *) echo "Unknown argument '$argument'; see --help" >&2 && exit 2 ;;
  esac
done

bash scripts/setup.sh --panel
install_packages dpkg-dev lintian
((!test)) || install_packages debootstrap desktop-file-utils
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
build_packages
say "Asking lintian"
lintian --fail-on error dist/{vitrell,frei0r-vitrell,vitrell-panel}_*.deb
((!test)) || test_packages
say "dist/ holds the packages"
sha256sum dist/*.deb
