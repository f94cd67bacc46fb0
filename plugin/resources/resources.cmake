# Included from the plug-in's directory: generated sources must live in their target's scope.
set(KEL_RES_DIR ${CMAKE_CURRENT_SOURCE_DIR}/resources)
set(KEL_RES_BIN ${CMAKE_CURRENT_BINARY_DIR}/resources)
target_sources(kellaserweld_core PRIVATE ${KEL_RES_DIR}/kellaserweld.qrc)

# Translation: compiled from its source with lrelease and embedded as a second bundle.
set_source_files_properties(${KEL_RES_DIR}/kellaserweld_cn.ts
    PROPERTIES OUTPUT_LOCATION ${KEL_RES_BIN})
qt5_add_translation(KEL_QM_FILES ${KEL_RES_DIR}/kellaserweld_cn.ts)
configure_file(${KEL_RES_DIR}/kellaserweld_lang.qrc.in ${KEL_RES_BIN}/kellaserweld_lang.qrc @ONLY)
set_source_files_properties(${KEL_RES_BIN}/kellaserweld_lang.qrc PROPERTIES SKIP_AUTORCC ON)
qt5_add_resources(KEL_LANG_RCC ${KEL_RES_BIN}/kellaserweld_lang.qrc)
set_source_files_properties(${KEL_LANG_RCC} PROPERTIES OBJECT_DEPENDS "${KEL_QM_FILES}")
target_sources(kellaserweld_core PRIVATE ${KEL_LANG_RCC})

# Icons: drawn by kel_icongen at build time and embedded as a third bundle. The list holds the
# resource paths; the generator picks each picture by file name.
add_executable(kel_icongen ${KEL_RES_DIR}/icongen/main.cpp)
target_link_libraries(kel_icongen PRIVATE Qt5::Gui)
set(KEL_ICONS
    png/phybutton/switchModeUnpressed.png
    png/phybutton/switchModePressed.png
    png/phybutton/feedWireUnpressed.png
    png/phybutton/feedWirePressed.png
    png/phybutton/gasUnpressed.png
    png/phybutton/gasPressed.png
    png/phybutton/pullWireUnpressed.png
    png/phybutton/pullWirePressed.png
    png/phybutton/redLightUnpressed.png
    png/phybutton/redLightPressed.png
    png/LaserSwitchReal.png
    png/LaserSwitchSimu.png
    png/meanlist/LaserWeldDeviceSetting.png
    png/meanlist/LaserWeldIO.png
    png/meanlist/LaserWeldCharacteristicCurve.png
    png/meanlist/LaserWeldProcessSetting.png
    png/meanlist/LaserWeldWeaveFunction.png
    kellaserweld/png/arrow/down_arrow_white.png
)
set(KEL_ICON_BIN ${KEL_RES_BIN}/icons)
set(KEL_ICON_FILES)
set(KEL_ICON_QRC_ENTRIES)
foreach(icon IN LISTS KEL_ICONS)
    list(APPEND KEL_ICON_FILES ${KEL_ICON_BIN}/${icon})
    string(APPEND KEL_ICON_QRC_ENTRIES "        <file alias=\"${icon}\">${KEL_ICON_BIN}/${icon}</file>\n")
endforeach()
add_custom_command(OUTPUT ${KEL_ICON_FILES}
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
        $<TARGET_FILE:kel_icongen> ${KEL_ICON_BIN} ${KEL_ICONS}
    DEPENDS kel_icongen
    COMMENT "Drawing the plug-in's icons"
    VERBATIM)
# Rewritten only when the list changes, so rcc does not rerun on every configure.
file(CONFIGURE OUTPUT ${KEL_RES_BIN}/kellaserweld_icons.qrc
    CONTENT "<RCC>\n    <qresource prefix=\"/\">\n${KEL_ICON_QRC_ENTRIES}    </qresource>\n</RCC>\n")
set_source_files_properties(${KEL_RES_BIN}/kellaserweld_icons.qrc PROPERTIES SKIP_AUTORCC ON)
qt5_add_resources(KEL_ICON_RCC ${KEL_RES_BIN}/kellaserweld_icons.qrc)
target_sources(kellaserweld_core PRIVATE ${KEL_ICON_RCC})
