# The package that others build on: what is installed, and the zip that CPack makes of it (./kv package).
include(CMakePackageConfigHelpers)

# MinGW's compilers link libkvcstat64.dll.a, which the build leaves; all others link short imports in a .lib.
set(KV_LIB ${CMAKE_BINARY_DIR}/kvcstat64.lib)
set(KV_EXPORTS ${PROJECT_SOURCE_DIR}/kvcstat/kvcstat.def)
add_custom_command(OUTPUT ${KV_LIB}
  COMMAND llvm-dlltool -m i386:x86-64 -d ${KV_EXPORTS} -l ${KV_LIB}
  DEPENDS ${KV_EXPORTS}
  VERBATIM)
add_custom_target(kvcstat_lib ALL DEPENDS ${KV_LIB})

set(KV_CMAKE_PACKAGE lib/cmake/kvcstat)
configure_package_config_file(cmake/package/kvcstatConfig.cmake.in kvcstatConfig.cmake
  INSTALL_DESTINATION ${KV_CMAKE_PACKAGE})
write_basic_package_version_file(kvcstatConfigVersion.cmake COMPATIBILITY SameMajorVersion)
configure_file(cmake/package/README.md.in package/README.md @ONLY)

install(TARGETS kvcstat RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(TARGETS kvenv kvtswrp kvnetapi zrtrc kvstation RUNTIME DESTINATION bin)
# Not in the builds without tests, of which no package is made.
if(TARGET kvconform)
  install(TARGETS kvconform RUNTIME DESTINATION bin)
endif()
install(FILES ${KV_LIB} DESTINATION lib)
install(FILES ${CMAKE_BINARY_DIR}/kvcstatConfig.cmake ${CMAKE_BINARY_DIR}/kvcstatConfigVersion.cmake
  DESTINATION ${KV_CMAKE_PACKAGE})
install(FILES ${KV_HEADERS} DESTINATION include)
install(FILES ${KV_USER_DOCUMENTS} DESTINATION doc)
install(DIRECTORY tests/consumer/example/ DESTINATION example)
install(FILES ${CMAKE_BINARY_DIR}/package/README.md DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME kvcstat-${PROJECT_VERSION}-windows-x64)
# Last: what the files that are installed then hold of others.
install(CODE "execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/package/components \${CMAKE_INSTALL_PREFIX}
  ${CPACK_PACKAGE_FILE_NAME} ${PROJECT_VERSION} ${CMAKE_BINARY_DIR} NOTICES.txt kvcstat.spdx.json COMMAND_ERROR_IS_FATAL ANY)")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package/SetTimes.cmake)
include(CPack)
