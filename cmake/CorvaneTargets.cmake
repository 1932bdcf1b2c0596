# Shared compile settings and the guard that keeps the logic free of Qt.

set(CORVANE_WARNINGS
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Wcast-qual -Wformat=2
    -Wimplicit-fallthrough -Wmissing-declarations
    # Designated initializers leave out the members that keep their defaults, on purpose.
    -Wno-missing-field-initializers)
# Members carry no prefix, so a constructor parameter may share a member's name; only a local
# hiding another local is a fault worth stopping the build for. Clang's -Wshadow already
# leaves constructor parameters alone.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND CORVANE_WARNINGS -Wshadow=local)
else()
    list(APPEND CORVANE_WARNINGS -Wshadow)
endif()
# Off by default so that a packager's newer compiler, with warnings we have not met yet, still
# builds a release; `make test` and CI turn it on, so no warning lands unnoticed.
if(CORVANE_WERROR)
    list(APPEND CORVANE_WARNINGS -Werror)
endif()

set(CORVANE_SANITIZE_FLAGS "")
if(CORVANE_SANITIZE)
    string(REPLACE "," ";" _sanitizers "${CORVANE_SANITIZE}")
    foreach(_sanitizer IN LISTS _sanitizers)
        list(APPEND CORVANE_SANITIZE_FLAGS "-fsanitize=${_sanitizer}")
    endforeach()
    list(APPEND CORVANE_SANITIZE_FLAGS -fno-omit-frame-pointer -fno-sanitize-recover=all)
endif()

# A fuzzing build instruments every target of ours for coverage, so that libFuzzer sees the
# branches inside the libraries its harnesses call, not only those of the harnesses.
if(CORVANE_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "CORVANE_BUILD_FUZZERS needs clang (libFuzzer): configure with CMAKE_CXX_COMPILER=clang++")
    endif()
    list(APPEND CORVANE_SANITIZE_FLAGS -fsanitize=fuzzer-no-link)
endif()

# Applies the project's warnings, sanitizers and include root to a target of ours.
function(corvane_target target)
    target_compile_options(${target} PRIVATE ${CORVANE_WARNINGS} ${CORVANE_SANITIZE_FLAGS})
    target_link_options(${target} PRIVATE ${CORVANE_SANITIZE_FLAGS})
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
endfunction()

# Collects every library a target links, directly or through other targets.
function(_corvane_collect_links target out)
    set(_seen ${${out}})
    foreach(_property LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
        get_target_property(_libs ${target} ${_property})
        if(NOT _libs)
            continue()
        endif()
        foreach(_lib IN LISTS _libs)
            if(_lib IN_LIST _seen)
                continue()
            endif()
            list(APPEND _seen ${_lib})
            if(TARGET ${_lib})
                _corvane_collect_links(${_lib} _seen)
            endif()
        endforeach()
    endforeach()
    set(${out} ${_seen} PARENT_SCOPE)
endfunction()

# Fails the configuration when a framework-free target links Qt or one of its files
# includes a Qt header: the logic must build and test without a display or a bus.
function(corvane_check_framework_free)
    foreach(target IN LISTS ARGN)
        set(_links "")
        _corvane_collect_links(${target} _links)
        foreach(_lib IN LISTS _links)
            if(_lib MATCHES "^Qt[0-9]*::" OR _lib MATCHES "(^|/)libQt")
                message(FATAL_ERROR "${target} must not link Qt, but links ${_lib}")
            endif()
        endforeach()
        get_target_property(_dir ${target} SOURCE_DIR)
        file(GLOB _files "${_dir}/*.h" "${_dir}/*.cpp")
        foreach(_file IN LISTS _files)
            file(STRINGS "${_file}" _qt_includes REGEX "^[ \t]*#[ \t]*include[ \t]*[<\"]Q")
            if(_qt_includes)
                message(FATAL_ERROR "${_file} belongs to the framework-free ${target} but includes Qt")
            endif()
        endforeach()
    endforeach()
endfunction()

# Fails the configuration when `target` links or includes one of the layers named after
# DOES_NOT_USE: the Platform providers and Foundation sit below the logic and must not reach up.
function(corvane_check_layer target)
    cmake_parse_arguments(PARSE_ARGV 1 _layer "" "" "DOES_NOT_USE")
    set(_links "")
    _corvane_collect_links(${target} _links)
    get_target_property(_dir ${target} SOURCE_DIR)
    file(GLOB _files "${_dir}/*.h" "${_dir}/*.cpp")
    foreach(_layer IN LISTS _layer_DOES_NOT_USE)
        if(_layer IN_LIST _links)
            message(FATAL_ERROR "${target} must not link ${_layer}")
        endif()
        foreach(_file IN LISTS _files)
            file(STRINGS "${_file}" _includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"${_layer}/")
            if(_includes)
                message(FATAL_ERROR "${_file} belongs to ${target} but includes from ${_layer}/")
            endif()
        endforeach()
    endforeach()
endfunction()
