# add_layer(NAME ROOM folder [KIND STATIC|OBJECT|SHARED] [WIDGETS] DEPENDS ... SOURCES ...)
#
# Makes one library of the architecture. ROOM is its folder below the source root; other layers include its headers as
# <ROOM/x.h>, and that resolves only for who links it: each target has an include root of its own, which holds nothing
# but a link to its folder. A dependency that is not yet a target is refused, so a folder cannot reach upward.
function(add_layer name)
  cmake_parse_arguments(L "WIDGETS" "ROOM;KIND" "DEPENDS;SOURCES" ${ARGN})
  if(NOT L_KIND)
    set(L_KIND STATIC)
  endif()
  foreach(dependency IN LISTS L_DEPENDS)
    if(NOT TARGET ${dependency})
      message(FATAL_ERROR "${name} depends on ${dependency}, which is no target yet: layers depend downward only")
    endif()
  endforeach()
  add_library(${name} ${L_KIND} ${L_SOURCES})
  target_link_libraries(${name} PUBLIC ${L_DEPENDS})
  teto_include_root(${name} ${L_ROOM})
  teto_use_pch(${name} ${L_WIDGETS})
endfunction()

# Gives the target an include root in which <room/...> is the room's folder.
function(teto_include_root name room)
  set(root ${CMAKE_BINARY_DIR}/include-roots/${name})
  get_filename_component(parent ${root}/${room} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${room} ${root}/${room} SYMBOLIC)
  target_include_directories(${name} PUBLIC ${root})
endfunction()

# Shares the precompiled header of the core or of the widget layers.
function(teto_use_pch name widgets)
  if(NOT TETO_PCH)
    return()
  endif()
  if(widgets)
    target_precompile_headers(${name} REUSE_FROM pch_widgets)
  else()
    target_precompile_headers(${name} REUSE_FROM pch_core)
  endif()
endfunction()

# add_program(NAME DEPENDS ... SOURCES ...): an executable in bin/.
function(add_program name)
  cmake_parse_arguments(P "" "" "DEPENDS;SOURCES" ${ARGN})
  add_executable(${name} ${P_SOURCES})
  target_link_libraries(${name} PRIVATE ${P_DEPENDS})
  teto_use_pch(${name} TRUE)
endfunction()

# A symbol that is missing in a library fails at the link, not at the load. Clang leaves the sanitizers' own symbols to
# the program, so a build with them cannot ask for that.
function(teto_refuse_undefined name)
  if(NOT (TETO_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL Clang))
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

# add_assembly(NAME ROOMS ... SOURCES ...): one shared library out of object layers.
function(add_assembly name)
  cmake_parse_arguments(A "" "" "ROOMS;SOURCES" ${ARGN})
  add_library(${name} SHARED ${A_SOURCES})
  target_link_libraries(${name} PUBLIC ${A_ROOMS})
  teto_refuse_undefined(${name})
endfunction()

# add_plugin_module(NAME DEPENDS ... SOURCES ...): a module that QPluginLoader loads, in lib/NAME/.
function(add_plugin_module name)
  cmake_parse_arguments(M "" "" "DEPENDS;SOURCES" ${ARGN})
  add_library(${name} MODULE ${M_SOURCES})
  target_link_libraries(${name} PRIVATE ${M_DEPENDS})
  teto_refuse_undefined(${name})
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/${name})
  teto_use_pch(${name} TRUE)
endfunction()

# add_qt_test(NAME SOURCES ... DEPENDS ...): one executable a subject; its main (tests/support) fails on connect warnings.
function(add_qt_test name)
  cmake_parse_arguments(T "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE test_support ${T_DEPENDS})
  teto_use_pch(${name} TRUE)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300 ENVIRONMENT
    "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TETO_SCREENS=${CMAKE_SOURCE_DIR}/build/screens;TETO_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY};TETO_LIB=${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
endfunction()

# mark_threaded(TEST...): these run under the thread sanitizer too.
function(mark_threaded)
  set_tests_properties(${ARGN} PROPERTIES LABELS threads)
  set_property(GLOBAL APPEND PROPERTY TETO_THREADED_TESTS ${ARGN})
endfunction()
