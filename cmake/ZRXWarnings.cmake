# Warnings are errors on the project's own code (ZRX_WARNINGS_AS_ERRORS, on
# when the project is built on its own). Third-party headers come in as system
# headers and are not judged.
function(zrx_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
                         -Wnon-virtual-dtor -Woverloaded-virtual)
  if(ZRX_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# Shared libraries must resolve every symbol at link time, except in the fuzz
# build: clang leaves the sanitizer runtime to the executable there.
function(zrx_no_undefined target)
  if(NOT ZRX_FUZZ)
    target_link_options(${target} PRIVATE "LINKER:--no-undefined")
  endif()
endfunction()
