# Installs the library, the runner and what a project needs to build against them:
# find_package(Morvex) gives Morvex::morvex, pkg-config gives morvex.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Morvex")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/morvex")

target_include_directories(morvex INTERFACE "$<INSTALL_INTERFACE:${header_dir}>")

install(TARGETS morvex EXPORT MorvexTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        COMPONENT runtime NAMELINK_COMPONENT devel)
install(TARGETS morvexrunner RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
install(EXPORT MorvexTargets NAMESPACE Morvex:: DESTINATION "${package_dir}" COMPONENT devel)

# What is directly in the folder of a layer is public; its folders below hold helpers of its own.
foreach(layer objectmodel shared shared/uiabstraction test)
    file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${layer}/*.h")
    install(FILES ${headers} DESTINATION "${header_dir}/${layer}" COMPONENT devel)
endforeach()
install(FILES "${PROJECT_BINARY_DIR}/generated/morvex_export.h"
    DESTINATION "${header_dir}"
    COMPONENT devel)

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/MorvexConfig.cmake.in" "${PROJECT_BINARY_DIR}/MorvexConfig.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/MorvexConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/MorvexConfig.cmake" "${PROJECT_BINARY_DIR}/MorvexConfigVersion.cmake"
    DESTINATION "${package_dir}" COMPONENT devel)

configure_file("${PROJECT_SOURCE_DIR}/cmake/morvex.pc.in" "${PROJECT_BINARY_DIR}/morvex.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/morvex.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT devel)
