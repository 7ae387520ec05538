# Targets that carry the options every other target links.
option(KV_SANITIZE "AddressSanitizer and UBSan in the native build" ON)
option(KV_BENCH "The benchmarks; the native ones need libbenchmark-dev" OFF)
option(KV_COVERAGE "Counts of the lines, branches and conditions that run (native, needs clang 18 or newer)" OFF)
option(KV_TESTS "The tests" ON)
option(KV_UNITY "The sources of the tool, simwin and the tests compiled many at a time, in less than half the time; OFF for work on one of them" ON)
option(KV_FUZZ "The fuzzers, without the other tests (needs clang and its libFuzzer)" OFF)

set(CMAKE_UNITY_BUILD_BATCH_SIZE 20)

# Warnings, for all code of the project.
add_library(kv_warnings INTERFACE)
target_compile_options(kv_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wformat=2 -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wconversion>)

# The project's own headers are found from the root; Windows' declarations are the compiler's or Wine's.
add_library(kv_windows INTERFACE)
target_include_directories(kv_windows INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(kv_windows INTERFACE kv_warnings)

# GCC 12 sees copies in std::string overlap that do not, when it optimizes (GCC bug 105651).
target_compile_options(kv_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# What newer clangs say besides: GCC 12's std::stable_sort calls what it deprecates itself, and a member that no
# designator names has its own initializer.
if(CMAKE_CXX_COMPILER_ID STREQUAL Clang AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 19)
  target_compile_options(kv_warnings INTERFACE -Wno-deprecated-declarations -Wno-missing-designated-field-initializers)
endif()

if(WIN32)
  # Optimized for size, without unused sections; linked for high-entropy ASLR and NX, no compiler runtime DLL.
  set(CMAKE_CXX_FLAGS_RELEASE "-Os -DNDEBUG")
  set(CMAKE_C_FLAGS_RELEASE "-Os -DNDEBUG")
  add_compile_options(-ffunction-sections -fdata-sections)
  add_link_options(-static -static-libgcc -static-libstdc++ -s
    -Wl,--gc-sections -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat -Wl,--no-insert-timestamp)

  # Windows' libraries that the module asks for beside those of every program.
  set(KV_MODULE_LIBRARIES version secur32 netapi32 iphlpapi)

  # The formatted input and output of msvcrt.dll in place of MinGW's own, which would be linked in (30 KB).
  add_library(kv_msvcrt_stdio INTERFACE)
  target_compile_options(kv_msvcrt_stdio INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-D__USE_MINGW_ANSI_STDIO=0>
    $<$<COMPILE_LANGUAGE:CXX>:SHELL:-include ${PROJECT_SOURCE_DIR}/framework/MsvcrtStdio.h>)
else()
  set(KV_WINE_HEADERS /usr/include/wine/wine/windows CACHE PATH "Wine's Windows headers (libwine-dev)")
  target_include_directories(kv_windows SYSTEM INTERFACE ${KV_WINE_HEADERS})
  if(KV_SANITIZE)
    # Quick to compile, and with its assertions.
    set(CMAKE_CXX_FLAGS_RELEASE "-O0")
    # Neither compiler counts what floating point leaves undefined among the rest.
    set(sanitizers -fsanitize=address,undefined,float-cast-overflow,float-divide-by-zero)
    # Debugging information no larger than their reports need.
    add_compile_options(-g1 -fno-omit-frame-pointer ${sanitizers} -fno-sanitize-recover=all)
    add_link_options(${sanitizers})
  endif()
  # clang, unlike the language, leaves the size of what is deleted aside by itself.
  add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-fsized-deallocation>)
  # Links a program in half the time; Debian's package lld.
  find_program(KV_LLD ld.lld)
  if(KV_LLD)
    add_link_options(-fuse-ld=lld)
  endif()
  if(KV_COVERAGE)
    # The tests too: which copy of an inline function is linked is the linker's choice.
    add_compile_options(-O0 -fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc)
    add_link_options(-fprofile-instr-generate)
  endif()
  if(KV_FUZZ)
    # Not trace-cmp: it costs a third of the speed, and the words that matter stand in a table.
    add_compile_options(-O2 -fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
  endif()
endif()

# Header-only libraries of Debian's that the Windows build uses too. The cross compiler must not see /usr/include
# itself, so the two folders are linked into the build.
set(KV_LINKED_HEADERS ${CMAKE_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${KV_LINKED_HEADERS})
foreach(folder CLI nlohmann)
  if(NOT EXISTS /usr/include/${folder})
    message(FATAL_ERROR "/usr/include/${folder} is missing: install nlohmann-json3-dev and libcli11-dev")
  endif()
  file(CREATE_LINK /usr/include/${folder} ${KV_LINKED_HEADERS}/${folder} SYMBOLIC)
endforeach()
add_library(kv_json INTERFACE)
target_include_directories(kv_json SYSTEM INTERFACE ${KV_LINKED_HEADERS})
add_library(kv_cli INTERFACE)
target_include_directories(kv_cli SYSTEM INTERFACE ${KV_LINKED_HEADERS})
