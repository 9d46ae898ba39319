# What the scripts beside this file share. Sourced, never run.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

jobs="$(nproc)"

# Says what is about to happen, on a line that stands out in a long log.
say() {
  printf '\n== %s\n' "$*"
}

# The prefix that a preset's programs are run with. The thread sanitizer of this compiler cannot
# live with strongly randomised addresses, so that they are fixed where the system allows it.
launcher_of() {
  if [[ "$1" == tsan ]] && setarch "$(uname -m)" -R true 2>/dev/null; then
    printf '%s\n' setarch "$(uname -m)" -R
  fi
}

# Configures and builds one preset; further arguments are targets (none: everything).
build_preset() {
  local preset="$1" launcher
  shift
  mapfile -t launcher < <(launcher_of "$preset")
  if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  fi
  say "Building build/$preset ($jobs jobs)"
  cmake --preset "$preset" --log-level=WARNING &&
    "${launcher[@]}" cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# Installs what is missing of these packages.
install_packages() {
  local package missing=() as_root=()
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  ((EUID == 0)) || as_root=(sudo)
  say "Installing ${missing[*]}"
  "${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300 update -qq </dev/null
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 \
    install -y -qq --no-install-recommends "${missing[@]}" </dev/null
}
