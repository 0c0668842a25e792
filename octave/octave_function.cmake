# add_octave_function(<target> FUNCTION <name> OUTPUT_DIRECTORY <dir> SOURCES <src>...)
#
# An Octave function module <name>.oct over the bridge. Only its installer symbol is
# exported: Octave loads functions into the global symbol scope, and any other symbol it
# exported could bind the host libraries to it, keeping it from ever being unloaded.
function(add_octave_function target)
  cmake_parse_arguments(arg "" "FUNCTION;OUTPUT_DIRECTORY" "SOURCES" ${ARGN})
  add_library(${target} MODULE ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE netcdflib_octave_bridge)
  set(map ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(WRITE ${map} "{ global: G${arg_FUNCTION}; local: *; };\n")
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${arg_FUNCTION}
    PREFIX ""
    SUFFIX ".oct"
    LIBRARY_OUTPUT_DIRECTORY ${arg_OUTPUT_DIRECTORY}
    BUILD_RPATH ${CMAKE_BINARY_DIR}/lib
    LINK_DEPENDS ${map})
endfunction()
