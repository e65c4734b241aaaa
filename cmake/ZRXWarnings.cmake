# Warnings are errors on the project's own code. Third-party headers come in as
# system headers and are not judged.
function(zrx_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
                         -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
endfunction()
