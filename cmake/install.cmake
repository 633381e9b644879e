# SPDX-License-Identifier: MIT
# The files that `cmake --install` installs. None contains the prefix, so the installed tree may be moved.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/fwlib)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS fwlib EXPORT fwlib
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  FILE_SET HEADERS COMPONENT development)
if(NOT FWLIB_PACKAGE)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
endif()

set(zsh_dir ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
if(FWLIB_PACKAGE)
  set(zsh_dir ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions) # where Debian's zsh looks
endif()
if(TARGET fwpipe)
  install(TARGETS fwpipe COMPONENT tool)
  install(FILES tools/fwpipe/shell/fwpipe.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME fwpipe COMPONENT tool)
  install(FILES tools/fwpipe/shell/_fwpipe DESTINATION ${zsh_dir} COMPONENT tool)
  install(FILES tools/editors/fwpipe.vim DESTINATION ${CMAKE_INSTALL_DATADIR}/vim/vimfiles/syntax COMPONENT tool)
endif()

# The library needs no other package, so the list of targets is the whole configuration. While the major version is 0,
# a new minor version may be incompatible.
install(EXPORT fwlib FILE fwlibConfig.cmake NAMESPACE fwlib:: DESTINATION ${package_dir} COMPONENT development)
write_basic_package_version_file(fwlibConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/fwlibConfigVersion.cmake DESTINATION ${package_dir} COMPONENT development)

file(RELATIVE_PATH pc_to_lib ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH pc_to_include ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(packaging/fwlib.pc.in fwlib.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/fwlib.pc DESTINATION ${pkgconfig_dir} COMPONENT development)
