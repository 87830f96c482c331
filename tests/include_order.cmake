# Checks that every unit includes only units that start before it (or itself), that
# platform/ stands under every unit but the message table and the notifier registry it
# broadcasts through, and that platform/ never reaches up into a unit. The exception type
# (platform/kvException.h) depends on nothing of ours and stands under everything.
# Run as: cmake -DSOURCE=<source tree> -P include_order.cmake
set(start_order ideApi ideConsts ideHook ideLib ideSystem ideCommon ideCtrls ideStdCtl ideVCLLib
    ideRerrDlg ideGenReg ideGen idePalet ideEdit idePEdit ideStrLEd ideGlEd ideOInsp ideDTree ideTree
    ideTSLite ideTSrc ideTreeInsp ideTreeMod ideTreeEd ideActList ideActListReg ideEditReg ideOIReg
    ideTreeInspReg IDEInspReg kvIDEInspD5)
# What platform/ may use of the units: the message table and the notifier registry.
set(platform_may_use foundation/ideConsts.h foundation/ideSystem_messages.h foundation/ideSystem_inotifier.h
    foundation/ideSystem_notifierregistry.h foundation/ideSystem_notifiers.h)

# The unit of a file: its name up to the first '_' or '.'; "platform" for our stand-ins.
function(unit_of path out)
  get_filename_component(name ${path} NAME)
  if(path MATCHES "^platform/")
    set(${out} platform PARENT_SCOPE)
  else()
    string(REGEX REPLACE "[_.].*$" "" unit ${name})
    set(${out} ${unit} PARENT_SCOPE)
  endif()
endfunction()

file(GLOB_RECURSE files RELATIVE ${SOURCE} ${SOURCE}/*.h ${SOURCE}/*.cpp)
list(FILTER files INCLUDE REGEX "^(platform|foundation|shell|design|treesrc|inspector|propedit|treeview|edits|panels|persist|palette|install)/")
set(violations "")
foreach(file IN LISTS files)
  unit_of(${file} unit)
  list(FIND start_order ${unit} rank)
  if(NOT unit STREQUAL "platform" AND rank LESS 0)
    string(APPEND violations "\n  ${file}: unit ${unit} is not in the start order")
    continue()
  endif()
  file(STRINGS ${SOURCE}/${file} includes REGEX "^#include \"[^\"]+\"")
  foreach(line IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)\".*$" "\\1" included ${line})
    if(NOT EXISTS ${SOURCE}/${included} OR included MATCHES "^(tests|hosts|bench)/" OR included STREQUAL "kv_export.h")
      continue()
    endif()
    unit_of(${included} other)
    if(included STREQUAL "platform/kvException.h")
      continue()
    elseif(other STREQUAL "platform")
      if(unit STREQUAL "ideConsts" OR file MATCHES "^foundation/ideSystem_(messages|inotifier|notifierregistry|notifiers)")
        string(APPEND violations "\n  ${file} includes ${included}: the message table and the notifier registry stand under platform/")
      endif()
    elseif(unit STREQUAL "platform")
      list(FIND platform_may_use ${included} allowed)
      if(allowed LESS 0)
        string(APPEND violations "\n  ${file} includes ${included}: platform/ stands under the units")
      endif()
    else()
      list(FIND start_order ${other} other_rank)
      if(other_rank GREATER rank)
        string(APPEND violations "\n  ${file} (${unit}) includes ${included} (${other}), which starts later")
      endif()
    endif()
  endforeach()
endforeach()
if(violations)
  message(FATAL_ERROR "include order broken:${violations}")
endif()
list(LENGTH files count)
message(STATUS "include order: ${count} files checked")
