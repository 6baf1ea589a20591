#!/bin/sh
# Runs a Windows program of the cross-build under Wine: the runtime DLLs of MinGW's C++
# library and of winpthreads on WINEPATH, Wine's own diagnostics off. CTest runs every test
# program through this script (CMAKE_CROSSCOMPILING_EMULATOR).
gcc_dir=$(ls -d /usr/lib/gcc/x86_64-w64-mingw32/*-posix 2>/dev/null | sort -V | tail -n 1)
export WINEPATH="${gcc_dir};/usr/x86_64-w64-mingw32/lib${WINEPATH:+;$WINEPATH}"
export WINEDEBUG="${WINEDEBUG:--all}"
exec wine "$@"
