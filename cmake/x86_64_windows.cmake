# Toolchain file: 64-bit Windows, built on Linux and run by Wine.
#   -DVITRELL_WINDOWS_THREADS=win32   for the module: no thread library to carry (default)
#   -DVITRELL_WINDOWS_THREADS=posix   for the tests, which use the standard library's threads
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(VITRELL_WINDOWS_THREADS win32 CACHE STRING "Thread model of the compiler: win32 or posix")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VITRELL_WINDOWS_THREADS)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-${VITRELL_WINDOWS_THREADS})
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-${VITRELL_WINDOWS_THREADS})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Nothing but the system's own libraries is needed at run time.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
# In this file format the compiler takes an inline function for the very one that it just compiled,
# and keeps values in registers that this one leaves alone. The linker may take another file's,
# compiled with other options, that does not.
set(CMAKE_CXX_FLAGS_INIT "-fno-ipa-ra")
