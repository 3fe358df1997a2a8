# The Debian package of the Linux build: `cpack -G DEB` in the release build
# (the linux-release preset, prefix /usr) writes
# zorgetinstalllog_<version>_<arch>.deb. Programs in /usr/bin, the library,
# its header and package files in the multiarch folders, the documentation,
# the examples, copyright (from LICENSE) and changelog.gz in
# /usr/share/doc/zorgetinstalllog, the manual pages in /usr/share/man/man1. Its postinst makes the history folder below
# ZOR_COMMON_APPDATA; the package deletes nothing of it, ever.
set(ZOR_DEB_MAINTAINER "The ZORGetInstallLog developers <zorgetinstalllog@taq.example.com>"
  CACHE STRING "Maintainer of the Debian package (Name <address>)")

# copyright: the machine-readable form, with LICENSE's text as the license.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE _zor_license)
string(FIND "${_zor_license}" "Permission is hereby granted" _zor_grant)
string(SUBSTRING "${_zor_license}" ${_zor_grant} -1 _zor_license)
string(STRIP "${_zor_license}" _zor_license)
string(REGEX REPLACE "\n\n" "\n.\n" _zor_license "${_zor_license}")
string(REGEX REPLACE "\n" "\n " _zor_license "${_zor_license}")
file(WRITE ${CMAKE_BINARY_DIR}/debian/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: ZORGetInstallLog

Files: *
Copyright: 2026 The ZORGetInstallLog developers
License: Expat
 ${_zor_license}
")

# <file>.gz in the build's debian folder, compressed as Debian wants it: best,
# without a time stamp.
function(zor_debian_gzip file)
  get_filename_component(_name ${file} NAME)
  execute_process(COMMAND gzip -9nc
    INPUT_FILE ${file}
    OUTPUT_FILE ${CMAKE_BINARY_DIR}/debian/${_name}.gz
    RESULT_VARIABLE _zor_gzip)
  if(NOT _zor_gzip EQUAL 0)
    message(FATAL_ERROR "gzip of ${file} failed")
  endif()
endfunction()

configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${CMAKE_BINARY_DIR}/debian/changelog @ONLY)
zor_debian_gzip(${CMAKE_BINARY_DIR}/debian/changelog)
install(FILES ${CMAKE_BINARY_DIR}/debian/copyright ${CMAKE_BINARY_DIR}/debian/changelog.gz
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The programs' manual pages.
foreach(_zor_program ZORGetInstallLog ZORRecordEvent ZORHistoryReport)
  zor_debian_gzip(${PROJECT_SOURCE_DIR}/docs/man/${_zor_program}.1)
  install(FILES ${CMAKE_BINARY_DIR}/debian/${_zor_program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/docs/man/ZORGetInstallLog.1 ${PROJECT_SOURCE_DIR}/docs/man/ZORRecordEvent.1
  ${PROJECT_SOURCE_DIR}/docs/man/ZORHistoryReport.1)

configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/postinst.in ${CMAKE_BINARY_DIR}/debian/postinst @ONLY)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zorgetinstalllog)
set(CPACK_PACKAGE_VENDOR TAQ)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${ZOR_DEB_MAINTAINER}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "installation history of the ZOR database product
Installers of the ZOR database product record each install, repair, upgrade
and uninstall as an event with ZORRecordEvent (or the static library
libZORHistoryRecorder.a, found with CMake's find_package or pkg-config).
ZORGetInstallLog writes summaries of the machine's history and packs it into
one zip file for support; ZORHistoryReport tells what each install changed.")
# The libraries that the programs need, from the binaries themselves.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What a program that links the static library needs besides.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libminizip-dev, zlib1g-dev, pkgconf")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/postinst)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
include(CPack)
