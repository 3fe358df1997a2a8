# The recorder's package files, installed with its libraries:
#   <libdir>/cmake/ZORHistoryRecorder/: find_package(ZORHistoryRecorder CONFIG)
#     gives ZOR::HistoryRecorder, and on Windows ZOR::Recorder;
#   <libdir>/pkgconfig/zorhistoryrecorder.pc (Linux): pkg-config's flags for
#     the static library.
# Both find the prefix from their own place, so an install moves whole.
include(CMakePackageConfigHelpers)
# The Windows builds compile minizip into the static library; on Linux the
# installed package finds the system's.
get_target_property(_zor_minizip_type zor_minizip TYPE)
if(_zor_minizip_type STREQUAL "STATIC_LIBRARY")
  set(ZOR_PACKAGE_FINDS_MINIZIP FALSE)
else()
  set(ZOR_PACKAGE_FINDS_MINIZIP TRUE)
endif()
set(_zor_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZORHistoryRecorder)
install(EXPORT ZORHistoryRecorderTargets
  NAMESPACE ZOR::
  FILE ZORHistoryRecorderTargets.cmake
  DESTINATION ${_zor_cmake_dir})
configure_file(${CMAKE_CURRENT_LIST_DIR}/ZORHistoryRecorderConfig.cmake.in
  ${CMAKE_BINARY_DIR}/package/ZORHistoryRecorderConfig.cmake @ONLY)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/ZORHistoryRecorderConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/ZORHistoryRecorderConfig.cmake
  ${CMAKE_BINARY_DIR}/package/ZORHistoryRecorderConfigVersion.cmake
  DESTINATION ${_zor_cmake_dir})

if(WIN32)
  return()
endif()
# pkg-config: the prefix relative to the .pc file's own folder.
set(_zor_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ZOR_PC_TO_PREFIX /prefix/${_zor_pc_dir} /prefix)
string(REGEX REPLACE "/$" "" ZOR_PC_TO_PREFIX "${ZOR_PC_TO_PREFIX}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/zorhistoryrecorder.pc.in
  ${CMAKE_BINARY_DIR}/package/zorhistoryrecorder.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/package/zorhistoryrecorder.pc DESTINATION ${_zor_pc_dir})
