# The release: the documentation beside what the source folders install, and
# on Windows one zip of it all, written by `--target package`:
# ZORGetInstallLog-<version>-win32.zip or -win64.zip; on Linux the Debian
# package (cmake/Debian.cmake).
include(GNUInstallDirs)
set(_zor_doc_dir ${CMAKE_INSTALL_DOCDIR})
if(WIN32)
  set(_zor_doc_dir doc)
endif()
# README.md beside the folder docs, as in the source tree, so that its links
# to docs/... lead to the guides in the release too.
install(FILES README.md DESTINATION ${_zor_doc_dir})
# docs/examples holds the installer examples: installed apart, the Linux ones
# on Linux only; docs/man the manual pages, installed on Linux only.
install(DIRECTORY docs DESTINATION ${_zor_doc_dir} PATTERN examples EXCLUDE PATTERN man EXCLUDE)
# The Linux installer examples (tests/package/test_deb.py runs them from the package).
if(NOT WIN32)
  install(FILES docs/examples/zorserver.postinst docs/examples/zorserver.prerm docs/examples/zorserver.postrm
    docs/examples/install-zorserver.sh
    DESTINATION ${_zor_doc_dir}/examples)
endif()
# The tested installer sources that docs/recording.md shows, among them the
# shell function that the Linux examples source.
install(FILES tests/installer/RecordWithProgram.wxs tests/installer/RecordWithDll.wxs
  tests/installer/RecordEvent.nsi tests/installer/ZORRecord.nsh docs/examples/zor-event-id.sh
  DESTINATION ${_zor_doc_dir}/examples)

if(WIN32)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(CPACK_SYSTEM_NAME win32)
  else()
    set(CPACK_SYSTEM_NAME win64)
  endif()
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_NAME ZORGetInstallLog)
  set(CPACK_PACKAGE_VENDOR TAQ)
  set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
  set(CPACK_PACKAGE_FILE_NAME ZORGetInstallLog-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
  set(CPACK_STRIP_FILES ON)
  include(CPack)
else()
  include(${CMAKE_CURRENT_LIST_DIR}/Debian.cmake)
endif()
