# Installs the library, the runner and what a project needs to build against them:
# find_package(Morvex) gives Morvex::morvex and Morvex::qtbackend, pkg-config gives morvex and
# morvex-qtbackend.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Morvex")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/morvex")

target_include_directories(morvex INTERFACE "$<INSTALL_INTERFACE:${header_dir}>")

install(TARGETS morvex morvex_qtbackend EXPORT MorvexTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        COMPONENT runtime NAMELINK_COMPONENT devel)
install(TARGETS morvexrunner RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
install(EXPORT MorvexTargets NAMESPACE Morvex:: DESTINATION "${package_dir}" COMPONENT devel)

# What lies directly in the folder of a layer is public; its folders below hold helpers of its own.
# Of the backend just what applications and runners need.
set(qtbackend_headers applicationplugin.h qtinspector.h)
foreach(layer objectmodel shared shared/uiabstraction test qtbackend)
    if(DEFINED ${layer}_headers)
        list(TRANSFORM ${layer}_headers PREPEND "${PROJECT_SOURCE_DIR}/src/${layer}/" OUTPUT_VARIABLE headers)
    else()
        file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/${layer}/*.h")
    endif()
    install(FILES ${headers} DESTINATION "${header_dir}/${layer}" COMPONENT devel)
endforeach()
install(FILES
    "${PROJECT_BINARY_DIR}/generated/morvex_export.h"
    "${PROJECT_BINARY_DIR}/generated/morvex_qtbackend_export.h"
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

foreach(package morvex morvex-qtbackend)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in"
        "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT devel)
endforeach()
