#!/usr/bin/env bash
# Installs, with apt, whatever the build and the tests need and this Debian 12 machine lacks.
# Works as root or with sudo, asks nothing, and does nothing when everything is there.
#
#   scripts/setup.sh [--panel] [--checks]
#
#   --panel    also what the panel program needs
#   --checks   also the second compiler, its sanitizers, and the programs that check format and code
set -euo pipefail

packages=(
  # sources, compilers, build
  git g++ cmake ninja-build pkg-config ccache
  # libraries of the command line, the headless host and the tests; the picture library's CMake
  # files also name its tools
  libopenimageio-dev openimageio-tools libwebp-dev libheif-dev libexiv2-dev libopenexr-dev
  libcli11-dev nlohmann-json3-dev libgtest-dev libgmock-dev libbenchmark-dev libmlt-dev libjpeg-dev
  frei0r-plugins-dev libavformat-dev libavcodec-dev libavutil-dev libswscale-dev
  # what the tests compare metadata and videos with
  libimage-exiftool-perl ffmpeg
  # a locale with a decimal comma
  locales
)

for argument in "$@"; do
  case "$argument" in
    --panel) packages+=(qt6-base-dev) ;;
    --checks) packages+=(clang-14 clang libclang-rt-14-dev clang-format-14 clang-tidy-14) ;;
    *)
      echo "Unknown argument '$argument'; there are --panel and --checks." >&2
      exit 2
      ;;
  esac
done

missing=()
own="$(dpkg --print-architecture)" # A package may be known for other processors, too.
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Architecture} ${db:Status-Status}\n' "$package" 2>/dev/null |
    grep -xE "(all|$own) installed" >/dev/null || missing+=("$package")
done

if ((${#missing[@]} == 0)); then
  echo "Set-up: all ${#packages[@]} packages are installed."
  exit 0
fi

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "Set-up: these packages are missing and neither root nor sudo is at hand:" >&2
    echo "  ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
  [[ -t 0 ]] || as_root=(sudo -n) # nobody is there to type a password
fi

apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300)
echo "Set-up: installing ${missing[*]}"
"${apt[@]}" update -qq </dev/null
"${apt[@]}" install -y -qq --no-install-recommends "${missing[@]}" </dev/null
echo "Set-up: done."
