# Installation in three parts: the libraries (runtime), what is needed to build against them
# (development), and the tool. Everything finds its way from where it lies: the installed tree may be
# moved as a whole.
include(CMakePackageConfigHelpers)

# Headers lie in a folder of their own, as several versions may be installed.
set(LQ_DATA_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/${LQ_DATA_VERSIONED})
set(LQ_DATA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/lq_data)
set(development DESTINATION ${LQ_DATA_CMAKE_DIR} COMPONENT development)

# -- Libraries and headers ------------------------------------------------------------------------

foreach(target ${LQ_DATA_LIBRARIES})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH $ORIGIN)
endforeach()
install(
  TARGETS ${LQ_DATA_LIBRARIES}
  EXPORT lq_data
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${LQ_DATA_INCLUDE_DIR})
# Of the host layer only the headers of what is built.
set(headers_left_out "^$")
if(NOT LQ_DATA_HOST_BASE)
  set(headers_left_out "/lq_data/host$")
elseif(NOT LQ_DATA_HOST)
  list(JOIN LQ_DATA_HOST_PARTS "|" headers_left_out)
  string(REPLACE lq_host_ "" headers_left_out "/lq_data/host/(${headers_left_out})$")
endif()
install(DIRECTORY include/ DESTINATION ${LQ_DATA_INCLUDE_DIR} COMPONENT development
        REGEX ${headers_left_out} EXCLUDE)
if(LQ_DATA_HOST_BASE)
  # The texts' libraries are looked for beside the library, first in its version's folder.
  install(TARGETS lq_data_RC_1252 lq_data_RC_932
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/${LQ_DATA_VERSIONED} COMPONENT runtime)
endif()

# -- Examples -------------------------------------------------------------------------------------

install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/liblq-data-dev
        COMPONENT development)

# -- CMake package --------------------------------------------------------------------------------

set(LQ_DATA_DEPENDENCIES)
if(LQ_DATA_HOST_BASE)
  list(APPEND LQ_DATA_DEPENDENCIES inih)
endif()
if(LQ_DATA_HOST)
  list(APPEND LQ_DATA_DEPENDENCIES EXPAT)
endif()
install(EXPORT lq_data NAMESPACE lq_data:: FILE lq_data-targets.cmake ${development})
configure_package_config_file(cmake/lq_data-config.cmake.in lq_data-config.cmake
                              INSTALL_DESTINATION ${LQ_DATA_CMAKE_DIR})
write_basic_package_version_file(lq_data-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lq_data-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/lq_data-config-version.cmake cmake/Findinih.cmake
              ${development})

# -- pkg-config -----------------------------------------------------------------------------------

set(LQ_DATA_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH LQ_DATA_PC_PREFIX /${LQ_DATA_PC_DIR} /)
string(REGEX REPLACE "/$" "" LQ_DATA_PC_PREFIX ${LQ_DATA_PC_PREFIX})

function(install_pc LQ_DATA_PC_NAME LQ_DATA_PC_REQUIRES LQ_DATA_PC_DESCRIPTION)
  list(JOIN ARGN " " LQ_DATA_PC_LIBS)
  configure_file(cmake/lq_data.pc.in ${LQ_DATA_PC_NAME}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${LQ_DATA_PC_NAME}.pc DESTINATION ${LQ_DATA_PC_DIR}
          COMPONENT development)
endfunction()

set(about "Data and model library of a programming environment for IEC 61131-3")
set(host_libraries)
set(others)
if(LQ_DATA_HOST)
  list(TRANSFORM LQ_DATA_HOST_PARTS PREPEND -l OUTPUT_VARIABLE host_libraries)
  list(APPEND host_libraries -llq_host_base)
  set(others -lexpat -linih -ldl)
elseif(LQ_DATA_HOST_BASE)
  set(host_libraries -llq_host_words -llq_host_base)
  set(others -linih -ldl)
endif()
if(BUILD_SHARED_LIBS AND LQ_DATA_HOST)
  install_pc(lq_data "" "${about}" -llq_data)
else()
  # The library and what is left of its host call each other.
  if(BUILD_SHARED_LIBS)
    set(others)
  endif()
  install_pc(lq_data "" "${about}" -Wl,--start-group -llq_data ${host_libraries} -Wl,--end-group
             ${others})
endif()
install_pc(lq_data_translate lq_data "${about}: a project to tables" -llq_translate)
if(LQ_DATA_HOST)
  # Programs that do not call the library themselves need it, too, since the host layer does.
  install_pc(lq_data_host lq_data_translate "${about}: its host layer" -Wl,--no-as-needed ${host_libraries})
endif()

# -- Tool -----------------------------------------------------------------------------------------

if(LQ_DATA_TOOLS)
  file(RELATIVE_PATH libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  get_target_property(tool_folder lq BINARY_DIR)
  set(LQ_MANUAL ${tool_folder}/manual)
  set_target_properties(lq PROPERTIES INSTALL_RPATH $ORIGIN/${libraries})
  install(TARGETS lq RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
  install(DIRECTORY docs/schema DESTINATION ${CMAKE_INSTALL_DATADIR}/lq COMPONENT tool)
  foreach(file lq.1.gz:${CMAKE_INSTALL_MANDIR}/man1 lq:${CMAKE_INSTALL_DATADIR}/bash-completion/completions
               _lq:${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
               lq.fish:${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
    string(REGEX MATCH "(.+):(.+)" file ${file})
    install(FILES ${LQ_MANUAL}/${CMAKE_MATCH_1} DESTINATION ${CMAKE_MATCH_2} COMPONENT tool)
  endforeach()
endif()
