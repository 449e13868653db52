# Qt 5 or Qt 6, chosen at configure time with OV_QT_MAJOR (default 5: the host's
# plug-in interface was built against Qt 5). Everything else names the
# versionless targets (Qt::Core, Qt::Widgets, ...) and the helpers below, so
# this file is the only place that knows which Qt it is.
set(OV_QT_MAJOR 5 CACHE STRING "Qt major version to build against (5 or 6)")
set_property(CACHE OV_QT_MAJOR PROPERTY STRINGS 5 6)

set(OV_QT_COMPONENTS Core Gui Widgets Svg Test LinguistTools)
if(OV_QT_MAJOR STREQUAL "6")
    find_package(Qt6 6.4 REQUIRED COMPONENTS ${OV_QT_COMPONENTS})
elseif(OV_QT_MAJOR STREQUAL "5")
    find_package(Qt5 5.15 REQUIRED COMPONENTS ${OV_QT_COMPONENTS})
else()
    message(FATAL_ERROR "OV_QT_MAJOR must be 5 or 6, not '${OV_QT_MAJOR}'")
endif()
set(OV_QT Qt${OV_QT_MAJOR})
message(STATUS "Building against Qt ${${OV_QT}Core_VERSION}")

# Compiles the Qt Linguist sources with lrelease and embeds the .qm files in
# aTarget under ":/i18n/" (resource name "ovtranslations", so a static
# library's user calls Q_INIT_RESOURCE(ovtranslations)).
function(ov_add_translations aTarget)
    qt_add_translation(qm_files ${ARGN})
    set(qrc ${CMAKE_CURRENT_BINARY_DIR}/ovtranslations.qrc)
    set(entries "")
    foreach(qm ${qm_files})
        get_filename_component(name ${qm} NAME)
        string(APPEND entries "        <file alias=\"${name}\">${qm}</file>\n")
    endforeach()
    file(CONFIGURE OUTPUT ${qrc} CONTENT
         "<RCC>\n    <qresource prefix=\"/i18n\">\n${entries}    </qresource>\n</RCC>\n")
    qt_add_resources(rcc_sources ${qrc})
    target_sources(${aTarget} PRIVATE ${rcc_sources})
endfunction()

# The lupdate of the Qt in use, for the translation check and the update script.
get_target_property(OV_LUPDATE ${OV_QT}::lupdate IMPORTED_LOCATION)
