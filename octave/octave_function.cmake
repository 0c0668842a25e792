# add_octave_function(<target> FUNCTION <name> [OUTPUT_DIRECTORY <dir>] [TEST_ONLY]
#                     SOURCES <src>...)
#
# An Octave function module <name>.oct over the bridge, installed into
# NETCDFLIB_OCTAVE_INSTALL_DIR (and so packaged) unless TEST_ONLY. Only its installer symbol
# is exported: Octave loads functions into the global symbol scope, and any other symbol it
# exported could bind the host libraries to it, keeping it from ever being unloaded.
function(add_octave_function target)
  cmake_parse_arguments(arg "TEST_ONLY" "FUNCTION;OUTPUT_DIRECTORY" "SOURCES" ${ARGN})
  if(NOT arg_OUTPUT_DIRECTORY)
    set(arg_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/octave)
  endif()
  add_library(${target} MODULE ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE netcdflib_octave_bridge)
  set(map ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(WRITE ${map} "{ global: G${arg_FUNCTION}; local: *; };\n")
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
  # Installed, it finds the libraries through the install tree, or next to itself where
  # an Octave package keeps them.
  file(RELATIVE_PATH to_libdir /root/${NETCDFLIB_OCTAVE_INSTALL_DIR} /root/${CMAKE_INSTALL_LIBDIR})
  string(REGEX REPLACE "/$" "" to_libdir "${to_libdir}")
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${arg_FUNCTION}
    PREFIX ""
    SUFFIX ".oct"
    LIBRARY_OUTPUT_DIRECTORY ${arg_OUTPUT_DIRECTORY}
    BUILD_RPATH ${CMAKE_BINARY_DIR}/lib
    INSTALL_RPATH "$ORIGIN/${to_libdir};$ORIGIN"
    LINK_DEPENDS ${map})
  if(NOT arg_TEST_ONLY)
    install(TARGETS ${target} LIBRARY DESTINATION ${NETCDFLIB_OCTAVE_INSTALL_DIR})
  endif()
endfunction()
