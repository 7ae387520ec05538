# kv_in_locale(TEST LOCALE): runs a test under Wine in a locale such as ja_JP, which gives the process that locale's ANSI
# code page. The locale is made below the build folder; the system's own list of locales stays as it is.
set(KV_LOCALES ${CMAKE_BINARY_DIR}/locales)

function(kv_in_locale test locale)
  if(NOT TARGET locale-${locale})
    add_custom_command(OUTPUT ${KV_LOCALES}/${locale}.UTF-8
      COMMAND ${CMAKE_COMMAND} -E make_directory ${KV_LOCALES}
      COMMAND localedef -i ${locale} -f UTF-8 ${KV_LOCALES}/${locale}.UTF-8)
    add_custom_target(locale-${locale} ALL DEPENDS ${KV_LOCALES}/${locale}.UTF-8)
  endif()
  set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT LOCPATH=${KV_LOCALES} LC_ALL=${locale}.UTF-8)
endfunction()
