# Toolchain file: macOS modules built on Linux, one architecture at a time.
#   -DVITRELL_CROSS_ARCH=x86_64|arm64  -DVITRELL_ZIG=<folder of the zig package>
# zig compiles, since it brings the system's headers; LLVM's Mach-O linker links against lists of
# the system libraries' symbols, because zig's own linker exports a static C++ runtime.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20)
set(CMAKE_SYSTEM_PROCESSOR ${VITRELL_CROSS_ARCH})
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VITRELL_CROSS_ARCH VITRELL_ZIG)
# Nothing is linked by zig: for the first program it would compile its own C++ runtime.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_CXX_COMPILER_ID_FLAGS_ALWAYS -c)

set(target_x86_64 x86_64-macos.11.0)
set(target_arm64 aarch64-macos.11.0)
set(CMAKE_CXX_COMPILER ${VITRELL_ZIG}/zig c++ -target ${target_${VITRELL_CROSS_ARCH}})
set(CMAKE_AR llvm-ar-14 CACHE STRING "")
set(CMAKE_RANLIB llvm-ranlib-14 CACHE STRING "")
set(CMAKE_INSTALL_NAME_TOOL true CACHE STRING "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "Told by the compiler's target")

# Without a frame pointer a function has no entry in arm64's compact unwind table, and an exception
# that propagates through it ends the process. zig writes debug information unless it is told not to,
# and the module would name the folder it was built in.
set(CMAKE_CXX_FLAGS_INIT "-fno-omit-frame-pointer -g0")
# The linker is invoked directly and does not understand compiler options.
set(CMAKE_USER_MAKE_RULES_OVERRIDE ${CMAKE_CURRENT_LIST_DIR}/cross_link.cmake)
