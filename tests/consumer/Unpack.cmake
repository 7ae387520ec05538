# Makes the zip of BUILD's package and unpacks it into FOLDER, which then holds the folder NAME with exactly FILES.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${FOLDER}/made COMMAND_ERROR_IS_FATAL ANY)
file(ARCHIVE_EXTRACT INPUT ${FOLDER}/made/${NAME}.zip DESTINATION ${FOLDER})

file(GLOB_RECURSE found RELATIVE ${FOLDER}/${NAME} ${FOLDER}/${NAME}/*)
list(SORT found)
list(JOIN found "\n" found)
file(READ ${FILES} expected)
if(NOT "${found}\n" STREQUAL expected)
  message(FATAL_ERROR "The package holds other files than ${FILES} lists:\n${found}")
endif()
