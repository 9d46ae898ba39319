#!/usr/bin/env bash
# Builds a release from a clean clone of the last commit and leaves it in dist/:
#
#   Vitrell-VERSION-macos.zip           the bundle for macOS, Intel and Apple silicon
#   Vitrell-VERSION-windows.zip         the module for 64-bit Windows
#   vitrell_VERSION_ARCH.deb            the command line as a Debian package
#   vitrell-panel_VERSION_ARCH.deb      the panel program
#   frei0r-vitrell_VERSION_ARCH.deb     the modules for FFmpeg, Kdenlive, Shotcut and GStreamer
#   Vitrell-VERSION-linux-ARCH.tar.gz   the command line, the module, the presets
#   CHANGES-VERSION.md                  the changelog's section of this version
#   SHA256SUMS                          checksums of all these
#
#   scripts/release.sh             refuses when files differ from the last commit
#   scripts/release.sh --dirty     leaves changes that are not committed out, and says so
#   scripts/release.sh --help
#
# The version is that of CMakeLists.txt. The same commit gives the same bytes on the same system,
# wherever and whenever it is built.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

# Both would go into the archives.
umask 022
export TZ=UTC

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# Files or folders of dist/ as an archive. Without its extra fields it holds one time of each file,
# that of the commit: when a file was made or last read cannot be the same twice.
make_zip() {
  local archive="$parts/$1"
  shift
  (
    cd dist
    find "$@" -exec touch --date="$commit_time" {} +
    find "$@" -type f | LC_ALL=C sort | zip -q -X "$archive" -@
  )
}

dirty=0
for argument in "$@"; do
  case "$argument" in
    --dirty) dirty=1 ;;
    -h | --help) usage && exit 0 ;;
    *) echo "Unknown argument '$argument'; see --help" >&2 && exit 2 ;;
  esac
done

if [[ -n "$(git status --porcelain)" ]]; then
  ((dirty)) || fail "There are changes that are not committed. Commit them, or leave them out with --dirty."
  say "Changes that are not committed are left out"
fi

install_packages zip
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
trap 'exit 130' INT TERM
clone="$work/vitrell"
parts="$work/parts"
mkdir "$parts"
say "Cloning $(git rev-parse --short HEAD)"
git clone --quiet --no-hardlinks "$root" "$clone"
cd "$clone"
version="$(sed -n 's/^project(Vitrell VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)"
[[ -n "$version" ]] || fail "CMakeLists.txt names no version."
commit_time="$(git log -1 --date='format-local:%Y-%m-%d %H:%M:%S UTC' --format=%cd)"

# One section of the changelog, without its heading.
sed -n "/^## $version\b/,/^## /{/^## /d;p}" CHANGELOG.md >"$parts/CHANGES-$version.md"
[[ -s "$parts/CHANGES-$version.md" ]] || fail "CHANGELOG.md has no section $version."

bash scripts/build-macos.sh
make_zip "Vitrell-$version-macos.zip" Vitrell.plugin

bash scripts/build-windows.sh
make_zip "Vitrell-$version-windows.zip" Vitrell.aex

bash scripts/build-packages.sh
cp dist/*.deb "$parts/"

# What the package installs, to be unpacked anywhere: its programs name no folder of the build.
stage="vitrell-$version"
mkdir "$work/$stage"
dpkg-deb --extract dist/vitrell_*.deb "$work/package"
cp -R "$work/package/usr/bin" "$work/package/usr/lib" "$work/package/usr/share/vitrell/presets" \
  "$work/$stage/"
"$work/$stage/bin/vitrell" --version >/dev/null || fail "The built command line does not start."
tar --create --sort=name --mtime="$commit_time" --owner=0 --group=0 --numeric-owner \
  --directory "$work" "$stage" | gzip -n >"$parts/Vitrell-$version-linux-$(uname -m).tar.gz"

(cd "$parts" && LC_ALL=C sha256sum -- * >"$work/SHA256SUMS" && mv "$work/SHA256SUMS" .)
mkdir -p "$root/dist"
for file in "$parts"/*; do
  cp "$file" "$root/dist/.new"
  mv "$root/dist/.new" "$root/dist/$(basename "$file")"
done
say "dist/ holds version $version"
cat "$parts/SHA256SUMS"
