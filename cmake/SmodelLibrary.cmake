# How a shared library of the project is built and installed, and how others find it.
include(CMakePackageConfigHelpers)

set(SMODEL_CMAKE_DIR ${CMAKE_CURRENT_LIST_DIR})
set(SMODEL_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/smodel)
set(SMODEL_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/smodel)

# smodel_add_library(NAME DESCRIPTION SOURCE...)
function(smodel_add_library name description)
  add_library(${name} SHARED ${ARGN})
  add_library(smodel::${name} ALIAS ${name})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS ${SMODEL_CMAKE_DIR}/exports.map)
  target_link_options(${name} PRIVATE LINKER:--version-script=${SMODEL_CMAKE_DIR}/exports.map LINKER:--as-needed)
  target_link_options(${name} PRIVATE LINKER:-Bsymbolic-functions) # nobody replaces its functions, so they call each other directly
  if(NOT SMODEL_SANITIZE) # a sanitizer's runtime comes with the executable
    target_link_options(${name} PRIVATE LINKER:--no-undefined)
  endif()
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}> $<INSTALL_INTERFACE:${SMODEL_INCLUDE_DIR}>)
  install(TARGETS ${name} EXPORT smodelTargets)

  set(LIBRARY_NAME ${name})
  set(LIBRARY_DESCRIPTION ${description})
  set(LIBRARY_REQUIRES "")
  if(NOT name STREQUAL "smodel")
    set(LIBRARY_REQUIRES smodel)
  endif()
  file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(${SMODEL_CMAKE_DIR}/library.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# The public headers, and what `find_package(smodel)` reads.
function(smodel_install_package)
  install(CODE "
    execute_process(COMMAND scripts/public-headers.sh WORKING_DIRECTORY \"${CMAKE_SOURCE_DIR}\" OUTPUT_VARIABLE headers
      COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL \"[^\n]+\" headers \"\${headers}\")
    foreach(header IN LISTS headers)
      get_filename_component(folder \"\${header}\" DIRECTORY)
      file(INSTALL \"${CMAKE_SOURCE_DIR}/\${header}\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${SMODEL_INCLUDE_DIR}/\${folder}\")
    endforeach()")
  install(EXPORT smodelTargets NAMESPACE smodel:: DESTINATION ${SMODEL_PACKAGE_DIR} FILE smodelConfig.cmake)
  write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/smodelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/smodelConfigVersion.cmake DESTINATION ${SMODEL_PACKAGE_DIR})
endfunction()
