# Precompiled headers: those of the C++ library, GMP and, for tests, GoogleTest. Never those of vexor, or each change of
# one would compile everything again.
#
# vexor_pch_of_library(TARGET), vexor_pch_of_tests(TARGET): TARGET is compiled with one of the two precompiled headers.
# The preset "clang" does without and so finds what a file fails to include.
#
# A precompiled header fits only sources that are compiled with the same flags. Programs get -fPIC like the library, so
# that two are enough.
set(VEXOR_PCH_HEADERS
  <algorithm> <array> <cstdint> <cstdio> <cstdlib> <cstring> <functional> <iostream> <limits> <memory> <sstream>
  <string> <string_view> <type_traits> <utility> <vector> <gmp.h>)

function(vexor_make_pch name)
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "// Nothing but the header.\n" @ONLY)
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE vexor_flags)
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

function(vexor_pch_of_library target)
  if(VEXOR_PCH)
    if(NOT TARGET vexor_pch)
      vexor_make_pch(vexor_pch ${VEXOR_PCH_HEADERS})
    endif()
    target_compile_options(${target} PRIVATE -fPIC)
    target_precompile_headers(${target} REUSE_FROM vexor_pch)
  endif()
endfunction()

function(vexor_pch_of_tests target)
  if(VEXOR_PCH)
    if(NOT TARGET vexor_test_pch)
      vexor_make_pch(vexor_test_pch ${VEXOR_PCH_HEADERS} <map> <random> <set> <gtest/gtest.h>)
      target_link_libraries(vexor_test_pch PRIVATE vexor_unit_flags GTest::gtest)
    endif()
    target_compile_options(${target} PRIVATE -fPIC)
    target_precompile_headers(${target} REUSE_FROM vexor_test_pch)
  endif()
endfunction()
