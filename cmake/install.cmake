# What `cmake --install` puts where. docs/install.md has a table of the components.
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

# pkg-config files name the prefix by their own place, so that it may be moved.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QORVII18N_PC_PREFIX ${pc_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH QORVII18N_PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH QORVII18N_PC_INCLUDEDIR
  ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})

# A library, and what finds it. The exports are files of their own so that any can be left out.
function(install_library name runtime development)
  install(TARGETS ${name} EXPORT ${name}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT ${runtime} NAMELINK_COMPONENT ${development})
  install(EXPORT ${name}-targets NAMESPACE qorvii18n::
    DESTINATION ${package_dir} COMPONENT ${development})
  configure_file(cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${development})
endfunction()
install_library(qorvii18n runtime development)
install_library(qorvii18n-mail mail mail_development)
install_library(qorviks kernel_services kernel_services_development)

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
