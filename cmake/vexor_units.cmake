# Compilation units.
#
# With VEXOR_UNITY the sources of one folder are compiled together, some twenty at a time: nine tenths of compiling a
# file of a hundred lines is reading its headers. The units include by the path below ROOT, so that two checkouts have
# equal units and ccache serves both. Without it each source is a unit of its own, which finds missing includes.
#
# vexor_units(VARIABLE ROOT NAME SOURCE...): what to compile for these sources, which stand below ROOT.
function(vexor_units variable root name)
  set(${variable} ${ARGN} PARENT_SCOPE)
  if(NOT VEXOR_UNITY)
    return()
  endif()
  set(most 24)
  list(LENGTH ARGN num_files)
  # Of nearly equal length: 30 files, at most 24 at a time, are two units of 15.
  math(EXPR num_units "(${num_files} + ${most} - 1) / ${most}")
  math(EXPR length "(${num_files} + ${num_units} - 1) / ${num_units}")
  string(REPLACE / _ stem ${name})
  set(units)
  foreach(number RANGE 1 ${num_units})
    math(EXPR first "(${number} - 1) * ${length}")
    list(SUBLIST ARGN ${first} ${length} part)
    set(text "")
    foreach(source ${part})
      cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${root})
      string(APPEND text "#include \"${source}\"\n")
    endforeach()
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/units/${stem}_${number}.cpp)
    file(CONFIGURE OUTPUT ${unit} CONTENT "${text}" @ONLY)
    list(APPEND units ${unit})
  endforeach()
  set(${variable} ${units} PARENT_SCOPE)
endfunction()
