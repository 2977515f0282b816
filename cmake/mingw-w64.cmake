# Cross-building the 64-bit Windows libraries (zorvel.dll, zorjava.dll) on Debian with
# mingw-w64's posix-threads compilers:
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
# tools/windows.sh does that and checks the result under wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ZORVEL_MINGW_PREFIX x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZORVEL_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZORVEL_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${ZORVEL_MINGW_PREFIX}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZORVEL_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Programs built for Windows run under wine in the tests.
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
