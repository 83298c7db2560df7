# What `cmake --install` puts where. Components:
#
#   runtime                      libqorvii18n.so.N
#   development                  headers, CMake package, qorvii18n.pc, manual pages, guides
#   mail                         libqorvii18n-mail.so.N
#   mail_development             its headers, CMake target, qorvii18n-mail.pc, manual page
#   kernel_services              libqorviks.so.N, the stand-in
#   kernel_services_development  qorviks.h, its CMake target, qorviks.pc
#
# The stand-in has components of its own because a real libqorviks may be there already: everything
# in the first four works beside either. The CMake target of the mail library is a component of the
# package in `development`.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qorvii18n)

# Both libraries stand side by side, so the one finds the other wherever the prefix was moved, for the
# linker of a user's program as well. LD_LIBRARY_PATH goes before this; a libqorviks elsewhere is found
# the usual way. Distributions, whose directories are searched anyhow, set CMAKE_SKIP_INSTALL_RPATH.
if(NOT DEFINED CMAKE_INSTALL_RPATH)
  set_target_properties(qorvii18n PROPERTIES INSTALL_RPATH "\$ORIGIN")
endif()

install(TARGETS qorvii18n EXPORT qorvii18n-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT runtime NAMELINK_COMPONENT development)
install(TARGETS qorvii18n-mail EXPORT qorvii18n-mail-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT mail NAMELINK_COMPONENT mail_development)
install(TARGETS qorviks EXPORT qorviks-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT kernel_services NAMELINK_COMPONENT kernel_services_development)

install(FILES
    include/qorvii18n/i18n.hpp
    include/qorvii18n/i18n_catalog.h
    include/qorvii18n/i18n_charset.h
    include/qorvii18n/i18n_iconv.h
    include/qorvii18n/i18n_mime.h
    include/qorvii18n/i18n_mime.hpp
    ${PROJECT_BINARY_DIR}/lib/i18n/include/qorvii18n/export.h
    ${PROJECT_BINARY_DIR}/lib/i18n/include/qorvii18n/version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qorvii18n COMPONENT development)
install(FILES docs/encoded-words.md docs/limits.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES
    include/qorvii18n/i18n_mail.h
    ${PROJECT_BINARY_DIR}/lib/mail/include/qorvii18n/mail_export.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qorvii18n COMPONENT mail_development)
install(FILES lib/ks/qorviks.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT kernel_services_development)

# The CMake package. The exports are files of their own so that any can be left out.
install(EXPORT qorvii18n-targets NAMESPACE qorvii18n::
  DESTINATION ${package_dir} COMPONENT development)
install(EXPORT qorvii18n-mail-targets NAMESPACE qorvii18n::
  DESTINATION ${package_dir} COMPONENT mail_development)
install(EXPORT qorviks-targets NAMESPACE qorvii18n::
  DESTINATION ${package_dir} COMPONENT kernel_services_development)
configure_package_config_file(cmake/qorvii18n-config.cmake.in
  ${PROJECT_BINARY_DIR}/qorvii18n-config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorvii18n-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/qorvii18n-config.cmake
    ${PROJECT_BINARY_DIR}/qorvii18n-config-version.cmake
  DESTINATION ${package_dir} COMPONENT development)

# pkg-config files name the prefix by their own place, so that it may be moved.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QORVII18N_PC_PREFIX ${pc_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH QORVII18N_PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH QORVII18N_PC_INCLUDEDIR
  ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/qorvii18n.pc.in ${PROJECT_BINARY_DIR}/qorvii18n.pc @ONLY)
configure_file(cmake/qorvii18n-mail.pc.in ${PROJECT_BINARY_DIR}/qorvii18n-mail.pc @ONLY)
configure_file(cmake/qorviks.pc.in ${PROJECT_BINARY_DIR}/qorviks.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qorvii18n.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/qorvii18n-mail.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT mail_development)
install(FILES ${PROJECT_BINARY_DIR}/qorviks.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT kernel_services_development)
