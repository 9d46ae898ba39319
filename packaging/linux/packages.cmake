# The Debian packages, written by `cpack` in a build with VITRELL_PACKAGES=ON:
#   vitrell          command line, module, presets, manual page, shell completion
#   frei0r-vitrell   the modules for programs that load frei0r effects
#   vitrell-panel    the panel program, if VITRELL_BUILD_PANEL is ON
# scripts/build-packages.sh gives the time of the last commit in SOURCE_DATE_EPOCH, which goes into
# every file, so that the same commit gives the same bytes.
option(VITRELL_PACKAGES "Prepare what the Debian packages hold" OFF)
if(NOT VITRELL_PACKAGES)
  return()
endif()

set(here ${PROJECT_SOURCE_DIR}/packaging/linux)
set(made ${CMAKE_CURRENT_BINARY_DIR}/packages)
set(maintainer "Vitrell maintainers <maintainers@vitrell.invalid>")
find_program(GZIP gzip REQUIRED)

# Manual pages and changelogs are compressed without a time stamp.
function(vitrell_compress source target)
  execute_process(COMMAND ${GZIP} -9nc ${source} OUTPUT_FILE ${target} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # Reads SOURCE_DATE_EPOCH.
file(MAKE_DIRECTORY ${made})
vitrell_compress(${here}/vitrell.1 ${made}/vitrell.1.gz)
set(packages vitrell frei0r-vitrell)
if(VITRELL_BUILD_PANEL)
  list(APPEND packages vitrell-panel)
endif()
foreach(package IN LISTS packages)
  file(WRITE ${made}/${package}.changelog
    "${package} (${PROJECT_VERSION}) bookworm; urgency=medium\n\n"
    "  * Version ${PROJECT_VERSION}.\n\n"
    " -- ${maintainer}  ${date}\n")
  vitrell_compress(${made}/${package}.changelog ${made}/${package}.changelog.gz)
  install(FILES ${made}/${package}.changelog.gz DESTINATION share/doc/${package}
    RENAME changelog.gz COMPONENT ${package})
  install(FILES ${here}/copyright DESTINATION share/doc/${package} COMPONENT ${package})
endforeach()

install(TARGETS vitrell RUNTIME DESTINATION bin COMPONENT vitrell)
# A package's libraries are not executable.
set(library_rights OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
install(TARGETS Vitrell LIBRARY DESTINATION lib/vitrell PERMISSIONS ${library_rights}
  COMPONENT vitrell)
get_property(stand_ins GLOBAL PROPERTY VITRELL_STAND_IN_TARGETS)
install(TARGETS ${stand_ins} LIBRARY DESTINATION lib/vitrell/stand-ins PERMISSIONS ${library_rights}
  COMPONENT vitrell)
set(library_path "$ORIGIN/../lib/vitrell/stand-ins")
set_target_properties(vitrell PROPERTIES INSTALL_RPATH "${library_path}")
install(DIRECTORY ${PROJECT_SOURCE_DIR}/presets DESTINATION share/vitrell COMPONENT vitrell)
install(FILES ${made}/vitrell.1.gz DESTINATION share/man/man1 COMPONENT vitrell)
install(FILES ${here}/vitrell.bash DESTINATION share/bash-completion/completions RENAME vitrell
  COMPONENT vitrell)
install(FILES ${here}/_vitrell DESTINATION share/zsh/vendor-completions COMPONENT vitrell)
install(TARGETS vitrell_frei0r_filter vitrell_frei0r_mixer LIBRARY DESTINATION lib/frei0r-1
  PERMISSIONS ${library_rights} COMPONENT frei0r-vitrell)

add_custom_command(OUTPUT ${made}/frei0r_vitrell.xml
  COMMAND write_kdenlive_effect ${made}/frei0r_vitrell.xml
  DEPENDS write_kdenlive_effect)
add_custom_target(vitrell_described_effect ALL DEPENDS ${made}/frei0r_vitrell.xml)
install(FILES ${made}/frei0r_vitrell.xml DESTINATION share/kdenlive/effects
  COMPONENT frei0r-vitrell)

if(VITRELL_BUILD_PANEL)
  install(TARGETS vitrell-panel RUNTIME DESTINATION bin COMPONENT vitrell-panel)
  set_target_properties(vitrell-panel PROPERTIES INSTALL_RPATH "${library_path}")
  vitrell_compress(${here}/vitrell-panel.1 ${made}/vitrell-panel.1.gz)
  install(FILES ${made}/vitrell-panel.1.gz DESTINATION share/man/man1 COMPONENT vitrell-panel)
  install(FILES ${here}/vitrell-panel.desktop DESTINATION share/applications
    COMPONENT vitrell-panel)
  install(FILES ${here}/vitrell-panel.svg DESTINATION share/icons/hicolor/scalable/apps
    COMPONENT vitrell-panel)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${packages})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${maintainer})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/media/stand_ins)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_VITRELL_PACKAGE_NAME vitrell)
set(CPACK_DEBIAN_VITRELL_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_VITRELL_DESCRIPTION "lens effect for pictures, on the command line
Inside a feathered shape the picture is blurred, bent, smeared, brightened,
tinted or split into its colours; outside it stays as it was.")
set(CPACK_DEBIAN_FREI0R-VITRELL_PACKAGE_NAME frei0r-vitrell)
set(CPACK_DEBIAN_FREI0R-VITRELL_PACKAGE_SECTION video)
set(CPACK_COMPONENT_FREI0R-VITRELL_DESCRIPTION "lens effect for programs that load frei0r modules
A lens held in front of the film, as a filter and a mixer for FFmpeg,
Kdenlive, Shotcut and GStreamer.")
set(CPACK_DEBIAN_VITRELL-PANEL_PACKAGE_NAME vitrell-panel)
set(CPACK_DEBIAN_VITRELL-PANEL_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_VITRELL-PANEL_PACKAGE_DEPENDS "vitrell (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_VITRELL-PANEL_DESCRIPTION "lens effect for pictures, with a panel
The effect's controls beside a picture or a clip, which shows what they do
while they are turned; presets are made and files rendered.")
include(CPack)
