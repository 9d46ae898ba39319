#!/usr/bin/env bash
# Puts Vitrell.plugin into the folder that After Effects and its sister programs share. On a Mac.
#
#   scripts/install-macos.sh [BUNDLE]             default: build/macos/src/Vitrell.plugin, else
#                                                 dist/Vitrell.plugin
#   scripts/install-macos.sh --dry-run [BUNDLE]   checks the bundle and says what would be done
#   scripts/install-macos.sh --remove             takes it out again
#   scripts/install-macos.sh --help
#
# Asks for an administrator's password where the folder needs it. Quit the host first.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
folder="/Library/Application Support/Adobe/Common/Plug-ins/7.0/MediaCore"
target="$folder/Vitrell.plugin"

usage() {
  sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p;}' "${BASH_SOURCE[0]}"
}

fail() {
  echo "$*" >&2
  exit 1
}

# Runs a command as it is where the folder can be written, else as administrator.
as_owner() {
  if [[ -w "$folder" || (! -e "$folder" && -w /Library) ]]; then
    "$@"
  else
    sudo "$@"
  fi
}

check() {
  local bundle="$1" module="$1/Contents/MacOS/Vitrell" file
  for file in "$module" "$bundle/Contents/Info.plist" "$bundle/Contents/Resources/Vitrell.rsrc"; do
    [[ -s "$file" ]] || fail "$bundle is not complete: $file is missing. Build it again."
  done
  lipo -archs "$module" | grep -qw "$(uname -m)" ||
    fail "$bundle holds no code for this Mac ($(uname -m)): $(lipo -archs "$module")."
  codesign --verify "$module" ||
    fail "The signature of $module does not hold. Sign it: codesign --force --sign - '$bundle'"
}

bundle=""
dry=0
remove=0
for argument in "$@"; do
  case "$argument" in
    --dry-run) dry=1 ;;
    --remove) remove=1 ;;
    -h | --help) usage && exit 0 ;;
    -*) echo "Unknown option '$argument'; see --help" >&2 && exit 2 ;;
    *) bundle="$argument" ;;
  esac
done

[[ "$(uname -s)" == Darwin ]] || fail "This script installs on macOS; here the bundle can only be built."

if ((remove)); then
  [[ -e "$target" ]] || fail "$target is not there."
  if ((dry)); then
    echo "Would remove $target"
  else
    as_owner rm -R "$target"
    echo "Removed $target"
  fi
  exit 0
fi

if [[ -z "$bundle" ]]; then
  bundle="$root/build/macos/src/Vitrell.plugin"
  [[ -d "$bundle" ]] || bundle="$root/dist/Vitrell.plugin"
fi
[[ -d "$bundle" ]] ||
  fail "There is no $bundle. Build it: cmake --preset macos && cmake --build --preset macos"
check "$bundle"

if ((dry)); then
  echo "Would install $bundle as $target"
  exit 0
fi
as_owner mkdir -p "$folder"
# The old bundle stays whole until the new one lies beside it.
as_owner rm -Rf "$target.new"
as_owner cp -R "$bundle" "$target.new"
as_owner xattr -dr com.apple.quarantine "$target.new" 2>/dev/null || true
as_owner rm -Rf "$target"
as_owner mv "$target.new" "$target"
echo "Installed $target. Start the host again; the effect is under Blur & Sharpen."
