# Build settings of the Windows build (a MinGW-w64 cross-build, see mingw-clang.cmake): where
# the DLLs and programs go, the names our code is compiled with, GoogleTest from source, and
# the header-only libraries of the tool (CLI11, nlohmann-json) from Debian's headers.

# DLLs and programs side by side, so that every test program finds the libraries it loads.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# Our code calls the profile functions by their Win32 names and means ours (<tolvex/Profile.h>).
# <windows.h> without the rarely used parts, and without its min and max macros.
add_compile_definitions(TOLVEX_OWN_PROFILE_NAMES WIN32_LEAN_AND_MEAN NOMINMAX
                        _WIN32_WINNT=0x0601)

# Windows has no libdl: LoadLibrary is part of kernel32.
set(CMAKE_DL_LIBS "")

# GoogleTest built from Debian's sources for the target, as a static library.
if(TOLVEX_BUILD_TESTS AND NOT TARGET GTest::gtest)
  set(TOLVEX_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's source folder")
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  add_subdirectory(${TOLVEX_GTEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  if(NOT TARGET GTest::gtest)
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()
endif()

# CLI11 and nlohmann-json are headers only, the same for every target; but Debian's CMake
# configs of both add -I/usr/include, which would put the host's C headers before MinGW's.
# Their targets here see only their own folders, through links in the build tree.
set(TOLVEX_HOST_HEADERS ${PROJECT_BINARY_DIR}/host-headers)
foreach(entry "CLI11::CLI11=CLI" "nlohmann_json::nlohmann_json=nlohmann")
  string(REPLACE "=" ";" entry "${entry}")
  list(GET entry 0 target)
  list(GET entry 1 folder)
  if(IS_DIRECTORY /usr/include/${folder} AND NOT TARGET ${target})
    file(MAKE_DIRECTORY ${TOLVEX_HOST_HEADERS})
    file(CREATE_LINK /usr/include/${folder} ${TOLVEX_HOST_HEADERS}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${TOLVEX_HOST_HEADERS})
  endif()
endforeach()

# clang warns of two things our tests do on purpose (a self-assignment, and string literals
# that continue one another in a table); the native build (GCC) has no such warnings.
set(TOLVEX_EXTRA_WARNING_FLAGS -Wno-self-assign-overloaded -Wno-string-concatenation)
