# WindowsResources: tellaxis_windows_resources(TARGET DESCRIPTION) gives a program of Windows its icon, manifest and
# version; on other systems it does nothing.
function(tellaxis_windows_resources target description)
  if(NOT WIN32)
    return()
  endif()
  set(TELLAXIS_DESCRIPTION "${description}")
  get_target_property(TELLAXIS_PROGRAM ${target} OUTPUT_NAME)
  if(NOT TELLAXIS_PROGRAM)
    set(TELLAXIS_PROGRAM ${target})
  endif()
  set(icon ${CMAKE_SOURCE_DIR}/src/ui/icons/tellaxis.ico)
  set(TELLAXIS_ICON_LINE "1 ICON \"${icon}\"")
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/src/platform/windows/resources/program.rc.in ${resources} @ONLY)
  target_sources(${target} PRIVATE ${resources})
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS
    "${CMAKE_SOURCE_DIR}/src/platform/windows/resources/program.manifest;${icon}")
endfunction()
