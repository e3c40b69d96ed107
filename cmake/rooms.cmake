# Rooms: the folders of the library, each a target of its own that sees only the rooms it names.
#
#     triglub_room(engine/table SOURCES dictionary.cpp table.cpp USES base engine/schema)
#
# stands in the folder of the room, platform/engine/table or src/... Its headers are included by the room's name,
# #include "engine/table/table.h", and are found by the rooms that use it, directly or by way of another, and by no
# other: an include that is not allowed does not compile. Rooms that use each other in a circle are refused by CMake.
#
# How it works: the headers of a room are linked into a folder of the build tree of their own, and that folder, not the
# source tree, is where the compiler looks. A room that is APART is no part of the main library; LINKS are libraries from
# elsewhere.
function(triglub_room room)
  cmake_parse_arguments(ROOM "APART" "" "SOURCES;USES;LINKS" ${ARGN})
  string(REPLACE "/" "_" target "room_${room}")
  file(RELATIVE_PATH house ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  string(REGEX REPLACE "/.*" "" house ${house}) # platform or src
  set(includes ${PROJECT_BINARY_DIR}/rooms/${target}/${house})
  file(GLOB headers RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS *.h)
  file(MAKE_DIRECTORY ${includes}/${room})
  foreach(header IN LISTS headers)
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${includes}/${room}/${header} SYMBOLIC)
  endforeach()

  add_library(${target} OBJECT ${ROOM_SOURCES})
  target_include_directories(${target} PUBLIC ${includes} ${PROJECT_SOURCE_DIR}/platform/include)
  if(house STREQUAL src)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/include)
  endif()
  foreach(used IN LISTS ROOM_USES)
    string(REPLACE "/" "_" used "room_${used}")
    target_link_libraries(${target} PUBLIC ${used})
  endforeach()
  target_link_libraries(${target} PRIVATE ${ROOM_LINKS})
  if(NOT ROOM_APART)
    set_property(GLOBAL APPEND PROPERTY TRIGLUB_ROOMS ${target})
  endif()
endfunction()
