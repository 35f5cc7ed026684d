# What `cmake --install` puts where a Linux desktop looks for it, and the .deb that CPack
# builds from the same rules. The version is the project's.
include(GNUInstallDirs)

set(MW_DATA_DIR ${CMAKE_INSTALL_DATADIR}/meshwright)

install(TARGETS meshwright meshwright-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
# The programs look for these in ../share/meshwright beside their own folder.
install(DIRECTORY docs/help/ DESTINATION ${MW_DATA_DIR}/help)
install(FILES samples/ship.oof DESTINATION ${MW_DATA_DIR}/samples)
install(FILES samples/gamedata/d3.hog DESTINATION ${MW_DATA_DIR}/samples/gamedata)

install(FILES dist/meshwright.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES dist/meshwright-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
        RENAME meshwright.xml)
install(FILES dist/meshwright.thumbnailer DESTINATION ${CMAKE_INSTALL_DATADIR}/thumbnailers)
install(FILES dist/meshwright.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/meshwright)

set(CPACK_PACKAGE_NAME meshwright)
set(CPACK_PACKAGE_VENDOR "Meshwright")
set(CPACK_PACKAGE_CONTACT "Meshwright developers <meshwright@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Editor for the 3-D models and rooms of Descent 3")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
       "Meshwright opens Descent 3 models (OOF) and rooms (ORF), shows them textured and\n"
       "animated from the game's own data, edits their structure, points, weapon batteries\n"
       "and key frames, saves them as OOF, exports rooms and compiles P3D files through the\n"
       "game's model compilers (run under wine). meshwright-cli draws thumbnails and contact\n"
       "sheets without a display.")
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
# Library dependencies come from dpkg-shlibdeps; these are loaded at run time instead: Qt's
# platform plugins, and Mesa's OpenGL and EGL drivers.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libgl1-mesa-dri, libegl-mesa0")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "wine")
set(CPACK_STRIP_FILES ON)
include(CPack)
