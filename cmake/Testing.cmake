# Tests: one program for each folder of tests, one ctest entry for each program, so that a whole run
# costs few process starts.

enable_testing()

# For programs that tests start; a window test's own program carries the same list.
set(OM_TEST_ENVIRONMENT
    LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leaks.supp:print_suppressions=0
    TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/races.supp:print_suppressions=0)

# Tests are compiled without optimisation: what they judge is optimised, they themselves run once, and
# a test source then takes less than half the time to compile. The rest are the arguments of
# target_precompile_headers: a header of its own, or that of a library, which is compiled once for all.
function(om_compile_for_testing name)
  target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0> $<$<CONFIG:RelWithDebInfo>:-g1>)
  if(UNIX)
    # A program's -fPIE would not take a library's precompiled header.
    target_compile_options(${name} PRIVATE -fPIC)
  endif()
  target_precompile_headers(${name} ${ARGN})
endfunction()

# om_add_test(name SOURCES file... LIBRARIES target... [ENVIRONMENT VAR=value...])
function(om_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE om_options ${arg_LIBRARIES} GTest::gmock_main)
  om_compile_for_testing(${name} REUSE_FROM om_test_support)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 600 ENVIRONMENT "${OM_TEST_ENVIRONMENT};${arg_ENVIRONMENT}")
endfunction()

# om_add_window_test(name SOURCES file... [LIBRARIES target...] [ENVIRONMENT VAR=value...])
# A test program with windows. Its main starts a display of its own, so that such tests may run side
# by side; see tests/windows/support.
function(om_add_window_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE om_options om_window_test_support om_windows om_test_support
                        ${arg_LIBRARIES})
  om_compile_for_testing(${name} REUSE_FROM om_window_test_support)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
  set_tests_properties(${name} PROPERTIES
    TIMEOUT 600 ENVIRONMENT "${OM_TEST_ENVIRONMENT};${arg_ENVIRONMENT}")
endfunction()
