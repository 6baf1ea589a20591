# Cross-build for 64-bit Windows with clang and the MinGW-w64 headers and libraries of Debian.
# clang rather than MinGW GCC: GCC's thread_local objects with destructors are freed before
# their last use when a thread ends (GCC bug 80816), and the platform layer keeps per-thread
# state in thread_local objects; clang's native TLS has no such fault.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(TOLVEX_MINGW_TRIPLE x86_64-w64-mingw32)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${TOLVEX_MINGW_TRIPLE})
set(CMAKE_CXX_COMPILER_TARGET ${TOLVEX_MINGW_TRIPLE})
set(CMAKE_RC_COMPILER ${TOLVEX_MINGW_TRIPLE}-windres)
set(CMAKE_AR /usr/bin/${TOLVEX_MINGW_TRIPLE}-ar CACHE FILEPATH "")
set(CMAKE_RANLIB /usr/bin/${TOLVEX_MINGW_TRIPLE}-ranlib CACHE FILEPATH "")

# The C++ library is GCC's (the posix thread model, so std::thread and std::mutex exist);
# clang does not find Debian's "12-posix" folder by itself.
file(GLOB TOLVEX_MINGW_GCC_DIRS LIST_DIRECTORIES true /usr/lib/gcc/${TOLVEX_MINGW_TRIPLE}/*-posix)
list(SORT TOLVEX_MINGW_GCC_DIRS)
list(GET TOLVEX_MINGW_GCC_DIRS -1 TOLVEX_MINGW_GCC_DIR)
set(TOLVEX_MINGW_GCC_DIR ${TOLVEX_MINGW_GCC_DIR} CACHE PATH "MinGW GCC's library folder")
set(TOLVEX_MINGW_SYSROOT /usr/${TOLVEX_MINGW_TRIPLE})
set(_cxx_includes "-isystem ${TOLVEX_MINGW_GCC_DIR}/include/c++ \
-isystem ${TOLVEX_MINGW_GCC_DIR}/include/c++/${TOLVEX_MINGW_TRIPLE} \
-isystem ${TOLVEX_MINGW_GCC_DIR}/include/c++/backward")
set(CMAKE_CXX_FLAGS_INIT "${_cxx_includes}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-L${TOLVEX_MINGW_GCC_DIR}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-L${TOLVEX_MINGW_GCC_DIR}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-L${TOLVEX_MINGW_GCC_DIR}")
set(CMAKE_CXX_STANDARD_LIBRARIES "-lpthread" CACHE STRING "")
# The DLLs of that C++ library that every program and DLL of the build loads; an installed
# tree carries them beside its own (TolvexInstall.cmake).
set(TOLVEX_MINGW_RUNTIME_DLLS ${TOLVEX_MINGW_GCC_DIR}/libstdc++-6.dll
  ${TOLVEX_MINGW_GCC_DIR}/libgcc_s_seh-1.dll ${TOLVEX_MINGW_SYSROOT}/lib/libwinpthread-1.dll)

# Roots given on the command line (-DCMAKE_FIND_ROOT_PATH=<prefix>: a prefix our Windows
# package is installed in, for a project that uses it) are searched as well as MinGW's.
list(APPEND CMAKE_FIND_ROOT_PATH ${TOLVEX_MINGW_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# No .pc file of the Linux host may describe a Windows library.
set(ENV{PKG_CONFIG_LIBDIR} "${TOLVEX_MINGW_SYSROOT}/lib/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")

# This file, for projects that the tests configure with it (tests/package).
set(TOLVEX_TOOLCHAIN_FILE ${CMAKE_CURRENT_LIST_FILE})

# Tests run under Wine (see wine-run.sh).
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh)
