# The programs of a folder and of those below it are linked by clang's linker, where it is: in a fraction of a second,
# where GNU's takes up to twenty. What is released is linked by the compiler that made it.
find_program(KV_LLD ld.lld)
set(KV_LINK_OF_RELEASED ${CMAKE_CXX_LINK_EXECUTABLE})
if(KV_LLD)
  set(KV_QUICK_LINK "clang++ ${KV_CLANG_TARGET} ${KV_CLANG_LIBRARIES} -fuse-ld=lld <LINK_FLAGS> <OBJECTS> -o <TARGET> <LINK_LIBRARIES>")
else()
  set(KV_QUICK_LINK ${CMAKE_CXX_LINK_EXECUTABLE})
endif()
