# Completes Vitrell.aex: one export, the resource, no time stamp, nothing that is not needed.
enable_language(RC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/Vitrell.rc.in ${CMAKE_CURRENT_BINARY_DIR}/Vitrell.rc @ONLY)
add_custom_command(
  OUTPUT Vitrell.pipl
  COMMAND write_resource --windows Vitrell.pipl
  DEPENDS write_resource
  VERBATIM)
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/Vitrell.rc PROPERTIES
  OBJECT_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/Vitrell.pipl)
add_library(vitrell_windows_resource OBJECT ${CMAKE_CURRENT_BINARY_DIR}/Vitrell.rc)
target_include_directories(vitrell_windows_resource PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
target_link_libraries(Vitrell PRIVATE vitrell_windows_resource)

target_sources(Vitrell PRIVATE ${CMAKE_CURRENT_LIST_DIR}/exception_state.cpp)
target_compile_options(vitrell_core PRIVATE -ffunction-sections -fdata-sections)
target_link_options(Vitrell PRIVATE ${CMAKE_CURRENT_LIST_DIR}/exports.def -s
  "LINKER:--gc-sections,--no-insert-timestamp,--subsystem,windows")
set_target_properties(Vitrell PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/exports.def)
