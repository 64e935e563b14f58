# vexmor_floor(<target> <folder> SOURCES ... [LINKS ...] [PRIVATE_LINKS ...] [PRECOMPILED widgets])
#
# One folder of the house as one library. Its headers are included by their path from the project's root
# ("store/plist/PropertyList.h"), but only by targets whose link line names it: every floor has an include directory of its
# own that holds nothing but a link to its folder, so including a floor that is not linked does not compile.
function(vexmor_floor target folder)
  cmake_parse_arguments(FLOOR "" "PRECOMPILED" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  if(NOT FLOOR_PRECOMPILED)
    set(FLOOR_PRECOMPILED standard)
  endif()
  set(door ${CMAKE_BINARY_DIR}/floors/${target})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${door}/${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${folder} ${door}/${folder} SYMBOLIC)
  add_library(${target} STATIC ${FLOOR_SOURCES})
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${target} PUBLIC ${door})
  target_link_libraries(${target} PUBLIC ${FLOOR_LINKS} PRIVATE ${FLOOR_PRIVATE_LINKS})
  vexmor_use_precompiled(${target} ${FLOOR_PRECOMPILED})
endfunction()
