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
