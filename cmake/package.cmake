# SPDX-License-Identifier: MIT
# Debian packages: the library, the files for developers, and the tool. "./dev package" builds and tests them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "fwlib authors <fwlib@localhost>" CACHE STRING "Maintainer of the packages")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development tool)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(library libfwlib${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
file(WRITE ${PROJECT_BINARY_DIR}/packaging/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "Programs build pipelines of elements, which hand objects to each other by
calls. Plugins bring further elements, and text files describe pipelines.

This package contains the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libfwlib-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Programs build pipelines of elements, which hand objects to each other by
calls. Plugins bring further elements, and text files describe pipelines.

This package contains the headers, and files for CMake and pkg-config.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME fwpipe)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS "graphviz, libfwlib-dev")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "A pipe file describes a pipeline of elements, which record, replay, convert
and show objects. The program runs such files, reports their mistakes, draws
and tests them, and shows and repairs recordings.

Manual pages, documents, examples and completions are included.")

# The documents of each package: its licence, and the list of changes.
find_program(FWLIB_GZIP gzip)
set(doc ${PROJECT_BINARY_DIR}/packaging)
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REGEX REPLACE "\n" "\n " licence "${licence}")
string(REGEX MATCH "Copyright [^\n]*" copyright "${licence}")
string(REGEX REPLACE "^Copyright (\\(c\\) )?" "" copyright "${copyright}")
file(WRITE ${doc}/copyright "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: fwlib

Files: *
Copyright: ${copyright}
License: Expat
 ${licence}
")
foreach(part IN ITEMS library:${library} development:libfwlib-dev tool:fwpipe)
  string(REPLACE ":" ";" part ${part})
  list(GET part 0 component)
  list(GET part 1 name)
  string(TOUPPER ${component} upper)
  file(WRITE ${doc}/${name}/changelog "${name} (${PROJECT_VERSION}) unstable; urgency=medium

  * The changes are in CHANGELOG.md of the sources.

 -- ${CPACK_PACKAGE_CONTACT}  Thu, 01 Jan 2026 00:00:00 +0000
")
  execute_process(COMMAND ${FWLIB_GZIP} -9nf ${doc}/${name}/changelog)
  install(FILES ${doc}/copyright ${doc}/${name}/changelog.gz DESTINATION share/doc/${name} COMPONENT ${component})
endforeach()
install(DIRECTORY examples DESTINATION share/doc/fwpipe COMPONENT tool)
install(DIRECTORY docs/ DESTINATION share/doc/fwpipe COMPONENT tool FILES_MATCHING PATTERN "*.md")
include(CPack)
