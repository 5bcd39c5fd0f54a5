# Compiler flags of all targets, carried by one interface library.
add_library(vexor_flags INTERFACE)

set(VEXOR_WARNINGS -Wall -Wextra -Wshadow -Wimplicit-fallthrough -pedantic)
set(VEXOR_CXX_WARNINGS -Wnon-virtual-dtor -Wsuggest-override)
# At -O3 g++ 12 takes "text" + std::string for an overlapping copy of impossible size (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  list(APPEND VEXOR_CXX_WARNINGS -Wno-restrict)
endif()
target_compile_options(vexor_flags INTERFACE
  ${VEXOR_WARNINGS}
  $<$<COMPILE_LANGUAGE:CXX>:${VEXOR_CXX_WARNINGS}>
  $<$<BOOL:${VEXOR_WERROR}>:-Werror>
  # C callers may stand between two C++ frames: exceptions must be able to pass them.
  $<$<COMPILE_LANGUAGE:C>:-fexceptions>)

if(VEXOR_DEBUG)
  target_compile_definitions(vexor_flags INTERFACE VEXOR_DEBUG=1)
endif()

if(VEXOR_SANITIZE)
  set(VEXOR_SANITIZE_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(vexor_flags INTERFACE ${VEXOR_SANITIZE_FLAGS})
  target_link_options(vexor_flags INTERFACE ${VEXOR_SANITIZE_FLAGS})
endif()

# The fuzzers need the library's own code instrumented for coverage.
if(VEXOR_FUZZ)
  target_compile_options(vexor_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
