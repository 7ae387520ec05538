# The Debian package of the native tool (./kv package): program, manual page, completions, documents.
install(TARGETS kvstation RUNTIME DESTINATION bin)
install(FILES ${KV_USER_DOCUMENTS} DESTINATION share/doc/kvstation/doc)
install(FILES ${KV_HEADERS} DESTINATION share/doc/kvstation/include)
install(CODE "execute_process(COMMAND ${PROJECT_SOURCE_DIR}/cmake/package/debian-files
  \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/.. ${PROJECT_VERSION} ${CMAKE_BINARY_DIR} COMMAND_ERROR_IS_FATAL ANY)")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kvstation)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
  WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "KelVor client team <kvstation@kelvor.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "see, explain and compare what a Windows station registers
Shows the record that the workstation-inventory module of the KelVor client
makes of a described, captured or imported station, tells what gives and what
decides each of its fields, and what would change if something were different.")
# Of the libraries that the program asks for, by dpkg-shlibdeps.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
