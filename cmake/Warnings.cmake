# vnzel_warnings(<target>): the warnings that all code of this repository compiles without.
function(vnzel_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  endif()
  set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR ${VNZEL_WARNINGS_AS_ERRORS})
endfunction()
