# The floors of the house, and who may stand on whom. An edge that isn't in this table stops the configuration.
# Floors 0 to 5 link nothing but the standard library; only floors 6 and 7 name a foreign library (LINKS). A layer is
# a folder under src/; a room is a folder inside one, and a layer of its own.

set(LAYER_EDGES_sdk "")
set(LAYER_EDGES_util "")
set(LAYER_EDGES_halden util)
set(LAYER_EDGES_toolkit util)
set(LAYER_EDGES_platform util)
set(LAYER_EDGES_directory util halden toolkit platform)
set(LAYER_EDGES_formatters util toolkit platform)
set(LAYER_EDGES_views util toolkit platform)
set(LAYER_EDGES_forms util toolkit platform formatters)
set(LAYER_EDGES_plugins sdk util halden toolkit platform directory formatters views forms)
set(LAYER_EDGES_auth util halden toolkit platform directory formatters views)
set(LAYER_EDGES_services util halden toolkit platform directory formatters views forms plugins)
set(LAYER_EDGES_searchpolicy ${LAYER_EDGES_services})
set(LAYER_EDGES_app sdk ${LAYER_EDGES_services} auth services searchpolicy)
# Floor 6: adapters. They know the interfaces that they implement, and nothing of each other.
set(LAYER_EDGES_plist util platform)
set(LAYER_EDGES_linux sdk util platform)
# The directory service, room by room from its ground floor up; its front door is the folder itself.
set(LAYER_EDGES_haldend/storage util halden)
set(LAYER_EDGES_haldend/files util haldend/storage)
set(LAYER_EDGES_haldend/records util halden haldend/storage)
set(LAYER_EDGES_haldend/sssd util haldend/storage)
set(LAYER_EDGES_haldend/policy util halden platform haldend/storage haldend/files)
set(LAYER_EDGES_haldend/ldap sdk util haldend/storage haldend/files haldend/records)
set(LAYER_EDGES_haldend/trial util haldend/storage haldend/files haldend/ldap)
set(LAYER_EDGES_haldend/machine util halden platform haldend/storage haldend/files haldend/sssd haldend/policy)
set(LAYER_EDGES_haldend/servers sdk util haldend/storage haldend/files haldend/ldap)
set(LAYER_EDGES_haldend/engine util halden platform haldend/storage haldend/policy haldend/machine haldend/servers)
set(LAYER_EDGES_haldend/nodes sdk util halden platform haldend/storage haldend/files haldend/records haldend/policy
    haldend/machine haldend/ldap haldend/servers haldend/engine)
set(LAYER_EDGES_haldend util halden platform haldend/storage haldend/engine haldend/nodes)
# What is made of Qt. The folder itself is the ground floor here: text, keys and the guard around handlers.
set(LAYER_EDGES_qt util toolkit platform)
set(LAYER_EDGES_qt/look util toolkit qt)
set(LAYER_EDGES_qt/platform util toolkit platform qt)
set(LAYER_EDGES_qt/widgets util toolkit platform views qt qt/look)
set(LAYER_EDGES_qt/adapters util toolkit platform views qt qt/look qt/platform qt/widgets)
set(LAYER_EDGES_qt/forms util toolkit platform views forms qt qt/look qt/widgets)
set(LAYER_EDGES_qt/windows util toolkit platform views qt qt/look qt/platform qt/widgets qt/adapters)
# The program's own plug-ins talk to it through the boundary alone, like anybody's.
set(LAYER_EDGES_connectors sdk)
# Floor 7: the programs, where everything is put together.
set(LAYER_EDGES_desktop ${LAYER_EDGES_app} app plist linux haldend haldend/trial haldend/engine
    qt qt/look qt/platform qt/widgets qt/adapters qt/forms qt/windows)

# Those that may link foreign libraries and use the system's headers; the others have the standard library alone.
set(LAYERS_WITH_FOREIGN_LIBRARIES plist linux haldend/storage haldend/files haldend/sssd haldend/ldap haldend/trial
    haldend/machine haldend/servers haldend/engine haldend qt qt/look qt/platform qt/widgets qt/adapters qt/forms qt/windows
    desktop)

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

# layer_targets(out layer…): the names of the layers' libraries; a room's has a dash where its folder has a slash.
function(layer_targets out)
    list(TRANSFORM ARGN REPLACE "/" "-" OUTPUT_VARIABLE targets)
    list(TRANSFORM targets PREPEND corvane-)
    set(${out} ${targets} PARENT_SCOPE)
endfunction()

# add_layer(name USES layer… LINKS target…): one folder under src/, one library of all its .cpp files. `name` is
# the folder's path there. A folder of headers alone becomes an interface library. LINKS is for the layers with
# foreign libraries.
function(add_layer name)
    cmake_parse_arguments(ARG "" "" "USES;LINKS" ${ARGN})
    layer_check(${name} USES ${ARG_USES} LINKS ${ARG_LINKS})
    layer_targets(target ${name})
    layer_targets(used ${ARG_USES})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    if(sources)
        add_library(${target} STATIC ${sources})
        target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${target} PUBLIC ${used} PRIVATE ${ARG_LINKS})
        corvane_target(${target})
    else()
        add_library(${target} INTERFACE)
        target_include_directories(${target} INTERFACE ${PROJECT_SOURCE_DIR}/src)
        target_link_libraries(${target} INTERFACE ${used})
    endif()
endfunction()
