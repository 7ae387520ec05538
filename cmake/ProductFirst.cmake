# kv_product_first(TARGET LIBRARY...): the test program takes the inline functions of these libraries, which are
# optimized. Of several copies of one function the linker keeps the first that it meets, and the tests' are not optimized.
function(kv_product_first target)
  set(files "")
  foreach(library ${ARGN})
    list(APPEND files $<TARGET_FILE:${library}>)
  endforeach()
  target_link_options(${target} PRIVATE LINKER:--whole-archive ${files} LINKER:--no-whole-archive)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${files})
endfunction()
