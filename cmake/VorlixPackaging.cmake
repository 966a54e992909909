# What `cmake --install` lays out and what `cpack -G DEB` wraps: the two programs, the desktop
# entry with its icon, and the licences. The stand-in, tests and benchmarks stay in the build.
include(GNUInstallDirs)
set(doc_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/vorlix-sync)

install(TARGETS vorlix-sync vorlix-sync-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${PROJECT_SOURCE_DIR}/resources/io.vorlix.sync.desktop
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/resources/io.vorlix.sync.svg
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${doc_dir})
install(FILES ${PROJECT_SOURCE_DIR}/resources/icons/LICENSE DESTINATION ${doc_dir}
  RENAME LICENSE.lucide-icons)

set(CPACK_PACKAGE_NAME vorlix-sync)
set(CPACK_PACKAGE_VENDOR "The Vorlix Sync developers")
set(CPACK_PACKAGE_CONTACT "The Vorlix Sync developers <developers@vorlix.io>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION [[Vorlix Sync downloads the shoot sessions logged on set, matches the footage
to them by timecode and hands the markers to editing software as an EDL, an
xmeml sequence or an OpenTimelineIO timeline. vorlix-sync-cli does the same
without a display.]])
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
if(UNIX AND NOT APPLE)
  set(CPACK_GENERATOR DEB)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# ffprobe and ffmpeg run as child processes. QtKeychain opens libsecret at run time, so
# dpkg-shlibdeps cannot see it, and the login is kept only while a secret service runs.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ffmpeg, libsecret-1-0, gnome-keyring | kwalletmanager")

include(CPack)
