# minizip: Debian's libminizip-dev on Linux; for the MinGW targets it is
# compiled into the build tree from Debian's minizip source package. Whatever
# links minizip links zlib too: the archive deflates entries with it itself.
find_package(ZLIB REQUIRED)
if(NOT CMAKE_CROSSCOMPILING)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(MINIZIP REQUIRED IMPORTED_TARGET minizip)
  add_library(zor_minizip INTERFACE)
  target_link_libraries(zor_minizip INTERFACE PkgConfig::MINIZIP ZLIB::ZLIB)
  return()
endif()

set(ZOR_MINIZIP_SOURCE_ROOT "${CMAKE_BINARY_DIR}/minizip-source")
file(GLOB _zor_minizip_dirs "${ZOR_MINIZIP_SOURCE_ROOT}/minizip-*")
if(NOT _zor_minizip_dirs)
  file(MAKE_DIRECTORY "${ZOR_MINIZIP_SOURCE_ROOT}")
  message(STATUS "Fetching Debian's minizip source package")
  execute_process(COMMAND apt-get source minizip
                  WORKING_DIRECTORY "${ZOR_MINIZIP_SOURCE_ROOT}"
                  RESULT_VARIABLE _zor_rc OUTPUT_QUIET)
  if(NOT _zor_rc EQUAL 0)
    message(FATAL_ERROR "apt-get source minizip failed: run scripts/install-deps.sh (it adds the deb-src entry)")
  endif()
  file(GLOB _zor_minizip_dirs "${ZOR_MINIZIP_SOURCE_ROOT}/minizip-*")
endif()
list(FILTER _zor_minizip_dirs EXCLUDE REGEX "\\.(tar|dsc)")
list(GET _zor_minizip_dirs 0 ZOR_MINIZIP_DIR)

add_library(zor_minizip STATIC "${ZOR_MINIZIP_DIR}/zip.c" "${ZOR_MINIZIP_DIR}/unzip.c"
            "${ZOR_MINIZIP_DIR}/ioapi.c")
target_include_directories(zor_minizip SYSTEM PUBLIC "${ZOR_MINIZIP_DIR}")
target_compile_definitions(zor_minizip PRIVATE NOCRYPT)
target_compile_options(zor_minizip PRIVATE -w)
target_link_libraries(zor_minizip PUBLIC ZLIB::ZLIB)
