# varnoth_windows_program(PROGRAM DESCRIPTION): gives a program its icon, version and manifest on Windows. The manifest
# makes arguments and the narrow functions of Windows UTF-8, allows long paths, and lets Qt scale for each monitor.
function(varnoth_windows_program program description)
  if(NOT WIN32)
    return()
  endif()
  set(icon ${PROJECT_SOURCE_DIR}/packaging/icons/varnoth.ico)
  set(manifest ${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest)
  set(numbers ${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},0,0)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${program}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${resources} @ONLY)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
  target_sources(${program} PRIVATE ${resources})
endfunction()
