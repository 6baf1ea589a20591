# tolvex_add_test(NAME SOURCES src... [LIBS lib...]): one GoogleTest binary, registered with
# CTest test by test. Every test binary gets the shared helpers of tests/support.
if(NOT TARGET GTest::gtest)  # the Windows build makes its own
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

function(tolvex_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} tolvex_test_support GTest::gtest GTest::gtest_main)
  tolvex_warnings(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "TOLVEX_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
endfunction()
