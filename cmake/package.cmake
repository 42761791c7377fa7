# What `cmake --install` lays down: headers, libraries, and the two ways to find them.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/gpuruntime DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.hpp"
  PATTERN launcher EXCLUDE)  # For the library's own kernels.

set(packageTargets gpuruntime)
if(TARGET gpuruntimeRecipes)
  list(APPEND packageTargets gpuruntimeRecipes)
endif()
install(TARGETS ${packageTargets} EXPORT gpuruntimeTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/gpuruntime)
install(EXPORT gpuruntimeTargets NAMESPACE gpuruntime:: DESTINATION ${packageFolder})
configure_package_config_file(cmake/gpuruntimeConfig.cmake.in ${PROJECT_BINARY_DIR}/gpuruntimeConfig.cmake
  INSTALL_DESTINATION ${packageFolder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/gpuruntimeConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/gpuruntimeConfig.cmake ${PROJECT_BINARY_DIR}/gpuruntimeConfigVersion.cmake
  DESTINATION ${packageFolder})

# The .pc file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH pcPrefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" pcPrefix ${pcPrefix})
configure_file(cmake/gpuruntime.pc.in ${PROJECT_BINARY_DIR}/gpuruntime.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/gpuruntime.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
