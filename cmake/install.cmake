# What "cmake --install" puts where, and the Debian package that cpack makes of it.
#
# Everything installed finds its parts relative to its own place, so that an installed tree can be moved.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# --- The tool, the libraries and their headers.

install(TARGETS vexor_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS vexor vexor_static EXPORT vexor_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_SOURCE_DIR}/src/api/vexor.h ${PROJECT_SOURCE_DIR}/src/api/vexor_lite.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

# --- For CMake: find_package(vexor) gives vexor::vexor and vexor::vexor_static.

set(VEXOR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/vexor)
install(EXPORT vexor_targets NAMESPACE vexor:: FILE vexor-targets.cmake DESTINATION ${VEXOR_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/vexor-config.cmake.in
  ${PROJECT_BINARY_DIR}/cmake/vexor-config.cmake INSTALL_DESTINATION ${VEXOR_CMAKE_DIR})
# As the soname: what was built with an older minor version goes on to work.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/vexor-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/cmake/vexor-config.cmake ${PROJECT_BINARY_DIR}/cmake/vexor-config-version.cmake
  DESTINATION ${VEXOR_CMAKE_DIR})

# --- For everything else: pkg-config. Folders as absolute paths only if the caller of CMake chose such.

function(vexor_pc_folder variable folder)
  if(IS_ABSOLUTE ${folder})
    set(${variable} ${folder} PARENT_SCOPE)
  else()
    set(${variable} "\${prefix}/${folder}" PARENT_SCOPE)
  endif()
endfunction()
vexor_pc_folder(VEXOR_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
vexor_pc_folder(VEXOR_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(VEXOR_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH VEXOR_PC_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" VEXOR_PC_UP ${VEXOR_PC_UP})
  set(VEXOR_PC_PREFIX "\${pcfiledir}/${VEXOR_PC_UP}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vexor.pc.in ${PROJECT_BINARY_DIR}/cmake/vexor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cmake/vexor.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# --- For readers.

install(FILES ${PROJECT_SOURCE_DIR}/docs/man/vexor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/docs/man/vexor.3 ${PROJECT_SOURCE_DIR}/docs/man/vexor_lite.3
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/docs/api.md ${PROJECT_SOURCE_DIR}/docs/language.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# --- The Debian package: the runtime and the development files in one.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexor)
set(CPACK_PACKAGE_VENDOR "vexor")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "solver for satisfiability modulo theories")
set(CPACK_PACKAGE_DESCRIPTION
"vexor decides whether formulas can hold together, and tells how they do or
which of them are to blame. This package has its command line, the library
with its C interfaces, the headers, and the documentation.")
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION math)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "the vexor developers")
# Linking the static library needs GMP's own.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS libgmp-dev)
find_program(VEXOR_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(VEXOR_SHLIBDEPS)
if(VEXOR_SHLIBDEPS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libgcc-s1, libgmp10, libstdc++6")
endif()
include(CPack)
