# Read by CTest for each program of kv_suites, with PROGRAM, EMULATOR, PREFIX, FOLDER, APART and PROPERTIES set.
set(LIST ${PROGRAM}.tests)

# A program lists its tests once, and again when it is newer than its list.
if(NOT EXISTS ${LIST} OR ${PROGRAM} IS_NEWER_THAN ${LIST})
  execute_process(COMMAND ${EMULATOR} ${PROGRAM} --gtest_list_tests
    WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE listed RESULT_VARIABLE status TIMEOUT 120)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} does not list its tests (${status}):\n${listed}")
  endif()
  file(WRITE ${LIST} "${listed}")
endif()

macro(add_suite name filter)
  add_test("${PREFIX}${name}" ${EMULATOR} ${PROGRAM} --gtest_filter=${filter} --gtest_shuffle)
  # A filter that chooses no test is no error to GoogleTest.
  set_tests_properties("${PREFIX}${name}" PROPERTIES WORKING_DIRECTORY ${FOLDER}
    FAIL_REGULAR_EXPRESSION "Running 0 tests" ${PROPERTIES})
endmacro()

# A suite's name ends in a dot, in the first column; the names of its tests follow, indented. Behind a name may stand
# what its parameter is.
file(STRINGS ${LIST} lines REGEX "^([^ ]+\\.|  [^ ]+)( +#.*)?$")
foreach(line ${lines})
  string(REGEX REPLACE " +#.*" "" line "${line}")
  if(NOT line MATCHES "^ ")
    string(REGEX REPLACE "\\.$" "" suite ${line})
    list(FIND APART ${suite} apart)
    if(DEFINED ENV{KV_TEST_NAME})
      set(apart 0)
    elseif(apart EQUAL -1)
      add_suite(${suite} ${suite}.*)
    endif()
  elseif(NOT apart EQUAL -1)
    string(STRIP ${line} test)
    add_suite(${suite}.${test} ${suite}.${test})
  endif()
endforeach()
