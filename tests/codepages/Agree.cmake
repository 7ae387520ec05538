# cmake -DNATIVE=PROGRAM -DWINDOWS=PROGRAM -DEMULATOR=COMMAND -DFOLDER=FOLDER -P Agree.cmake: fails unless both programs
# write the same tables.
if(NOT EXISTS ${NATIVE})
  message(STATUS "skipped: ./kv test has not built ${NATIVE}")
  return()
endif()

function(write_tables file)
  execute_process(COMMAND ${ARGN} ${file} RESULT_VARIABLE status WORKING_DIRECTORY ${FOLDER})
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN} ended with status ${status}")
  endif()
endfunction()

write_tables(native.tables ${NATIVE})
write_tables(windows.tables ${EMULATOR} ${WINDOWS})
execute_process(COMMAND diff native.tables windows.tables RESULT_VARIABLE status OUTPUT_VARIABLE lines
  WORKING_DIRECTORY ${FOLDER})
string(SUBSTRING "${lines}" 0 4000 lines)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the tables differ (< native, > Windows):\n${lines}")
endif()
