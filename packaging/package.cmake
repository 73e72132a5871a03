# What CPack says of the packages: Debian's from Linux, a ZIP and an installer from Windows. To be read ahead of the
# install rules, which name the components.

set(TARNWELL_MAINTAINER "Tarnwell developers <developers@tarnwell.home.arpa>" CACHE STRING "Who answers for a package")
set(CPACK_PACKAGE_CONTACT ${TARNWELL_MAINTAINER})
set(CPACK_PACKAGE_VENDOR "Tarnwell")
set(CPACK_PACKAGE_NAME tarnwell)
set(CPACK_PACKAGE_INSTALL_DIRECTORY Tarnwell)
set(CPACK_PACKAGE_FILE_NAME tarnwell-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_CHECKSUM SHA256)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)

if(WIN32)
  include(windows/package.cmake)
else()
  include(linux/package.cmake)
endif()
