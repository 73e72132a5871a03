set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL tarnwell)
if(TARNWELL_SIMULATOR)
  list(APPEND CPACK_COMPONENTS_ALL vorel-sim)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/open_folders.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# Each description below begins with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
# script/release says what a commit's packages are called; without its word they are the version's own.
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(TARNWELL_CHANGED ${TARNWELL_RELEASE_DATE})
if(EXISTS ${PROJECT_SOURCE_DIR}/packaging/release)
  file(READ ${PROJECT_SOURCE_DIR}/packaging/release release)
  string(REGEX MATCH "^([^ ]+) ([0-9]+)" release "${release}")
  set(CPACK_DEBIAN_PACKAGE_VERSION ${CMAKE_MATCH_1})
  set(TARNWELL_CHANGED @${CMAKE_MATCH_2})
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_TARNWELL_PACKAGE_NAME tarnwell)
set(CPACK_DEBIAN_TARNWELL_PACKAGE_SECTION electronics)
# Without one of these fonts the toolkit may find none at all; xdg-open opens the manual.
# The library that sounds alarms comes from the link; what takes it to a sound server is a package of its own.
set(CPACK_DEBIAN_TARNWELL_PACKAGE_DEPENDS "fonts-liberation | fonts-liberation2 | fonts-dejavu-core, xdg-utils")
set(CPACK_DEBIAN_TARNWELL_PACKAGE_RECOMMENDS "www-browser, qt6-wayland, libcanberra-pulse")
set(CPACK_DEBIAN_TARNWELL_PACKAGE_SUGGESTS "vorel-sim")
set(CPACK_COMPONENT_TARNWELL_DESCRIPTION
    "console for solid-state power amplifiers
Tarnwell watches and configures one solid-state power amplifier of the Vorel
family, or one 1:1 or 1:2 redundancy controller that switches such amplifiers,
over one serial line (RS-232 or RS-422/485). It shows operating state, RF
level, temperatures and alarms, sends the operator's commands, acknowledges
and clears alarms, edits every stored setting and the calibration tables, and
saves snapshots.

The companion program vorel-snapshot checks, compares, plots and exports these
snapshots; vorel-line records, reads, plots and replays what goes between the
console and its device.")

set(CPACK_DEBIAN_VOREL-SIM_PACKAGE_NAME vorel-sim)
set(CPACK_DEBIAN_VOREL-SIM_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_VOREL-SIM_PACKAGE_SUGGESTS "tarnwell")
set(CPACK_COMPONENT_VOREL-SIM_DESCRIPTION
    "simulated power amplifier on a pseudo-terminal
vorel-sim stands in for a solid-state power amplifier of the Vorel family, or
for a redundancy controller: it opens a pseudo-terminal and answers there as
the device would, so that the Tarnwell console can be tried, shown and taught
without one. Alarms, lockout, levels, silence and faults of the line can be
made to order.")
