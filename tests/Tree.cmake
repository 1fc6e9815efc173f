# Each header compiles alone. A source includes its own header first, as Tree.KeepsItsRules sees to; each header without one gets a source,
# built by a test only.
file(GLOB_RECURSE SMODEL_HEADERS RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  ${CMAKE_SOURCE_DIR}/core/*.h ${CMAKE_SOURCE_DIR}/objects/*.h ${CMAKE_SOURCE_DIR}/tools/*.h ${CMAKE_SOURCE_DIR}/tests/*.h)
set(SMODEL_HEADER_SOURCES)
foreach(header IN LISTS SMODEL_HEADERS)
  string(REGEX REPLACE "h$" "cpp" source ${header})
  if(EXISTS ${CMAKE_SOURCE_DIR}/${source})
    continue()
  endif()
  file(CONFIGURE OUTPUT headers/${header}.cpp CONTENT "#include \"${header}\"\n")
  list(APPEND SMODEL_HEADER_SOURCES ${CMAKE_CURRENT_BINARY_DIR}/headers/${header}.cpp)
endforeach()
add_library(smodel-headers OBJECT EXCLUDE_FROM_ALL ${SMODEL_HEADER_SOURCES})
target_link_libraries(smodel-headers PRIVATE smodel XercesC::XercesC SQLite::SQLite3 PostgreSQL::PostgreSQL GTest::gtest)
target_compile_options(smodel-headers PRIVATE -O0)
add_test(NAME Tree.EachHeaderCompilesAlone COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target smodel-headers)

add_test(NAME Tree.KeepsItsRules COMMAND scripts/check-tree.sh WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
add_test(NAME Tree.CheckFindsEachBreach COMMAND tests/scripts/check_tree_test.sh WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})

add_test(NAME Package.ExportsOnlyTheInterface WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
  COMMAND scripts/check-exports.sh $<TARGET_FILE:smodel> $<TARGET_FILE:smodel-repository>)
add_test(NAME Package.ExportCheckFindsAStranger COMMAND tests/scripts/check_exports_test.sh ${CMAKE_CXX_COMPILER}
  WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})

# The examples are a project of their own, which finds the installed package as any other project does.
set(SMODEL_STAGE ${CMAKE_CURRENT_BINARY_DIR}/stage)
add_test(NAME Package.Installs COMMAND ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${SMODEL_STAGE})
add_test(NAME Package.ServesTheExamples
  COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${CMAKE_SOURCE_DIR}/examples ${CMAKE_CURRENT_BINARY_DIR}/examples
    --build-generator ${CMAKE_GENERATOR} --build-options -DCMAKE_PREFIX_PATH=${SMODEL_STAGE} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
    --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure --no-tests=error)
add_test(NAME Package.IsFoundByPkgConfig COMMAND tests/scripts/pkg_config_test.sh ${SMODEL_STAGE}/${CMAKE_INSTALL_LIBDIR} ${CMAKE_CXX_COMPILER}
  WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
set_tests_properties(Package.Installs PROPERTIES FIXTURES_SETUP stage)
set_tests_properties(Package.ServesTheExamples Package.IsFoundByPkgConfig PROPERTIES FIXTURES_REQUIRED stage)
