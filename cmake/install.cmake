# What `cmake --install` puts where. docs/install.md has a table of the components.
#
# Any library can be installed without the others, but for the kernel services that qorvii18n loads. What
# all of them share is a component of its own. So is the stand-in for the kernel services, because a
# real libqorviks may be there already: everything else works beside either.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qorvii18n)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/qorvii18n)

# The libraries stand side by side, so one finds the other wherever the prefix was moved, for the linker
# of a user's program as well. LD_LIBRARY_PATH goes before this; a libqorviks elsewhere is found the
# usual way. Distributions, whose directories are searched anyhow, set CMAKE_SKIP_INSTALL_RPATH.
if(NOT DEFINED CMAKE_INSTALL_RPATH)
  set_target_properties(qorvii18n PROPERTIES INSTALL_RPATH "\$ORIGIN")
endif()

# pkg-config files name the prefix by their own place, so that it may be moved.
set(pc_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QORVII18N_PC_PREFIX ${pc_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH QORVII18N_PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH QORVII18N_PC_INCLUDEDIR
  ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})

# A shared library brings what it needs. Beside a static one, programs link the inner libraries, of which
# a later one may need an earlier one, ICU, and what a C++ compiler links and a C compiler does not.
set(inner)
set(cxx_runtime)
if(QORVII18N_LIBRARY_TYPE STREQUAL STATIC)
  get_property(inner GLOBAL PROPERTY QORVII18N_INNER_LIBRARIES)
  install(TARGETS ${inner} EXPORT inner-targets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT common_development)
  install(EXPORT inner-targets NAMESPACE qorvii18n::
    DESTINATION ${package_dir} COMPONENT common_development)
  list(REVERSE inner)
  set(cxx_runtime ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(REMOVE_ITEM cxx_runtime ${CMAKE_C_IMPLICIT_LINK_LIBRARIES})
endif()

# install_library(TARGET COMPONENT DEVELOPMENT_COMPONENT DESCRIPTION [LIBRARY...])
#
# A library, and what finds it: a file of CMake targets, which can be left out, and one for pkg-config.
# What is named last is what pkg-config has to name when libraries are static.
set(components)
function(install_library target component development description)
  get_target_property(name ${target} EXPORT_NAME)
  set(components ${components} ${name} PARENT_SCOPE)
  install(TARGETS ${target} EXPORT ${name}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      COMPONENT ${component} NAMELINK_COMPONENT ${development}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${development})
  install(EXPORT ${name}-targets NAMESPACE qorvii18n::
    DESTINATION ${package_dir} COMPONENT ${development})

  set(libs ${target})
  set(requires)
  if(QORVII18N_LIBRARY_TYPE STREQUAL STATIC)
    list(APPEND libs ${ARGN} ${cxx_runtime})
    target_link_libraries(${target} INTERFACE "$<INSTALL_INTERFACE:${cxx_runtime}>")
    if(ARGN)
      set(requires icu-uc)
    endif()
  endif()
  list(TRANSFORM libs PREPEND -l)
  list(JOIN libs " " libs)
  configure_file(cmake/library.pc.in ${PROJECT_BINARY_DIR}/${target}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${target}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${development})
endfunction()
install_library(qorviks kernel_services kernel_services_development
  "Kernel services of qorvii18n: tables, printed messages, reports of failed checks")
install_library(qorvii18n runtime development
  "${PROJECT_DESCRIPTION}" ${inner} qorviks)
install_library(qorvii18n-mail mail mail_development
  "Fields and parts of mails in any charset" ${inner})
install_library(qorvii18n-text text text_development
  "Strict conversion of texts between charsets, in pieces of any size" ${inner})

install(FILES
    include/qorvii18n/i18n.hpp
    include/qorvii18n/i18n_catalog.h
    include/qorvii18n/i18n_charset.h
    include/qorvii18n/i18n_iconv.h
    include/qorvii18n/i18n_mime.h
    include/qorvii18n/i18n_mime.hpp
    ${QORVII18N_MADE_HEADERS}/qorvii18n/export.h
  DESTINATION ${header_dir} COMPONENT development)
install(FILES docs/encoded-words.md docs/limits.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES
    include/qorvii18n/i18n_mail.h
    ${QORVII18N_MADE_HEADERS}/qorvii18n/mail_export.h
  DESTINATION ${header_dir} COMPONENT mail_development)
install(FILES
    include/qorvii18n/i18n_text.h
    ${QORVII18N_MADE_HEADERS}/qorvii18n/text_export.h
  DESTINATION ${header_dir} COMPONENT text_development)
install(FILES lib/ks/qorviks.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT kernel_services_development)
install(FILES ${QORVII18N_MADE_HEADERS}/qorvii18n/version.h
  DESTINATION ${header_dir} COMPONENT common_development)

configure_package_config_file(cmake/qorvii18n-config.cmake.in
  ${PROJECT_BINARY_DIR}/qorvii18n-config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qorvii18n-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/qorvii18n-config.cmake
    ${PROJECT_BINARY_DIR}/qorvii18n-config-version.cmake
  DESTINATION ${package_dir} COMPONENT common_development)
