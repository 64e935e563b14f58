# Precompiled headers, one set per kind of code, shared by all targets of that kind: compiling the toolkit's headers again
# in every file is most of what a full build would do.

# vexmor_precompiled(<name> LINKS ...) makes the set of cmake/pch/<name>.h.
function(vexmor_precompiled name)
  cmake_parse_arguments(PCH "" "" "LINKS" ${ARGN})
  add_library(vexmor_pch_${name} OBJECT ${PROJECT_SOURCE_DIR}/cmake/pch/${name}.cpp)
  set_target_properties(vexmor_pch_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(vexmor_pch_${name} PRIVATE ${PCH_LINKS})
  target_precompile_headers(vexmor_pch_${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch/${name}.h)
endfunction()

# vexmor_use_precompiled(<target> <name>) makes a target use a set. It is compiled like the set, position-independent.
function(vexmor_use_precompiled target name)
  target_compile_options(${target} PRIVATE -fPIC)
  target_precompile_headers(${target} REUSE_FROM vexmor_pch_${name})
endfunction()
