# What an installation holds besides the library, its headers and the
# program: a CMake package configuration with the imported target
# Rovani::rovani, a pkg-config file and the program's manual page. The
# Debian packages (debian/) are made from this installation.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(ROVANI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Rovani)
install(EXPORT RovaniTargets NAMESPACE Rovani:: DESTINATION ${ROVANI_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/RovaniConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/RovaniConfig.cmake
                              INSTALL_DESTINATION ${ROVANI_CMAKE_DIR})
# 0.x releases promise nothing across minor versions.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/RovaniConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/RovaniConfig.cmake
              ${PROJECT_BINARY_DIR}/RovaniConfigVersion.cmake
        DESTINATION ${ROVANI_CMAKE_DIR})

# The pkg-config file finds its prefix relative to itself, so a staged or
# relocated installation works as well as the packaged one.
set(ROVANI_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH ROVANI_PC_TO_PREFIX /prefix/${ROVANI_PC_DIR} /prefix)
string(REGEX REPLACE "/$" "" ROVANI_PC_TO_PREFIX "${ROVANI_PC_TO_PREFIX}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/rovani.pc.in ${PROJECT_BINARY_DIR}/rovani.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/rovani.pc DESTINATION ${ROVANI_PC_DIR})

install(FILES ${PROJECT_SOURCE_DIR}/tools/rovani/rovani.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
# Where bash-completion loads a command's completion from on first use.
install(FILES ${PROJECT_SOURCE_DIR}/tools/rovani/rovani.bash-completion
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME rovani)
