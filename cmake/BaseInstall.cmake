# Installs the library, its headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(BASE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Base)

install(TARGETS Base EXPORT BaseTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT BaseTargets NAMESPACE Base:: DESTINATION ${BASE_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/BaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/BaseConfig.cmake
    INSTALL_DESTINATION ${BASE_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/BaseConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/BaseConfig.cmake ${PROJECT_BINARY_DIR}/BaseConfigVersion.cmake
    DESTINATION ${BASE_CMAKE_DIR})

# The pkg-config file finds its prefix from where it lies, so that the
# installed tree can be moved.
file(RELATIVE_PATH BASE_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" BASE_PC_TO_PREFIX "${BASE_PC_TO_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/base.pc.in ${PROJECT_BINARY_DIR}/base.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/base.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
