# Install rules: the library for those who run programs (component runtime), headers, CMake package and pkg-config file
# for those who build them (component development), and the Debian packages of both.

include(CMakePackageConfigHelpers)

set(cadgeom_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cadgeom)
set(cadgeom_pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(
    TARGETS cadgeom
    EXPORT cadgeomTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(
    DIRECTORY ${PROJECT_SOURCE_DIR}/include/cadgeom
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    COMPONENT development
    FILES_MATCHING
    PATTERN "*.h")

install(
    EXPORT cadgeomTargets
    NAMESPACE cadgeom::
    DESTINATION ${cadgeom_cmake_dir}
    COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/cadgeomConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/cadgeomConfig.cmake INSTALL_DESTINATION ${cadgeom_cmake_dir})
# Until 1.0 a minor version may change the interface.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/cadgeomConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/cadgeomConfig.cmake ${PROJECT_BINARY_DIR}/cadgeomConfigVersion.cmake
    DESTINATION ${cadgeom_cmake_dir}
    COMPONENT development)

# The pkg-config file finds its prefix from where it lies, so that an installed tree can be moved.
set(pc_absolute_dir ${CMAKE_INSTALL_PREFIX})
cmake_path(APPEND pc_absolute_dir ${cadgeom_pkgconfig_dir})
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${pc_absolute_dir} OUTPUT_VARIABLE pc_prefix_from_file)
set(pc_includedir "\${prefix}")
cmake_path(APPEND pc_includedir ${CMAKE_INSTALL_INCLUDEDIR})
set(pc_libdir "\${prefix}")
cmake_path(APPEND pc_libdir ${CMAKE_INSTALL_LIBDIR})
configure_file(${PROJECT_SOURCE_DIR}/cmake/cadgeom.pc.in ${PROJECT_BINARY_DIR}/cadgeom.pc @ONLY)
install(
    FILES ${PROJECT_BINARY_DIR}/cadgeom.pc
    DESTINATION ${cadgeom_pkgconfig_dir}
    COMPONENT development)

if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

set(cadgeom_runtime_package libcadgeom${CADGEOM_ABI_NUMBER})
set(cadgeom_development_package libcadgeom-dev)
foreach(component IN ITEMS runtime development)
    install(
        FILES ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${cadgeom_${component}_package}
        RENAME copyright
        COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME cadgeom)
set(CPACK_PACKAGE_VENDOR cadgeom)
set(CPACK_PACKAGE_CONTACT "The cadgeom developers <cadgeom@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${cadgeom_runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${cadgeom_development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${cadgeom_runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Shared library, needed to run programs that use cadgeom.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "Headers, CMake package and pkg-config file, needed to build programs that use cadgeom.")
include(CPack)
