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
