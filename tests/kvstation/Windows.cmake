# Tests of the tool under Wine: the built program, and what runs the module with the real library.
kv_wine_program(kvstation_show_test RunningProgramWindows.cpp verbs/ShowTest.cpp)
target_link_libraries(kvstation_show_test PRIVATE kv_json gmock_main)
add_library(misbehaving_library SHARED verbs/misbehaving_library.cpp)
set_target_properties(misbehaving_library PROPERTIES OUTPUT_NAME kvcstat64 PREFIX ""
  RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/misbehaving
  ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/misbehaving)
target_link_libraries(misbehaving_library PRIVATE kv_windows)
target_compile_definitions(kvstation_show_test PRIVATE
  KVSTATION_PROGRAM="Z:$<TARGET_FILE:kvstation>"
  KV_VERSION="${PROJECT_VERSION}"
  KV_MODULE="Z:$<TARGET_FILE:kvcstat>"
  KV_STATIONS="Z:${PROJECT_SOURCE_DIR}/stations"
  KV_ANOTHER_LIBRARY="Z:$<TARGET_FILE:kvenv>"
  KV_MISBEHAVING_LIBRARY="Z:$<TARGET_FILE:misbehaving_library>")
add_dependencies(kvstation_show_test kvstation kvcstat kvenv kvtswrp kvnetapi zrtrc misbehaving_library)
target_precompile_headers(kvstation_show_test REUSE_FROM test_headers)
kv_suites(kvstation_show_test PREFIX wine.kvstation.)

# Explaining and following all branches make some thousand collections, which takes a fraction of the time in the
# released library of what it takes under sanitizers; what makes them is tested there by cause_tests.
kv_wine_program(watch_test ${KV_WATCH_TESTS} cause/AllStationsTest.cpp cause/CausePlacesTest.cpp
  capture/CompletedStationTest.cpp cause/ExplainTest.cpp capture/LiveCaptureTest.cpp cause/PlaceEdits.cpp
  report/TraceTest.cpp cause/StationRun.cpp)
set(KV_WATCH ${CMAKE_BINARY_DIR}/tests/watch-folder)
# An object file for Windows holds 32,767 sections, and a big one any number.
set_target_properties(watch_test PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KV_WATCH} UNITY_BUILD_BATCH_SIZE 5)
target_compile_options(watch_test PRIVATE -Wa,-mbig-obj)
target_link_libraries(watch_test PRIVATE kvstation_core expected_station gmock_main)
kv_product_first(watch_test kvstation_core simwin framework redirect)
target_compile_definitions(watch_test PRIVATE
  KV_RECORD_DOCUMENT="Z:${PROJECT_SOURCE_DIR}/docs/record.md"
  KV_STATIONS_DOCUMENT="Z:${PROJECT_SOURCE_DIR}/docs/stations.md")
kv_copies(watch_files ${KV_WATCH} kvcstat kvenv kvtswrp kvnetapi zrtrc)
add_dependencies(watch_test watch_files)
target_precompile_headers(watch_test REUSE_FROM test_headers)
kv_suites(watch_test PREFIX wine.kvstation. COST 40)

# A folder whose network-name library ends the collection.
set(KV_ENDING ${CMAKE_BINARY_DIR}/tests/ending)
add_library(ending_names SHARED collect/ending_names.cpp)
set_target_properties(ending_names PROPERTIES OUTPUT_NAME kvnetapi64 PREFIX ""
  RUNTIME_OUTPUT_DIRECTORY ${KV_ENDING} ARCHIVE_OUTPUT_DIRECTORY ${KV_ENDING})
target_link_libraries(ending_names PRIVATE kv_windows)
kv_copies(ending_files ${KV_ENDING} kvstation kvcstat kvenv kvtswrp zrtrc)
kv_wine_test(watch_verbs_test verbs/CaptureVerbTest.cpp collect/EndingTest.cpp RunningProgramWindows.cpp)
target_link_libraries(watch_verbs_test PRIVATE kv_json)
target_compile_definitions(watch_verbs_test PRIVATE
  KVSTATION_PROGRAM="Z:$<TARGET_FILE:kvstation>" KV_ENDING_FOLDER="Z:${KV_ENDING}")
add_dependencies(watch_verbs_test kvstation ending_files ending_names)
add_test(NAME wine.Ending.ShowsOnATerminalWhatItWaitsForAndClearsIt
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/collect/terminal-line ${KV_ENDING}/kvstation.exe)
add_test(NAME wine.Terminal.ShowsTheColoursOfAConsole
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/platform/terminal-colours $<TARGET_FILE:kvstation>
    ${PROJECT_SOURCE_DIR}/stations/windows-98-japanese)
