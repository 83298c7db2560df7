# How libraries are made. Those that are installed are built from plain objects, which tests can link to
# reach what a library does not export.
include(GenerateExportHeader)

set(QORVII18N_LIBRARY_TYPE SHARED)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  set(QORVII18N_LIBRARY_TYPE STATIC)
endif()

# Headers that are made while the build is configured: version.h, and an export header a library.
set(QORVII18N_MADE_HEADERS ${PROJECT_BINARY_DIR}/include)
configure_file(${CMAKE_CURRENT_LIST_DIR}/version.h.in ${QORVII18N_MADE_HEADERS}/qorvii18n/version.h @ONLY)

# Settings of all targets that become a part of a library.
function(qorvii18n_set_up target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
endfunction()

# A static library TARGET that each library which uses it has inside: lib/NAME. Where libraries are
# static themselves, it is installed beside them.
function(qorvii18n_add_inner_library target)
  add_library(${target} STATIC ${ARGN})
  qorvii18n_set_up(${target})
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/lib>)
  set_property(GLOBAL APPEND PROPERTY QORVII18N_INNER_LIBRARIES ${target})
endfunction()

# Objects with an interface: TARGET, whose export header is FILE and defines NAME_EXPORT.
function(qorvii18n_add_objects target name file)
  add_library(${target} OBJECT ${ARGN})
  qorvii18n_set_up(${target})
  generate_export_header(${target} BASE_NAME ${name}
    EXPORT_FILE_NAME ${QORVII18N_MADE_HEADERS}/qorvii18n/${file})
  target_include_directories(${target} PUBLIC
    ${PROJECT_SOURCE_DIR}/include ${QORVII18N_MADE_HEADERS})
endfunction()

# The symbols that a shared library exports, and the number in its soname.
function(qorvii18n_set_interface target abi)
  set_target_properties(${target} PROPERTIES VERSION ${abi}.0.0 SOVERSION ${abi})
  if(QORVII18N_LIBRARY_TYPE STREQUAL SHARED)
    set(map ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${map} LINKER:--no-undefined)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${map})
  endif()
endfunction()

# The library TARGET out of the objects OBJECTS, for programs that link qorvii18n::COMPONENT. What follows
# are libraries that it needs.
function(qorvii18n_add_library target objects component abi)
  target_link_libraries(${objects} PUBLIC ${ARGN})
  add_library(${target} ${QORVII18N_LIBRARY_TYPE} $<TARGET_OBJECTS:${objects}>)
  add_library(qorvii18n::${component} ALIAS ${target})
  target_link_libraries(${target} PRIVATE ${ARGN})
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<BUILD_INTERFACE:${QORVII18N_MADE_HEADERS}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${component} LINKER_LANGUAGE CXX)
  qorvii18n_set_interface(${target} ${abi})
endfunction()
