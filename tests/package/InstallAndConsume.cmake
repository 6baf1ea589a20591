# Installs the build tree into a fresh prefix and uses it from outside the project, as an
# application would: every public header compiled on its own, a CMake project that finds the
# package with find_package, and a plain compile with pkg-config. Both consumers are run.
# Works in a temporary folder, removed when every step passed (kept for a look otherwise).
#
# Run with cmake -P and: BUILD_DIR SOURCE_DIR CONSUMER_DIR CONFIG VERSION LIBDIR INCLUDEDIR
# GENERATOR CXX CC PKG_CONFIG SANITIZE_FLAGS (compile and link flags the libraries need). A
# cross-build adds TOOLCHAIN (its toolchain file), EMULATOR (what runs its programs: Wine, with
# the prefix's bin folder, where Windows keeps DLLs, on WINEPATH) and CROSS_CXX_FLAGS,
# CROSS_C_FLAGS and CROSS_LINK_FLAGS (the target and the C++ library's folders).
cmake_minimum_required(VERSION 3.18)

if(DEFINED ENV{TMPDIR} AND IS_DIRECTORY "$ENV{TMPDIR}")
  set(tmp "$ENV{TMPDIR}")
else()
  set(tmp /tmp)
endif()
string(RANDOM LENGTH 10 tag)
set(work "${tmp}/tolvex-package-${tag}")
set(prefix "${work}/prefix")
file(MAKE_DIRECTORY "${work}")
separate_arguments(sanitize UNIX_COMMAND "${SANITIZE_FLAGS}")
separate_arguments(cross_cxx UNIX_COMMAND "${CROSS_CXX_FLAGS}")
separate_arguments(cross_c UNIX_COMMAND "${CROSS_C_FLAGS}")
separate_arguments(cross_link UNIX_COMMAND "${CROSS_LINK_FLAGS}")
set(exe "")
set(emulator "")
if(TOOLCHAIN)
  set(exe ".exe")
  set(emulator "${EMULATOR}")
endif()

# run(<step> <command>...): runs the command in ${work}; stops the script when it fails.
function(run step)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${work}"
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "${step} failed (${rc}); work folder kept: ${work}\n${out}")
  endif()
  set(run_output "${out}" PARENT_SCOPE)
endfunction()

function(fail message)
  message(FATAL_ERROR "${message}\nwork folder kept: ${work}")
endfunction()

set(config_args)
if(CONFIG)
  set(config_args --config "${CONFIG}")
endif()
run("install" "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}" ${config_args})

# The consumers find the libraries by their own run paths only (on Windows: in the folder of
# the DLLs, the one place Windows looks besides the program's own and the PATH).
unset(ENV{LD_LIBRARY_PATH})
if(TOOLCHAIN)
  set(ENV{WINEPATH} "${prefix}/bin")
endif()

# --- Every public header is installed and compiles on its own, twice in one unit; a header
# that opens an extern "C" block compiles as C as well. ------------------------------------
file(GLOB source_headers RELATIVE "${SOURCE_DIR}/include/tolvex" "${SOURCE_DIR}/include/tolvex/*.h")
file(GLOB installed_headers RELATIVE "${prefix}/${INCLUDEDIR}/tolvex"
  "${prefix}/${INCLUDEDIR}/tolvex/*.h")
list(SORT source_headers)
list(SORT installed_headers)
if(NOT source_headers STREQUAL installed_headers)
  fail("installed headers (${installed_headers}) differ from include/tolvex (${source_headers})")
endif()
foreach(header IN LISTS installed_headers)
  set(unit "${work}/header-${header}")
  file(WRITE "${unit}.cpp" "#include <tolvex/${header}>\n#include <tolvex/${header}>\n")
  run("compiling ${header} alone" "${CXX}" ${cross_cxx} -std=c++17 -Wall -Wextra -Werror
    -fsyntax-only "-I${prefix}/${INCLUDEDIR}" "${unit}.cpp")
  file(READ "${prefix}/${INCLUDEDIR}/tolvex/${header}" text)
  if(text MATCHES "extern \"C\"")
    file(WRITE "${unit}.c" "#include <tolvex/${header}>\n#include <tolvex/${header}>\n")
    run("compiling ${header} alone as C" "${CC}" ${cross_c} -std=c99 -Wall -Wextra -Werror
      -fsyntax-only "-I${prefix}/${INCLUDEDIR}" "${unit}.c")
  endif()
endforeach()

# --- A CMake project: find_package(TolvexMenuTemplate) and Tolvex::MenuTemplate. -----------
file(COPY "${CONSUMER_DIR}/" DESTINATION "${work}/consumer")
# Flags given only when there are any: the toolchain's own link flags stay as they are.
set(sanitize_args "")
if(SANITIZE_FLAGS)
  set(sanitize_args "-DCMAKE_CXX_FLAGS=${SANITIZE_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${SANITIZE_FLAGS}")
endif()
if(TOOLCHAIN)
  # The toolchain looks for packages only under its roots, to which the prefix is added.
  set(compiler "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-DCMAKE_FIND_ROOT_PATH=${prefix}")
else()
  set(compiler "-DCMAKE_CXX_COMPILER=${CXX}")
endif()
run("configuring the CMake consumer" "${CMAKE_COMMAND}" -S "${work}/consumer"
  -B "${work}/consumer-build" -G "${GENERATOR}"
  "${compiler}" "-DCMAKE_BUILD_TYPE=${CONFIG}"
  "-DCMAKE_PREFIX_PATH=${prefix}"
  -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF -DCMAKE_FIND_USE_SYSTEM_PACKAGE_REGISTRY=OFF
  ${sanitize_args})
file(STRINGS "${work}/consumer-build/CMakeCache.txt" found REGEX "^TolvexMenuTemplate_DIR:")
string(FIND "${found}" "=${prefix}/" at)
if(at EQUAL -1)
  fail("the consumer found the package elsewhere: ${found}")
endif()
run("building the CMake consumer" "${CMAKE_COMMAND}" --build "${work}/consumer-build")
run("running the CMake consumer" ${emulator} "${work}/consumer-build/consumer${exe}"
  "${work}/cmake-menu.ini")
file(READ "${work}/cmake-menu.ini" written)
if(NOT run_output MATCHES "^ok" OR NOT written MATCHES "\\[NumOfButton3\\]")
  fail("the CMake consumer did not write its template:\n${run_output}\n${written}")
endif()

# --- A plain compile with pkg-config tolvex-menutemplate. ----------------------------------
set(ENV{PKG_CONFIG_LIBDIR} "${prefix}/${LIBDIR}/pkgconfig")
unset(ENV{PKG_CONFIG_PATH})
run("pkg-config" "${PKG_CONFIG}" --modversion tolvex-menutemplate)
string(STRIP "${run_output}" modversion)
if(NOT modversion STREQUAL VERSION)
  fail("pkg-config reports version ${modversion}, the project is ${VERSION}")
endif()
run("pkg-config" "${PKG_CONFIG}" --cflags --libs tolvex-menutemplate)
separate_arguments(pc_flags UNIX_COMMAND "${run_output}")
string(FIND "${run_output}" "-I${prefix}/" include_at)
string(FIND "${run_output}" "-L${prefix}/" lib_at)
if(include_at EQUAL -1 OR lib_at EQUAL -1)
  fail("pkg-config names folders outside the prefix ${prefix}: ${run_output}")
endif()
run("pkg-config" "${PKG_CONFIG}" --variable=libdir tolvex-menutemplate)
string(STRIP "${run_output}" pc_libdir)
if(TOOLCHAIN)
  set(run_path ${cross_link})
else()
  set(run_path "-Wl,-rpath,${pc_libdir}")
endif()
run("building the pkg-config consumer" "${CXX}" ${cross_cxx} -std=c++17 ${sanitize}
  "${work}/consumer/Consumer.cpp" ${pc_flags} ${run_path} -o "${work}/pc-consumer${exe}")
run("running the pkg-config consumer" ${emulator} "${work}/pc-consumer${exe}" "${work}/pc-menu.ini")
file(READ "${work}/pc-menu.ini" written)
if(NOT run_output MATCHES "^ok" OR NOT written MATCHES "\\[NumOfButton3\\]")
  fail("the pkg-config consumer did not write its template:\n${run_output}\n${written}")
endif()

file(REMOVE_RECURSE "${work}")
