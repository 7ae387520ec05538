# kv_released(TARGET) is said of each program and library that is given to others: a map of its link tells what was linked
# in, for the list of components. For Windows it is linked with its symbols and stripped, so that the file is what a link
# without symbols makes, and the symbols of that very link stand beside it, in symbols/ of the build folder.
set(KV_SYMBOLS ${CMAKE_BINARY_DIR}/symbols)
set(KV_MAPS ${CMAKE_BINARY_DIR}/maps)
file(MAKE_DIRECTORY ${KV_SYMBOLS} ${KV_MAPS})

function(kv_released target)
  target_link_options(${target} PRIVATE -Wl,-Map,${KV_MAPS}/$<TARGET_FILE_NAME:${target}>.map)
  # What clang makes for Windows is held against the released files, and not released itself.
  if(NOT WIN32 OR CMAKE_CXX_COMPILER_ID STREQUAL Clang)
    return()
  endif()
  get_target_property(options ${target} LINK_OPTIONS)
  list(REMOVE_ITEM options -s)
  set_target_properties(${target} PROPERTIES LINK_OPTIONS "${options}")
  target_compile_options(${target} PRIVATE ${KV_PRODUCT_OPTIONS})
  set(symbols ${KV_SYMBOLS}/$<TARGET_FILE_NAME:${target}>.debug)
  add_custom_command(TARGET ${target} POST_BUILD
    # With the time that the link put into the file: none.
    COMMAND ${CMAKE_OBJCOPY} -p --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
    COMMAND ${CMAKE_STRIP} -p $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()
