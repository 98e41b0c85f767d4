# The INI reader, whose package comes without a CMake configuration: inih::inih.
find_path(inih_INCLUDE_DIR ini.h)
find_library(inih_LIBRARY inih)
mark_as_advanced(inih_INCLUDE_DIR inih_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(inih REQUIRED_VARS inih_LIBRARY inih_INCLUDE_DIR)

if(inih_FOUND AND NOT TARGET inih::inih)
  add_library(inih::inih UNKNOWN IMPORTED)
  set_target_properties(inih::inih PROPERTIES IMPORTED_LOCATION ${inih_LIBRARY}
                                              INTERFACE_INCLUDE_DIRECTORIES ${inih_INCLUDE_DIR})
endif()
