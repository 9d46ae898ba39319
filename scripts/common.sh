# What the scripts beside this file share. Sourced, never run.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

# How many jobs run side by side.
jobs="${VITRELL_JOBS:-$(nproc)}"

# What build_preset tells CMake besides the preset.
configure_options=()

# The project's own sources, tracked or new; further arguments are path patterns of git.
own_sources() {
  local files
  files="$(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' '*.inc' "$@" |
    while IFS= read -r file; do [[ -f "$file" ]] && printf '%s\n' "$file"; done)"
  if [[ -z "$files" ]]; then
    echo "git lists no sources in $root" >&2
    return 1
  fi
  printf '%s\n' "$files"
}

# Says what is about to happen, on a line that stands out in a long log.
say() {
  printf '\n== %s\n' "$*"
}

fail() {
  echo "$*" >&2
  exit 1
}

# One value about what was built, and what it must be.
expect() {
  local what="$1" actual="$2" expected="$3"
  [[ "$actual" == "$expected" ]] || fail "$what: '$actual' instead of '$expected'"
  printf '  %-34s %s\n' "$what" "${actual//$'\n'/, }"
}

# The prefix that a preset's programs are run with. The thread sanitizer of this compiler cannot
# live with strongly randomised addresses, so that they are fixed where the system allows it.
launcher_of() {
  if [[ "$1" == tsan ]] && setarch "$(uname -m)" -R true 2>/dev/null; then
    printf '%s\n' setarch "$(uname -m)" -R
  fi
}

# Lets what is configured from here on compile through ccache, where it is installed. In depend mode
# a compilation that is not in the cache costs no more than without it; the folder of the clone is
# taken out of what is compared, so that another clone finds what this one compiled.
use_ccache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_DEPEND=true CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=true
  export CCACHE_SLOPPINESS=pch_defines,time_macros
}

# Configures and builds one preset; further arguments are targets (none: everything).
build_preset() {
  local preset="$1" launcher
  shift
  mapfile -t launcher < <(launcher_of "$preset")
  use_ccache
  say "Building build/$preset ($jobs jobs)"
  cmake --preset "$preset" --log-level=WARNING "${configure_options[@]}" &&
    "${launcher[@]}" cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# Builds the program that writes the effect's resource, which runs here whatever it is for, and nothing
# else into the given build folder.
build_resource_writer() {
  say "Building the resource writer"
  cmake -S . -B "$1" -G Ninja --log-level=WARNING -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_COMPILER=g++ \
    -DVITRELL_BUILD_TESTS=OFF -DVITRELL_BUILD_TOOL=OFF -DVITRELL_BUILD_BENCH=OFF
  cmake --build "$1" --parallel "$jobs" --target write_resource
}

# Installs what is missing of these packages. A package may be known for other processors, too; it
# counts when it is there for this one.
install_packages() {
  local package own missing=() as_root=()
  own="$(dpkg --print-architecture)"
  for package in "$@"; do
    dpkg-query -W -f='${Architecture} ${db:Status-Status}\n' "$package" 2>/dev/null |
      grep -xE "(all|$own) installed" >/dev/null || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  ((EUID == 0)) || as_root=(sudo)
  say "Installing ${missing[*]}"
  "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300 update -qq </dev/null
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
    install -y -qq --no-install-recommends "${missing[@]}" </dev/null
}
