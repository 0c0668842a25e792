# The substitute host: its own shared library, so that the gateway and a bridge share
# one instance of its process-wide state.
file(GLOB QVHOST_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/src/*.cpp)
add_library(qvhost SHARED ${QVHOST_SOURCES})
target_include_directories(qvhost PUBLIC ${PROJECT_SOURCE_DIR}/host/include)
target_link_libraries(qvhost PRIVATE Boost::locale)
# GNU-unique symbols would pin the libraries in memory after a host unloads them, and with
# them state that must not outlive an unload (the open-file registry, warning handlers).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(qvhost PRIVATE -fno-gnu-unique)
endif()

# Everything of the gateway, compiled once with hidden visibility; the shared library
# and the unit tests both link these objects.
file(GLOB_RECURSE NETCDFLIB_SOURCES CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/gateway/*.cpp
  ${PROJECT_SOURCE_DIR}/convert/*.cpp
  ${PROJECT_SOURCE_DIR}/ops/*.cpp)
add_library(netcdflib_objects OBJECT ${NETCDFLIB_SOURCES})
set_target_properties(netcdflib_objects PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_include_directories(netcdflib_objects PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(netcdflib_objects PUBLIC qvhost PkgConfig::NETCDF Boost::headers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(netcdflib_objects PRIVATE -fno-gnu-unique)
endif()
if(CppMicroServices_FOUND)
  target_compile_definitions(netcdflib_objects PRIVATE NETCDFLIB_WITH_CPPMICROSERVICES=1)
  target_link_libraries(netcdflib_objects PUBLIC CppMicroServices)
endif()

add_library(netcdflib SHARED)
target_link_libraries(netcdflib PRIVATE netcdflib_objects PUBLIC qvhost)
target_include_directories(netcdflib PUBLIC ${PROJECT_SOURCE_DIR})
target_link_options(netcdflib PRIVATE -Wl,--no-undefined
  -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/netcdflib.map)
set_target_properties(netcdflib PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/netcdflib.map)
