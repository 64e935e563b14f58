# What a build may choose. The presets in CMakePresets.json set these; nothing else needs to.
option(VEXMOR_TESTS "Build the tests" ON)
option(VEXMOR_ENGINE "Build the service that drives a firewall daemon" ON)
option(VEXMOR_BENCH "Build vexmor-bench" OFF)
option(VEXMOR_FUZZ "Build the fuzz targets (clang only)" OFF)
set(VEXMOR_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")
set(VEXMOR_DOCUMENTATION_HOST "docs.vexmor.example" CACHE STRING "Host of the documentation pages")
set(VEXMOR_SUPPORT_ADDRESS "support@vexmor.example" CACHE STRING "Support e-mail address")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)

if(VEXMOR_SANITIZE)
  add_compile_options(-fsanitize=${VEXMOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEXMOR_SANITIZE})
endif()

if(VEXMOR_FUZZ)
  add_compile_definitions(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)
endif()

# A compiler cache makes rebuilding in a second checkout a matter of seconds; builds do without it as well.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
