# Defines FreeXL::FreeXL. The library ships no CMake package of its own.
find_path(FreeXL_INCLUDE_DIR freexl.h)
find_library(FreeXL_LIBRARY freexl)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(FreeXL REQUIRED_VARS FreeXL_LIBRARY FreeXL_INCLUDE_DIR)
if(FreeXL_FOUND AND NOT TARGET FreeXL::FreeXL)
    add_library(FreeXL::FreeXL UNKNOWN IMPORTED)
    set_target_properties(FreeXL::FreeXL PROPERTIES
        IMPORTED_LOCATION "${FreeXL_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${FreeXL_INCLUDE_DIR}")
endif()
mark_as_advanced(FreeXL_INCLUDE_DIR FreeXL_LIBRARY)
