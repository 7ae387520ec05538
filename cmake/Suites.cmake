# kv_suites(TARGET [PREFIX TEXT] [FOLDER FOLDER] [APART SUITE...] [COST SECONDS] [TIMEOUT SECONDS]
# [SERIAL]) takes over the suites of a GoogleTest program: each is one test of CTest, named PREFIX and the suite, whose
# tests run in one process in an order of chance. What starts a process (sanitizers, Wine) then costs once a suite.
#
#   APART    suites whose tests each need a process of their own, and are tests of CTest each
#   FOLDER   where the program runs
#   COST     what it takes; the costliest tests start first
#   SERIAL   nothing else runs meanwhile
#
# With KV_TEST_NAME in CTest's environment each test stands alone, so that -R chooses among single tests.
function(kv_suites target)
  cmake_parse_arguments(PARSE_ARGV 1 SUITES "SERIAL" "PREFIX;FOLDER;COST;TIMEOUT" "APART")
  if(NOT SUITES_FOLDER)
    set(SUITES_FOLDER ${CMAKE_CURRENT_BINARY_DIR})
  endif()
  if(NOT SUITES_TIMEOUT)
    set(SUITES_TIMEOUT 300)
  endif()
  if(NOT SUITES_COST)
    set(SUITES_COST 1)
  endif()
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}-suites.cmake)
  file(GENERATE OUTPUT ${list} CONTENT "\
set(PROGRAM [==[$<TARGET_FILE:${target}>]==])
set(EMULATOR [==[${CMAKE_CROSSCOMPILING_EMULATOR}]==])
set(PREFIX [==[${SUITES_PREFIX}]==])
set(FOLDER [==[${SUITES_FOLDER}]==])
set(APART [==[${SUITES_APART}]==])
set(PROPERTIES COST ${SUITES_COST} TIMEOUT ${SUITES_TIMEOUT} RUN_SERIAL ${SUITES_SERIAL})
include([==[${PROJECT_SOURCE_DIR}/cmake/AddSuites.cmake]==])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${list})
endfunction()
