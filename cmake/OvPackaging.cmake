# The Debian package: cmake --build build && (cd build && cpack -G DEB).
# The viewer goes on the PATH, the host library and the plug-in into the
# viewer's private folder (found relative to the viewer), the desktop entry,
# its icon and the measurement files' MIME type into the shared folders.
# dpkg-shlibdeps (dpkg-dev) works out the dependencies.
install(FILES ${PROJECT_SOURCE_DIR}/packaging/ovviewer.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${PROJECT_SOURCE_DIR}/host/resources/tool-measure-normal.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME ovviewer.svg)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/ovviewer-mime.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME ovviewer.xml)

set(CPACK_PACKAGE_NAME ovmeasure)
set(CPACK_PACKAGE_VENDOR "OvMeasure")
set(CPACK_PACKAGE_CONTACT "OvMeasure developers <ovmeasure@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Measurement plug-in and viewer for calibrated microscope pictures")
set(CPACK_PACKAGE_DESCRIPTION "Ov Viewer opens microscope pictures and picture series, calibrates them and \
measures distances, circles, angles, areas, free lines and perpendicular and parallel distances \
through its Measurement plug-in; values go to a results table, a CSV export and saved measurement files.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The host library is the package's own: dpkg-shlibdeps finds it here.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/lib)
# Qt loads these at run time, so no library dependency names them: the
# platform plug-ins (the X11 one and offscreen) and the SVG icon loader.
if(OV_QT_MAJOR STREQUAL "6")
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libqt6svg6")
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n")
else()
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5gui5, libqt5svg5")
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qttranslations5-l10n")
endif()
include(CPack)
