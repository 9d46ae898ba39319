# Completes Vitrell.plugin: property list, resource, package file, signature.
configure_file(${CMAKE_CURRENT_LIST_DIR}/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/Info.plist @ONLY)
set_target_properties(Vitrell PROPERTIES
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/Info.plist)
target_link_options(Vitrell PRIVATE "LINKER:-exported_symbol,_EntryPointFunc")

if(CMAKE_CROSSCOMPILING AND VITRELL_CROSS_ARCH STREQUAL "x86_64")
  target_sources(Vitrell PRIVATE ${CMAKE_CURRENT_LIST_DIR}/cpu_model.cpp)
endif()

# The signature covers the resource and is therefore made last.
set(contents "$<TARGET_BUNDLE_CONTENT_DIR:Vitrell>")
set(sign "")
if(CMAKE_HOST_APPLE)
  set(sign COMMAND codesign --force --sign - "$<TARGET_BUNDLE_DIR:Vitrell>")
endif()
add_custom_target(vitrell_bundle ALL
  COMMAND ${CMAKE_COMMAND} -E make_directory "${contents}/Resources"
  COMMAND write_resource "${contents}/Resources/Vitrell.rsrc"
  COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_LIST_DIR}/PkgInfo "${contents}/PkgInfo"
  ${sign}
  COMMENT "Completing Vitrell.plugin"
  VERBATIM)
add_dependencies(vitrell_bundle Vitrell write_resource)
