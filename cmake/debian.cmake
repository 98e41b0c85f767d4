# Debian packages, one a component, by `cpack` in the build folder.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lq-data)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_PACKAGE_CONTACT "The lq_data developers <lq_data@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime development)
if(LQ_DATA_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# The libraries depend on what they are linked with, but for each other.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# What is linked with the libraries depends on this version or a later one. There is no variable for
# one component; packages without libraries get no file.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(about "data and model library for IEC 61131-3 environments")
set(more "lq_data is for programs that edit, check and compile programs of programmable
logic controllers: types and constants, a scanner, the tables of a compiler,
records of interfaces, and a reader of PLCopen XML.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liblq-data${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "${about}: libraries\n${more}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liblq-data-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "${about}: headers\n${more}\nThis package has the headers, and examples that use them.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
if(NOT BUILD_SHARED_LIBS)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libexpat1-dev, libinih-dev")
endif()
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME lq)
set(CPACK_DEBIAN_TOOL_DESCRIPTION
    "command-line tool for IEC 61131-3 projects\n${more}\nThis package has lq, which translates, shows and checks projects.")
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION devel)

# -- What each package has to have ----------------------------------------------------------------

find_program(LQ_GZIP gzip REQUIRED)
set(debian ${CMAKE_CURRENT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${debian})
string(TIMESTAMP LQ_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian/changelog.in ${debian}/changelog.Debian @ONLY)
configure_file(CHANGELOG.md ${debian}/changelog COPYONLY)
foreach(file changelog changelog.Debian)
  execute_process(COMMAND ${LQ_GZIP} -9nc ${debian}/${file} OUTPUT_FILE ${debian}/${file}.gz
                  COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES cmake/debian/copyright ${debian}/changelog.gz ${debian}/changelog.Debian.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
  install(FILES cmake/debian/${component}.lintian RENAME ${package}
          DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides COMPONENT ${component})
endforeach()

include(CPack)
set(shared_runtime)
if(BUILD_SHARED_LIBS)
  set(shared_runtime DEPENDS runtime)
endif()
cpack_add_component(runtime)
cpack_add_component(development ${shared_runtime})
cpack_add_component(tool ${shared_runtime})
