# The HTML manual: Doxygen over the installed headers, with the README as
# its front page, the guide's pages (docs/guide, quoting the programs under
# examples/guide) and Graphviz class diagrams. `cmake --build build
# --target docs` writes build/docs/html; ROVANI_BUILD_DOCS makes it part of
# every build and installs it. The warnings land in build/docs/warnings.log,
# which scripts/check-docs requires to be empty.

option(ROVANI_BUILD_DOCS "Build the HTML reference manual with every build and install it" OFF)

if(ROVANI_BUILD_DOCS)
  find_package(Doxygen REQUIRED COMPONENTS dot)
else()
  find_package(Doxygen COMPONENTS dot)
endif()

if(NOT DOXYGEN_FOUND)
  message(STATUS "Doxygen or Graphviz dot not found: no docs target")
  return()
endif()

# The headers are exactly the library's installed set.
get_target_property(_rovani_headers rovani HEADER_SET)
set(ROVANI_DOCS_HEADER_BASE ${PROJECT_SOURCE_DIR}/SharedCode/Frameworks)
set(_rovani_header_paths)
foreach(_h IN LISTS _rovani_headers)
  cmake_path(ABSOLUTE_PATH _h BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/SharedCode/Frameworks/Rovani
             NORMALIZE OUTPUT_VARIABLE _abs)
  list(APPEND _rovani_header_paths ${_abs})
endforeach()
list(JOIN _rovani_header_paths " " ROVANI_DOCS_INPUT)
# The guide: its index first, so that it heads the pages it lists.
set(_rovani_guide_pages index getting-started ownership errors stores)
list(TRANSFORM _rovani_guide_pages PREPEND ${PROJECT_SOURCE_DIR}/docs/guide/)
list(TRANSFORM _rovani_guide_pages APPEND .md)
list(JOIN _rovani_guide_pages " " ROVANI_DOCS_GUIDE)
file(GLOB _rovani_guide_examples CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/guide/*.cpp)

set(ROVANI_DOCS_OUTPUT ${PROJECT_BINARY_DIR}/docs)
set(ROVANI_DOCS_WARNINGS ${ROVANI_DOCS_OUTPUT}/warnings.log)
get_filename_component(ROVANI_DOCS_DOT_DIR ${DOXYGEN_DOT_EXECUTABLE} DIRECTORY)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${ROVANI_DOCS_OUTPUT}/Doxyfile @ONLY)

# Doxygen leaves pages of removed names behind, so each run starts afresh.
set(_rovani_docs_stamp ${ROVANI_DOCS_OUTPUT}/html/index.html)
add_custom_command(
  OUTPUT ${_rovani_docs_stamp} ${ROVANI_DOCS_WARNINGS}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${ROVANI_DOCS_OUTPUT}/html
  COMMAND Doxygen::doxygen ${ROVANI_DOCS_OUTPUT}/Doxyfile
  # Graphviz's checksums and image maps only serve Doxygen's next run (the
  # SVG diagrams carry their own links); the manual does without them.
  COMMAND find ${ROVANI_DOCS_OUTPUT}/html ( -name *.md5 -o -name *.map ) -delete
  DEPENDS ${_rovani_header_paths} ${PROJECT_SOURCE_DIR}/README.md
          ${_rovani_guide_pages} ${_rovani_guide_examples}
          ${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${ROVANI_DOCS_OUTPUT}/Doxyfile
  WORKING_DIRECTORY ${ROVANI_DOCS_OUTPUT}
  COMMENT "Writing the reference manual into ${ROVANI_DOCS_OUTPUT}/html"
  VERBATIM)

if(ROVANI_BUILD_DOCS)
  add_custom_target(docs ALL DEPENDS ${_rovani_docs_stamp})
  include(GNUInstallDirs)
  install(DIRECTORY ${ROVANI_DOCS_OUTPUT}/html/
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/rovani-doc/html)
else()
  add_custom_target(docs DEPENDS ${_rovani_docs_stamp})
endif()
