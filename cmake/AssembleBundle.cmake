# Lays out the portable bundle and packs it:
#   Corvane.app/share/corvane/bundle.json          the main bundle's information
#   Corvane.app/bin/corvanectl, Corvane.app/bin/corvane-settings (the main bundle's program)
#   Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app/
#       bin/corvane-agent (the front), libexec/corvane-agent (the desktop program),
#       share/corvane/bundle.json, share/corvane/translations/*.qm,
#       <MODULE_DIR>/corvane-update-archive.so (the archive module the agent installs updates with)
# and <OUTPUT_DIR>/Corvane-<VERSION>.tar.xz holding Corvane.app.
#
# cmake -D OUTPUT_DIR=… -D AGENT_PROGRAM=… -D ARCHIVE_MODULE=… -D MODULE_DIR=… -D CTL_PROGRAM=…
#       -D TRANSLATIONS_DIR=…
#       -D APP_ID=… -D AGENT_ID=… -D VERSION=… -D BUILD=… [-D FEED_URL=…] [-D PUBLIC_KEY=…]
#       [-D DESKTOP_AGENT_PROGRAM=…] [-D SETTINGS_PROGRAM=…] [-D PACK=OFF] -P AssembleBundle.cmake
# DESKTOP_AGENT_PROGRAM defaults to libexec/<name> beside AGENT_PROGRAM, as the build tree has it.
# `make bundle` runs it with the build's values; the end-to-end update test runs it to make
# the installed and the offered bundle.
cmake_minimum_required(VERSION 3.25)

foreach(_required IN ITEMS OUTPUT_DIR AGENT_PROGRAM ARCHIVE_MODULE MODULE_DIR CTL_PROGRAM
                           TRANSLATIONS_DIR APP_ID AGENT_ID VERSION BUILD)
    if(NOT DEFINED ${_required} OR "${${_required}}" STREQUAL "")
        message(FATAL_ERROR "AssembleBundle: ${_required} is not set")
    endif()
endforeach()

# The values reach JSON as string literals.
function(json_string out value)
    string(REPLACE "\\" "\\\\" value "${value}")
    string(REPLACE "\"" "\\\"" value "${value}")
    set(${out} "\"${value}\"" PARENT_SCOPE)
endfunction()

set(_app "${OUTPUT_DIR}/Corvane.app")
set(_agent "${_app}/Contents/Library/LoginItems/CorvaneAgent.app")
# A bundle is made whole or not at all: start from nothing.
file(REMOVE_RECURSE "${_app}")
file(MAKE_DIRECTORY "${_app}/bin" "${_app}/share/corvane" "${_agent}/bin" "${_agent}/libexec"
    "${_agent}/share/corvane/translations")

file(COPY "${CTL_PROGRAM}" DESTINATION "${_app}/bin")
# The settings window is what the agent's Settings button starts in the bundle.
set(_app_executable "")
if(DEFINED SETTINGS_PROGRAM AND NOT SETTINGS_PROGRAM STREQUAL "")
    file(COPY "${SETTINGS_PROGRAM}" DESTINATION "${_app}/bin")
    get_filename_component(_settings_program "${SETTINGS_PROGRAM}" NAME)
    json_string(_settings_executable "bin/${_settings_program}")
    set(_app_executable "\n    \"executable\": ${_settings_executable},")
endif()
file(COPY "${AGENT_PROGRAM}" DESTINATION "${_agent}/bin")
# Where the agent looks for it: the same place relative to its bundle as in an installed prefix.
file(COPY "${ARCHIVE_MODULE}" DESTINATION "${_agent}/${MODULE_DIR}")
# The front hands every mode but the headless ones to the desktop program in libexec/.
if(NOT DEFINED DESKTOP_AGENT_PROGRAM OR DESKTOP_AGENT_PROGRAM STREQUAL "")
    get_filename_component(_front_folder "${AGENT_PROGRAM}" DIRECTORY)
    get_filename_component(_front_name "${AGENT_PROGRAM}" NAME)
    set(DESKTOP_AGENT_PROGRAM "${_front_folder}/libexec/${_front_name}")
endif()
if(NOT EXISTS "${DESKTOP_AGENT_PROGRAM}")
    message(FATAL_ERROR "AssembleBundle: no desktop program at ${DESKTOP_AGENT_PROGRAM}")
endif()
file(COPY "${DESKTOP_AGENT_PROGRAM}" DESTINATION "${_agent}/libexec")
file(GLOB _translations "${TRANSLATIONS_DIR}/*.qm")
file(COPY ${_translations} DESTINATION "${_agent}/share/corvane/translations")
if(DEFINED _settings_program)
    # The window's texts, from its own bundle as the agent's come from the agent's.
    file(COPY ${_translations} DESTINATION "${_app}/share/corvane/translations")
endif()

foreach(_name IN ITEMS APP_ID AGENT_ID VERSION BUILD FEED_URL PUBLIC_KEY)
    json_string(_${_name} "${${_name}}")
endforeach()
get_filename_component(_agent_program "${AGENT_PROGRAM}" NAME)
json_string(_executable "bin/${_agent_program}")

file(WRITE "${_app}/share/corvane/bundle.json" "{
    \"identifier\": ${_APP_ID},${_app_executable}
    \"version\": ${_VERSION},
    \"build\": ${_BUILD},
    \"SUFeedURL\": ${_FEED_URL},
    \"SUPublicEDKey\": ${_PUBLIC_KEY},
    \"developmentLocalization\": \"en\"
}
")
file(WRITE "${_agent}/share/corvane/bundle.json" "{
    \"identifier\": ${_AGENT_ID},
    \"executable\": ${_executable},
    \"version\": ${_VERSION},
    \"build\": ${_BUILD},
    \"developmentLocalization\": \"en\"
}
")

if(DEFINED PACK AND NOT PACK)
    message(STATUS "Bundle: ${_app}")
    return()
endif()
set(_archive "${OUTPUT_DIR}/Corvane-${VERSION}.tar.xz")
file(REMOVE "${_archive}")
execute_process(COMMAND "${CMAKE_COMMAND}" -E tar cJf "${_archive}" Corvane.app
    WORKING_DIRECTORY "${OUTPUT_DIR}" RESULT_VARIABLE _packed)
if(NOT _packed EQUAL 0)
    message(FATAL_ERROR "AssembleBundle: cannot pack ${_archive}")
endif()
message(STATUS "Bundle: ${_app}, archive: ${_archive}")
