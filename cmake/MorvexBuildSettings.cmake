# Compiler settings of the whole build. When Morvex is part of another project, that project's own
# settings for compiler launcher and build type stay as they are.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(PROJECT_IS_TOP_LEVEL)
    if(NOT CMAKE_BUILD_TYPE)
        set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
    endif()
    find_program(CCACHE ccache)
    if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
    endif()
endif()

# The build tree is a runnable prefix: bin/morvexrunner, lib, etc.
set(MORVEX_BUILD_PREFIX "${PROJECT_BINARY_DIR}/prefix")

# What gets into other programs has no more than these.
add_library(morvex_plain_settings INTERFACE)
target_compile_options(morvex_plain_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    # Qt's own logging macros.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    $<$<BOOL:${MORVEX_WARNINGS_AS_ERRORS}>:-Werror>)
add_library(morvex_settings INTERFACE)
target_link_libraries(morvex_settings INTERFACE morvex_plain_settings)

if(MORVEX_SANITIZE)
    list(JOIN MORVEX_SANITIZE "," sanitizers)
    set(flags -fsanitize=${sanitizers} -fno-omit-frame-pointer)
    if("undefined" IN_LIST MORVEX_SANITIZE)
        list(APPEND flags -fno-sanitize-recover=undefined)
        if(MORVEX_FUZZ)
            # The vptr check asks for type information that hidden Qt classes don't export.
            list(APPEND flags -fno-sanitize=vptr)
        endif()
    endif()
    target_compile_options(morvex_settings INTERFACE ${flags})
    target_link_options(morvex_settings INTERFACE ${flags})
else()
    # But for what takes symbols from the program that loads it.
    target_link_options(morvex_settings INTERFACE
        $<$<NOT:$<BOOL:$<TARGET_PROPERTY:MORVEX_COMPLETED_BY_PROGRAM>>>:LINKER:--no-undefined>)
endif()

if(MORVEX_COVERAGE)
    target_compile_options(morvex_settings INTERFACE --coverage)
    target_link_options(morvex_settings INTERFACE --coverage)
endif()

# morvex_has_windows(TARGET)
#
# For programs with a QApplication, so that leak checks see the leaks of this project alone.
function(morvex_has_windows target)
    if("address" IN_LIST MORVEX_SANITIZE)
        target_sources(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/leaksuppressions.cpp")
    endif()
endfunction()
