# daybrix_dialog_templates(TARGET FUNCTION FILES ...): compiles Qt Designer files named <number>.ui and generates a
# function `void FUNCTION()` that makes them known to the desktop layer. The generated sources are the only ones outside
# src/platform/desktop that see Qt; nobody but the build reads them.
function(daybrix_dialog_templates target function)
  cmake_parse_arguments(ARG "" "QRC" "FILES" ${ARGN})
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_templates)
  set(includes "")
  set(calls "")
  set(headers "")
  foreach(file ${ARG_FILES})
    get_filename_component(number ${file} NAME_WE)
    set(header ${folder}/ui_${number}.h)
    add_custom_command(OUTPUT ${header} DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND Qt6::uic -o ${header} ${CMAKE_CURRENT_SOURCE_DIR}/${file} VERBATIM)
    list(APPEND headers ${header})
    string(APPEND includes "#include \"ui_${number}.h\"\n")
    string(APPEND calls "  AddDialogTemplate(${number}, [](QDialog& dialog) { Ui::Dialog${number}().setupUi(&dialog); });\n")
  endforeach()
  set(resource "")
  if(ARG_QRC)
    get_filename_component(qrc ${ARG_QRC} NAME_WE)
    set(resource "  Q_INIT_RESOURCE(${qrc});\n")
    qt_add_resources(resource_sources ${ARG_QRC})
  endif()
  file(CONFIGURE OUTPUT ${folder}/templates.cpp CONTENT
"#include <QtGlobal>
${includes}#include \"platform/desktop/qt/dialog_templates.h\"

void ${function}();
void ${function}() {
${resource}${calls}}
")
  add_library(${target} STATIC ${folder}/templates.cpp ${headers} ${resource_sources})
  target_include_directories(${target} PRIVATE ${folder} ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} PRIVATE Qt6::Widgets daybrix_desktop)
  target_compile_options(${target} PRIVATE -fno-exceptions -fno-rtti)
endfunction()
