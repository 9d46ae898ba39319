#!/usr/bin/env bash
# Builds dist/Vitrell.aex, the module for 64-bit Windows, on Debian 12.
#
#   scripts/build-windows.sh           builds and inspects the module
#   scripts/build-windows.sh --test    also tries the inspection on wrong modules, builds the module a
#                                      second time, which must give the same bytes, and runs the
#                                      tests, built for Windows, under Wine
#   scripts/build-windows.sh --help
#
# The module is refused when it exports more than its entry point, imports from other libraries than
# the system's two, carries a time stamp, or moves wide vectors as if its stack were aligned.
# Everything comes with apt; Wine keeps its files in build/windows.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

module="dist/Vitrell.aex"
work="$root/build/windows"
objdump=x86_64-w64-mingw32-objdump

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# Configures and builds one folder for Windows; further arguments go to CMake.
build_for_windows() {
  local folder="$1"
  shift
  say "Building build/windows/$folder"
  cmake -S . -B "$work/$folder" -G Ninja --log-level=WARNING -DCMAKE_BUILD_TYPE=Release \
    --toolchain cmake/x86_64_windows.cmake -DVITRELL_BUILD_CLI=OFF -DVITRELL_BUILD_BENCH=OFF \
    -DVITRELL_WRITE_RESOURCE="$work/native/packaging/write_resource" "$@"
  cmake --build "$work/$folder" --parallel "$jobs"
}

build_module() {
  build_for_windows "$1" -DVITRELL_BUILD_TOOL=OFF -DVITRELL_BUILD_TESTS=OFF "${@:2}"
}

exports_of() {
  "$objdump" -p "$1" | awk '/\[Ordinal\/Name Pointer\] Table/ { table = 1; next }
    table && /^\t\[/ { print $NF } table && /^$/ { exit }'
}

# Moves of 32 or 64 bytes between memory and registers that fault unless the address is aligned. The
# compiler's idea of the stack's alignment on Windows is wrong, so that none may be there.
aligned_moves_of() {
  "$objdump" -d --no-show-raw-insn "$1" |
    grep -E '\svmov(ap[sd]|dqa(32|64)?)\s' | grep -E '%[yz]mm' | grep -c '(' || true
}

# Refuses what must not be handed out.
inspect_module() {
  local file="$1" size
  say "Inspecting $file"
  expect "file type" "$("$objdump" -f "$file" | awk '/file format/ { print $NF }')" pei-x86-64
  expect "exported functions" "$("$objdump" -p "$file" |
    awk '/^\tExport Address Table/ { print $NF; exit }')" 00000001
  expect "exported names" "$(exports_of "$file")" EntryPointFunc
  expect "libraries" "$("$objdump" -p "$file" | awk '/DLL Name:/ { print $NF }' | sort)" \
    $'KERNEL32.dll\nmsvcrt.dll'
  expect "time stamps" "$(TZ=UTC "$objdump" -p "$file" | sed -n 's/^Time.Date[^\t]*\t*//p')" \
    $'Thu Jan  1 00:00:00 1970\n0'
  expect "aligned moves of wide vectors" "$(aligned_moves_of "$file")" 0
  expect "symbols of the build" "$("$objdump" -t "$file" | grep -c '^\[' || true)" 0
  size="$(stat -c %s "$file")"
  ((size < 1000000)) || fail "The module has $size bytes."
  echo "$file: $size bytes"
}

# Links a small module with one thing that must not be, or with none.
link_trial() {
  local file="$1" stamp=--no-insert-timestamp
  [[ "$2" != TIME_STAMP ]] || stamp=--insert-timestamp
  x86_64-w64-mingw32-g++-win32 -shared -static-libgcc -s -O1 "-Wl,$stamp" -D"$2" -x c++ - -o "$file" \
    -luser32 <<'END'
extern "C" {
#ifdef FOREIGN_IMPORT
__declspec(dllimport) void* __stdcall GetDesktopWindow();
#else
static void* GetDesktopWindow() { return nullptr; }
#endif
#ifdef SECOND_EXPORT
__declspec(dllexport) int AnotherFunc() { return 0; }
#endif
__declspec(dllexport) int EntryPointFunc() {
#ifdef ALIGNED_MOVE
  __asm__ volatile("vmovaps %%ymm0, (%%rsp)" ::: "memory");
#endif
  return GetDesktopWindow() != nullptr;
}
}
END
}

# The inspection passes a module with nothing wrong, and names the one thing that is.
try_inspection() {
  local trial="$work/trial.aex" wrong said
  local -A finding=([SECOND_EXPORT]="exported functions" [FOREIGN_IMPORT]="libraries"
    [TIME_STAMP]="time stamps" [ALIGNED_MOVE]="aligned moves of wide vectors")
  link_trial "$trial" NOTHING
  (inspect_module "$trial") >/dev/null || fail "A module with nothing wrong is refused."
  for wrong in "${!finding[@]}"; do
    link_trial "$trial" "$wrong"
    ! said="$( (inspect_module "$trial") 2>&1 >/dev/null)" || fail "A module with $wrong passes."
    [[ "$said" == "${finding[$wrong]}: "* ]] || fail "A module with $wrong is refused for: $said"
  done
  rm "$trial"
  echo "Refused: ${finding[*]}."
}

# The tests are built by the compiler whose standard library has threads; the module they load is
# the finished one. Every program of tests is one test, as each takes Wine a moment to start.
run_tests() {
  try_inspection
  build_module again -DCMAKE_CXX_COMPILER_LAUNCHER=
  cmp "$work/again/src/Vitrell.aex" "$module" || fail "A second build differs."
  echo "A second build gives the same bytes."
  build_preset release golden_records resource_test
  build/release/tests/packaging/resource_test --gtest_brief=1
  export WINEPREFIX="$work/wine" WINEDEBUG=-all DISPLAY=
  export WINEDLLOVERRIDES="mscoree,mshtml,winedbg.exe="
  [[ -d "$WINEPREFIX/drive_c" ]] || wineboot --init
  build_for_windows tests -DVITRELL_WINDOWS_THREADS=posix -DVITRELL_BUILD_TESTS=ON \
    -DVITRELL_BUILD_TOOL=ON -DVITRELL_TEST_PROGRAMS=ON -DVITRELL_GTEST_SOURCE=/usr/src/googletest \
    -DVITRELL_TESTED_MODULE="$root/$module" \
    -DVITRELL_GOLDEN_RECORDS="$root/build/release/golden.records"
  say "Testing $module under $(wine --version)"
  ctest --test-dir "$work/tests" --parallel "$jobs" --no-tests=error --output-on-failure
  wineserver --wait
}

test=0
for argument in "$@"; do
  case "$argument" in
    --test) test=1 ;;
    -h | --help) usage && exit 0 ;;
    *) echo "Unknown argument '$argument'; see --help" >&2 && exit 2 ;;
  esac
done

packages=(g++-mingw-w64-x86-64-win32 binutils-mingw-w64-x86-64)
((!test)) || packages+=(g++-mingw-w64-x86-64-posix googletest wine wine64)
bash scripts/setup.sh
install_packages "${packages[@]}"

use_ccache
build_resource_writer "$work/native"
build_module module
mkdir -p dist
cp "$work/module/src/Vitrell.aex" "$module"
inspect_module "$module"
((!test)) || run_tests
