# kv_version_resource(TARGET NAME DESCRIPTION) gives the library NAME.dll its VERSIONINFO resource.
function(kv_version_resource target name description)
  set(KV_FILE_NAME ${name}.dll)
  set(KV_INTERNAL_NAME ${name})
  set(KV_DESCRIPTION ${description})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc)
endfunction()
