# morvex_expose_layer(NAME FOLDER RESULT)
#
# Makes the headers of src/FOLDER reachable as "FOLDER/..." through an include directory that holds
# no other layer, and stores this directory in the variable RESULT.
function(morvex_expose_layer name folder result)
    set(include_dir "${PROJECT_BINARY_DIR}/layers/${name}")
    cmake_path(GET folder PARENT_PATH parent)
    file(MAKE_DIRECTORY "${include_dir}/${parent}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${folder}" "${include_dir}/${folder}" SYMBOLIC)
    set(${result} "${include_dir}" PARENT_SCOPE)
endfunction()

# morvex_add_layer(NAME [INJECTED] FOLDER folder DEPENDS layers... SOURCES files... LINK libraries...)
#
# Adds the object library morvex_NAME of the sources below the current directory, which is
# src/FOLDER, by default src/NAME. A layer sees its
# own headers and those of the layers it depends on and no others: each layer's folder is reached
# through an include directory of its own, so that an upward include does not compile.
# With INJECTED there is morvex_NAME_injected too, for the agent: the same objects, but never
# with sanitizers, which the programs that the agent gets into don't have.
function(morvex_add_layer name)
    cmake_parse_arguments(PARSE_ARGV 1 layer "INJECTED" "FOLDER" "DEPENDS;SOURCES;LINK")
    if(NOT layer_FOLDER)
        set(layer_FOLDER "${name}")
    endif()
    morvex_expose_layer(${name} "${layer_FOLDER}" include_dir)
    morvex_add_layer_objects(morvex_${name} "" morvex_settings)
    if(NOT layer_INJECTED)
        return()
    endif()
    if(MORVEX_SANITIZE)
        morvex_add_layer_objects(morvex_${name}_injected _injected morvex_plain_settings)
    else()
        add_library(morvex_${name}_injected ALIAS morvex_${name})
    endif()
endfunction()

# The object library of a layer whose arguments are those of the caller.
function(morvex_add_layer_objects target dependency_suffix settings)
    add_library(${target} OBJECT ${layer_SOURCES})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${include_dir}>"
        "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>")
    target_compile_definitions(${target} PRIVATE
        morvex_EXPORTS
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
        QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050f00)
    target_link_libraries(${target} PUBLIC ${layer_LINK} PRIVATE ${settings})
    foreach(dependency IN LISTS layer_DEPENDS)
        target_link_libraries(${target} PUBLIC morvex_${dependency}${dependency_suffix})
    endforeach()
endfunction()
