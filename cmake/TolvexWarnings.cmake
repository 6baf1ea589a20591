# tolvex_warnings(target): the warning set every target of our own code is built with.
function(tolvex_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror ${TOLVEX_EXTRA_WARNING_FLAGS})
endfunction()
