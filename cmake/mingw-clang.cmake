# The same Windows build by clang, against the libraries and headers of Debian's GCC for the win32 thread model. Windows
# code of two compilers must give the same records.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)

set(KV_CLANG_HEADERS "-isystem ${KV_GCC}/include/c++ -isystem ${KV_GCC}/include/c++/x86_64-w64-mingw32 -isystem ${KV_GCC}/include/c++/backward")
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
# The archives too are made by the tools of that GCC, whatever else is installed.
set(CMAKE_AR /usr/bin/x86_64-w64-mingw32-ar CACHE FILEPATH "")
set(CMAKE_RANLIB /usr/bin/x86_64-w64-mingw32-ranlib CACHE FILEPATH "")
set(CMAKE_C_FLAGS_INIT ${KV_CLANG_TARGET})
set(CMAKE_CXX_FLAGS_INIT "${KV_CLANG_TARGET} ${KV_CLANG_HEADERS}")
# The linker remarks on type names whose sections differ in size: GCC's are padded to 16 bytes, clang's are not.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "${KV_CLANG_LIBRARIES}")
endforeach()
