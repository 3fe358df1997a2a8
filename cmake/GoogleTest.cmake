# GoogleTest: the system package on Linux; for the MinGW targets it is built
# from Debian's googletest sources in /usr/src/googletest.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
else()
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
  # Newer googletest sources make these names themselves.
  if(NOT TARGET GTest::gtest)
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()
endif()
include(GoogleTest)
