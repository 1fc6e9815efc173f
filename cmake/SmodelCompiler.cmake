# Language, warnings, visibility and sanitizers, the same for every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_compile_options(-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=) # a binary tells no path of the machine that built it
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict) # g++ 12 sees an overlap in each `text + std::string` it inlines
endif()
if(SMODEL_WERROR)
  add_compile_options(-Werror)
endif()
if(SMODEL_SANITIZE)
  add_compile_options(-fsanitize=${SMODEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${SMODEL_SANITIZE})
  if(SMODEL_SANITIZE MATCHES "address,undefined")
    add_compile_options(-fno-sanitize=object-size) # costs a seventh of the build, and the address sanitizer knows sizes better
  endif()
endif()

add_compile_definitions(SMODEL_URI_HOST="${SMODEL_URI_HOST}")
