# Before CPack writes the zip: files and folders get one time, so that the same sources give the same bytes.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  file(GLOB_RECURSE entries LIST_DIRECTORIES true ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*)
  execute_process(COMMAND touch -d @$ENV{SOURCE_DATE_EPOCH} ${entries} ${CPACK_TEMPORARY_INSTALL_DIRECTORY}
    COMMAND_ERROR_IS_FATAL ANY)
endif()
