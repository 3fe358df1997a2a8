# One CTest test per GoogleTest test suite of a test program, for the builds
# whose programs run under an emulator (Wine): each start of a Windows program
# there costs about a second, so a program is started once per suite
# (--gtest_filter=Suite.*) instead of once per test. The suites are listed
# when CTest runs, as gtest_discover_tests lists tests (PRE_TEST), and the
# listing is kept until the program changes.
#
# zor_discover_test_suites(TARGET <target> TEST_PREFIX <prefix> [PROPERTIES <name> <value>...])
# Each property takes one value.
set(_zor_test_suites_script "${CMAKE_CURRENT_LIST_DIR}/TestSuitesAdd.cmake")

function(zor_discover_test_suites)
  cmake_parse_arguments(ARG "" "TARGET;TEST_PREFIX" "PROPERTIES" ${ARGN})
  set(include_file "${CMAKE_CURRENT_BINARY_DIR}/${ARG_TARGET}_suites_include.cmake")
  set(list_file "${CMAKE_CURRENT_BINARY_DIR}/${ARG_TARGET}_suites.cmake")
  # The properties as set_tests_properties takes them, each value a bracket
  # argument; the list of suites is written with this text behind each test.
  set(properties "")
  list(LENGTH ARG_PROPERTIES count)
  math(EXPR last "${count} - 1")
  if(count GREATER 0)
    foreach(index RANGE 0 ${last} 2)
      math(EXPR value_index "${index} + 1")
      list(GET ARG_PROPERTIES ${index} name)
      list(GET ARG_PROPERTIES ${value_index} value)
      string(APPEND properties " ${name} [==[${value}]==]")
    endforeach()
  endif()
  set(emulator "")
  foreach(word IN LISTS CMAKE_CROSSCOMPILING_EMULATOR)
    string(APPEND emulator " [==[${word}]==]")
  endforeach()
  file(GENERATE OUTPUT "${include_file}" CONTENT
"include([==[${_zor_test_suites_script}]==])
zor_add_test_suites(
  PROGRAM [==[$<TARGET_FILE:${ARG_TARGET}>]==]
  EMULATOR${emulator}
  PREFIX [==[${ARG_TEST_PREFIX}]==]
  LIST_FILE [==[${list_file}]==]
  INCLUDE_FILE [==[${include_file}]==]
  WORKING_DIRECTORY [==[${CMAKE_CURRENT_BINARY_DIR}]==]
  PROPERTIES [===[${properties}]===])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include_file}")
endfunction()
