# Where an installed program lies: cmake --install build/release --prefix /usr. The program finds its files by their
# place as seen from its own folder, so the prefix may still change at that time; `uninstall` removes what was
# installed last.
install(TARGETS tempoline tempoline-cli RUNTIME)
install(TARGETS tempoline_sound LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/daybrix)

set(resources ${PROJECT_SOURCE_DIR}/src/resources)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(data ${CMAKE_INSTALL_DATADIR})
install(DIRECTORY ${resources}/sounds/ DESTINATION ${data}/daybrix FILES_MATCHING PATTERN "*.wav")
install(DIRECTORY ${resources}/help/ DESTINATION ${data}/daybrix/Help)
install(DIRECTORY ${resources}/styles/ DESTINATION ${data}/daybrix/Styles)
install(FILES ${packaging}/tempoline.desktop DESTINATION ${data}/applications)
install(FILES ${packaging}/tempoline-mime.xml DESTINATION ${data}/mime/packages RENAME tempoline.xml)
foreach(program tempoline tempoline-cli)
  install(FILES ${packaging}/${program}.bash DESTINATION ${data}/bash-completion/completions RENAME ${program})
endforeach()
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${resources}/images/icon-${size}.png DESTINATION ${data}/icons/hicolor/${size}x${size}/apps
    RENAME tempoline.png)
endforeach()
install(FILES ${resources}/svg/icon.svg DESTINATION ${data}/icons/hicolor/scalable/apps RENAME tempoline.svg)
install(FILES ${resources}/svg/icon-symbolic.svg DESTINATION ${data}/icons/hicolor/symbolic/apps
  RENAME tempoline-symbolic.svg)

# The manuals and the description for software centres name the version and the day of its release.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md release REGEX "^## ${PROJECT_VERSION}, ")
if(NOT release MATCHES "^## [0-9.]+, ([0-9]+-[0-9]+-[0-9]+)$")
  message(FATAL_ERROR "CHANGELOG.md has no heading \"## ${PROJECT_VERSION}, YYYY-MM-DD\"")
endif()
set(RELEASE_DATE ${CMAKE_MATCH_1})
set(METAINFO_HOMEPAGE "")
if(DAYBRIX_PRODUCT_PAGE)
  set(METAINFO_HOMEPAGE "  <url type=\"homepage\">${DAYBRIX_PRODUCT_PAGE}</url>\n")
endif()
set(described ${PROJECT_BINARY_DIR}/packaging)
foreach(file tempoline.1 tempoline-cli.1 cld.5 org.daybrix.tempoline.metainfo.xml)
  configure_file(${packaging}/${file}.in ${described}/${file} @ONLY)
endforeach()
install(FILES ${described}/tempoline.1 ${described}/tempoline-cli.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${described}/cld.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
install(FILES ${described}/org.daybrix.tempoline.metainfo.xml DESTINATION ${data}/metainfo)

add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -DMANIFEST=${PROJECT_BINARY_DIR}/install_manifest.txt
          -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
  VERBATIM)
