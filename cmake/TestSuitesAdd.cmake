# Run by CTest (see TestSuites.cmake): adds one test per test suite of a
# GoogleTest program, listing the suites again when the program or the
# suites' settings are newer than the last listing. A suite whose every test
# skipped counts as skipped; one with some skipped tests names them in its output.
function(zor_add_test_suites)
  cmake_parse_arguments(ARG "" "PROGRAM;PREFIX;LIST_FILE;INCLUDE_FILE;WORKING_DIRECTORY;PROPERTIES" "EMULATOR"
                        ${ARGN})
  # A program that was not built is a test that fails, not a test fewer.
  if(NOT EXISTS "${ARG_PROGRAM}")
    add_test("${ARG_PREFIX}NOT_BUILT" "${ARG_PROGRAM}")
    return()
  endif()
  if(NOT EXISTS "${ARG_LIST_FILE}" OR "${ARG_PROGRAM}" IS_NEWER_THAN "${ARG_LIST_FILE}" OR
     "${ARG_INCLUDE_FILE}" IS_NEWER_THAN "${ARG_LIST_FILE}")
    _zor_list_test_suites()
  endif()
  include("${ARG_LIST_FILE}")
endfunction()

# GoogleTest's closing lines when no test passed and every test skipped: no
# line of failed tests follows the skipped ones.
set(_zor_every_test_skipped
    "\\[  PASSED  \\] 0 tests\\.[^[]*\\[  SKIPPED \\] [0-9]+ tests?, listed below:([^[]*\\[  SKIPPED \\] [^[]*)*$")

# Writes the tests of the program's suites into the list file.
macro(_zor_list_test_suites)
  execute_process(COMMAND ${ARG_EMULATOR} "${ARG_PROGRAM}" --gtest_list_tests
    WORKING_DIRECTORY "${ARG_WORKING_DIRECTORY}"
    OUTPUT_VARIABLE _zor_listing ERROR_VARIABLE _zor_listing_errors
    RESULT_VARIABLE _zor_listing_result TIMEOUT 120)
  if(NOT _zor_listing_result EQUAL 0)
    message(FATAL_ERROR "Listing the test suites of ${ARG_PROGRAM} failed (${_zor_listing_result}):\n"
                        "${_zor_listing}${_zor_listing_errors}")
  endif()
  # A suite's line is its name and a dot at the start of a line; the tests
  # below it are indented.
  string(REGEX MATCHALL "\n[A-Za-z_][A-Za-z0-9_/]*\\." _zor_suites "\n${_zor_listing}")
  if(NOT _zor_suites)
    message(FATAL_ERROR "${ARG_PROGRAM} listed no test suites:\n${_zor_listing}")
  endif()
  set(_zor_tests "")
  foreach(_zor_suite IN LISTS _zor_suites)
    string(REGEX REPLACE "^\n(.*)\\.$" "\\1" _zor_suite "${_zor_suite}")
    if(_zor_suite MATCHES "^DISABLED_")
      continue()
    endif()
    string(APPEND _zor_tests "add_test([==[${ARG_PREFIX}${_zor_suite}]==]")
    foreach(_zor_word IN LISTS ARG_EMULATOR)
      string(APPEND _zor_tests " [==[${_zor_word}]==]")
    endforeach()
    string(APPEND _zor_tests " [==[${ARG_PROGRAM}]==] [==[--gtest_filter=${_zor_suite}.*]==])\n"
      "set_tests_properties([==[${ARG_PREFIX}${_zor_suite}]==] PROPERTIES "
      "WORKING_DIRECTORY [==[${ARG_WORKING_DIRECTORY}]==] "
      "SKIP_REGULAR_EXPRESSION [==[${_zor_every_test_skipped}]==]${ARG_PROPERTIES})\n")
  endforeach()
  file(WRITE "${ARG_LIST_FILE}" "${_zor_tests}")
endmacro()
