# The floors of the house, and who may stand on whom. An edge that isn't in this table stops the configuration.
# Floors 0 to 5 link nothing but the standard library; only floors 6 and 7 name a foreign library (LINKS).

set(LAYER_EDGES_sdk "")
set(LAYER_EDGES_util "")
set(LAYER_EDGES_halden util)
set(LAYER_EDGES_toolkit util)
set(LAYER_EDGES_platform util)
set(LAYER_EDGES_directory util halden toolkit platform)
set(LAYER_EDGES_formatters util toolkit platform)
set(LAYER_EDGES_views util toolkit platform)
set(LAYER_EDGES_plugins sdk util halden toolkit platform directory formatters views)
set(LAYER_EDGES_auth util halden toolkit platform directory formatters views)
set(LAYER_EDGES_services util halden toolkit platform directory formatters views plugins auth)
set(LAYER_EDGES_searchpolicy ${LAYER_EDGES_services})
set(LAYER_EDGES_diagnostics ${LAYER_EDGES_services})
set(LAYER_EDGES_app sdk ${LAYER_EDGES_services} services searchpolicy diagnostics)
# Floor 6: adapters. They know the interfaces that they implement, and nothing of each other.
set(LAYER_EDGES_plist util platform)
set(LAYER_EDGES_haldend sdk util halden platform)
set(LAYER_EDGES_linux sdk util platform)
set(LAYER_EDGES_qt util toolkit platform views)
# The program's own plug-ins talk to it through the boundary alone, like anybody's; for their windows they draw with
# the program's cells and fields.
set(LAYER_EDGES_connectors sdk util toolkit views qt)
# Floor 7: the programs, where everything is put together.
set(LAYER_EDGES_desktop ${LAYER_EDGES_app} app plist haldend linux qt)

set(LAYERS_WITH_FOREIGN_LIBRARIES plist haldend linux qt connectors desktop)

function(layer_check name)
    cmake_parse_arguments(ARG "" "" "USES;LINKS" ${ARGN})
    if(NOT DEFINED LAYER_EDGES_${name})
        message(FATAL_ERROR "${name} is no layer; the layers stand in cmake/Layers.cmake")
    endif()
    foreach(used IN LISTS ARG_USES)
        if(NOT used IN_LIST LAYER_EDGES_${name})
            message(FATAL_ERROR "layer ${name} may not use ${used}; allowed: ${LAYER_EDGES_${name}}")
        endif()
    endforeach()
    if(ARG_LINKS AND NOT name IN_LIST LAYERS_WITH_FOREIGN_LIBRARIES)
        message(FATAL_ERROR "layer ${name} may link nothing but the standard library, not ${ARG_LINKS}")
    endif()
endfunction()

# Warnings, the standard and the sanitizers for one of our targets.
function(corvane_target name)
    target_compile_options(${name} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
    if(CORVANE_SANITIZERS)
        target_compile_options(${name} PRIVATE -fsanitize=${CORVANE_SANITIZERS} -fno-omit-frame-pointer)
        target_link_options(${name} PUBLIC -fsanitize=${CORVANE_SANITIZERS})
    endif()
endfunction()

# add_layer(name USES layer… LINKS target…): one folder under src/, one library of all its .cpp files.
# A folder of headers alone becomes an interface library. LINKS is for the layers with foreign libraries.
function(add_layer name)
    cmake_parse_arguments(ARG "" "" "USES;LINKS" ${ARGN})
    layer_check(${name} USES ${ARG_USES} LINKS ${ARG_LINKS})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    list(TRANSFORM ARG_USES PREPEND corvane-)
    if(sources)
        add_library(corvane-${name} STATIC ${sources})
        target_include_directories(corvane-${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(corvane-${name} PUBLIC ${ARG_USES} PRIVATE ${ARG_LINKS})
        corvane_target(corvane-${name})
    else()
        add_library(corvane-${name} INTERFACE)
        target_include_directories(corvane-${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(corvane-${name} INTERFACE ${ARG_USES})
    endif()
endfunction()
