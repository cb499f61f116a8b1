# The one place that sets warnings, Qt's safety defines and sanitizers, and the helpers every
# directory uses to declare its library and its tests.

add_library(tw_options INTERFACE)
target_compile_options(tw_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
  -Wunused -Woverloaded-virtual -Wnull-dereference -Wdouble-promotion -Wformat=2
  -Wimplicit-fallthrough)
if(TW_WARNINGS_AS_ERRORS)
  target_compile_options(tw_options INTERFACE -Werror)
endif()
target_compile_definitions(tw_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_CAST_TO_ASCII QT_USE_QSTRINGBUILDER)
if(TW_SANITIZE)
  target_compile_options(tw_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined)
  target_link_options(tw_options INTERFACE -fsanitize=address,undefined)
endif()
if(TW_BUILD_FUZZ AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Coverage for every library, so a fuzzer is guided by the decoder it drives, not its harness.
  target_compile_options(tw_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# tw_add_library(<name> [DEPS <targets>...] [SUBDIRS <dirs>...]) — one static library from every
# .cpp of the calling directory (and of the listed SUBDIRS), its headers found as
# "<dir>/<Header>.h". The headers are linked into an include root of the library's own in the build
# tree, which it publishes: a library sees its own headers and those of its DEPS, nothing above,
# and a subdirectory that is a library of its own (platform/linux) stays out of its parent's root.
function(tw_add_library name)
  cmake_parse_arguments(ARG "" "" "DEPS;SUBDIRS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  foreach(sub ${ARG_SUBDIRS})
    file(GLOB more CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${sub}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/${sub}/*.h")
    list(APPEND sources ${more})
  endforeach()

  set(root "${PROJECT_BINARY_DIR}/include/${name}")
  file(RELATIVE_PATH within "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
  # Rebuilt at each configure, so a removed or moved header is gone from here too.
  file(REMOVE_RECURSE "${root}")
  set(headers ${sources})
  list(FILTER headers INCLUDE REGEX "\\.h$")
  foreach(header ${headers})
    file(RELATIVE_PATH rel "${CMAKE_CURRENT_SOURCE_DIR}" "${header}")
    get_filename_component(dir "${root}/${within}/${rel}" DIRECTORY)
    file(MAKE_DIRECTORY "${dir}")
    file(CREATE_LINK "${header}" "${root}/${within}/${rel}" SYMBOLIC)
  endforeach()

  set(compiled ${sources})
  list(FILTER compiled INCLUDE REGEX "\\.cpp$")
  if(NOT compiled)
    # A directory whose first file has not landed yet still offers its dependencies.
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${root}")
    target_link_libraries(${name} INTERFACE ${ARG_DEPS})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC "${root}")
  target_link_libraries(${name} PUBLIC ${ARG_DEPS} PRIVATE tw_options)
endfunction()

# tw_add_test(<name> [SOURCES <files>...] [LIBS <targets>...] [LABELS <labels>...] [TIMEOUT <s>])
# One QtTest executable per family of classes; the source defaults to <name>.cpp.
function(tw_add_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  if(NOT ARG_SOURCES)
    set(ARG_SOURCES ${name}.cpp)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} tw_test_support Qt6::Test tw_options)
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  # The web services at a closed local port: no test reaches the internet unless it brings its
  # own server. No test makes a sound.
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_LOGGING_RULES=*.debug=false;TKW_ENDPOINT_BASE=http://127.0.0.1:9;TKW_SILENT=1")
  if(ARG_LABELS)
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}")
  endif()
endfunction()
