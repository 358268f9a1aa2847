# Installs headers, both libraries, the CMake package (Tivlib::tivlib) and tivlib.pc.
include(CMakePackageConfigHelpers)

install(TARGETS tivlib tivlib_static EXPORT TivlibTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tivlib DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_BINARY_DIR}/include/tivlib/version_numbers.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tivlib)

set(TIVLIB_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Tivlib)
install(EXPORT TivlibTargets NAMESPACE Tivlib:: DESTINATION ${TIVLIB_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TivlibConfig.cmake.in
  ${CMAKE_BINARY_DIR}/TivlibConfig.cmake INSTALL_DESTINATION ${TIVLIB_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TivlibConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TivlibConfig.cmake ${CMAKE_BINARY_DIR}/TivlibConfigVersion.cmake
  DESTINATION ${TIVLIB_CMAKE_DIR})

# The package finds its prefix from where tivlib.pc lies, so an installed tree can be moved.
file(RELATIVE_PATH TIVLIB_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" TIVLIB_PC_TO_PREFIX "${TIVLIB_PC_TO_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/tivlib.pc.in ${CMAKE_BINARY_DIR}/tivlib.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tivlib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
