# What find_package(netcdflib) and pkg-config find after `cmake --install`.
include(CMakePackageConfigHelpers)
set(NETCDFLIB_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/netcdflib)
install(EXPORT netcdflibTargets NAMESPACE netcdflib:: DESTINATION ${NETCDFLIB_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/netcdflibConfig.cmake.in
  ${CMAKE_BINARY_DIR}/netcdflibConfig.cmake INSTALL_DESTINATION ${NETCDFLIB_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/netcdflibConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/netcdflibConfig.cmake
  ${CMAKE_BINARY_DIR}/netcdflibConfigVersion.cmake DESTINATION ${NETCDFLIB_CMAKE_DIR})

# Relative to the file itself, so that `cmake --install --prefix` anywhere gives a true one.
file(RELATIVE_PATH NETCDFLIB_PC_PREFIX /root/${CMAKE_INSTALL_LIBDIR}/pkgconfig /root)
string(REGEX REPLACE "/$" "" NETCDFLIB_PC_PREFIX "${NETCDFLIB_PC_PREFIX}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/netcdflib.pc.in ${CMAKE_BINARY_DIR}/netcdflib.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/netcdflib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
