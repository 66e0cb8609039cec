# Installs the library, the runner and what a project needs to build against them:
# find_package(Morvex) gives Morvex::morvex and Morvex::objectmodel_qt, pkg-config gives morvex and
# morvex-objectmodel-qt.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Morvex")
set(header_dir "${CMAKE_INSTALL_INCLUDEDIR}/morvex")

target_include_directories(morvex INTERFACE "$<INSTALL_INTERFACE:${header_dir}>")

install(TARGETS morvex morvex_objectmodel_qt EXPORT MorvexTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        COMPONENT runtime NAMELINK_COMPONENT devel)
install(TARGETS morvexrunner RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)
install(EXPORT MorvexTargets NAMESPACE Morvex:: DESTINATION "${package_dir}" COMPONENT devel)

# Headers of the layers; those that only sources of their own layer need stay behind.
foreach(layer objectmodel shared test)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/${layer}" DESTINATION "${header_dir}"
        COMPONENT devel
        FILES_MATCHING PATTERN "*.h"
        PATTERN "biffscan.h" EXCLUDE
        PATTERN "comparisonapplication.h" EXCLUDE
        PATTERN "compoundfile.h" EXCLUDE
        PATTERN "qt" EXCLUDE
        PATTERN "testcaserun.h" EXCLUDE
        PATTERN "testsuiterunoptions.h" EXCLUDE
        PATTERN "vpdocument.h" EXCLUDE
        PATTERN "vpimages.h" EXCLUDE
        PATTERN "xlscell.h" EXCLUDE
        PATTERN "xlsworkbook.h" EXCLUDE
        PATTERN "xlsxparts.h" EXCLUDE
        PATTERN "xmlelementreader.h" EXCLUDE
        PATTERN "xmlguard.h" EXCLUDE
        PATTERN "zippart.h" EXCLUDE)
endforeach()
# Of the backend just what applications and runners need.
install(FILES
    "${PROJECT_SOURCE_DIR}/src/objectmodel/qt/applicationplugin.h"
    "${PROJECT_SOURCE_DIR}/src/objectmodel/qt/qtinspector.h"
    DESTINATION "${header_dir}/objectmodel/qt" COMPONENT devel)
install(FILES
    "${PROJECT_BINARY_DIR}/generated/morvex_export.h"
    "${PROJECT_BINARY_DIR}/generated/morvex_objectmodel_qt_export.h"
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

foreach(package morvex morvex-objectmodel-qt)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/${package}.pc.in"
        "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${package}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT devel)
endforeach()
