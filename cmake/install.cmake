# Where an installed program lies: cmake --install build/release --prefix /usr. The program finds its files by their place
# beside its own folder: ../share/daybrix and, for the sound module, ../lib/daybrix.
install(TARGETS tempoline tempoline-cli RUNTIME DESTINATION bin)
install(TARGETS tempoline_sound LIBRARY DESTINATION lib/daybrix)
set(resources ${PROJECT_SOURCE_DIR}/src/resources)
install(DIRECTORY ${resources}/sounds/ DESTINATION share/daybrix FILES_MATCHING PATTERN "*.wav")
install(DIRECTORY ${resources}/help/ DESTINATION share/daybrix/Help)
install(DIRECTORY ${resources}/styles/ DESTINATION share/daybrix/Styles)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tempoline.desktop DESTINATION share/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tempoline-mime.xml DESTINATION share/mime/packages RENAME tempoline.xml)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tempoline-cli.1 DESTINATION share/man/man1)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/tempoline-cli.bash
  DESTINATION share/bash-completion/completions RENAME tempoline-cli)
foreach(size 16 32 48 64 128)
  install(FILES ${resources}/images/icon-${size}.png DESTINATION share/icons/hicolor/${size}x${size}/apps
    RENAME tempoline.png)
endforeach()
install(FILES ${resources}/svg/icon.svg DESTINATION share/icons/hicolor/scalable/apps RENAME tempoline.svg)
