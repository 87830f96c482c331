# Installs the package into a fresh prefix, checks what the prefix holds, then configures,
# builds and runs the consumer program against it.
# Takes SOURCE (the source tree), BUILD (its build tree), WORK (a scratch folder), CXX (the
# compiler) and FLAGS (compile and link flags the package was built with, e.g. sanitizers).
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
set(prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})

file(GLOB_RECURSE private RELATIVE ${prefix} ${prefix}/*_p.h)
if(private)
  message(FATAL_ERROR "private headers installed: ${private}")
endif()
file(GLOB_RECURSE installed ${prefix}/*.h ${prefix}/*.cmake ${prefix}/bin/*)
foreach(file IN LISTS installed)
  file(STRINGS ${file} hits REGEX "${SOURCE}|${BUILD}")
  if(hits)
    message(FATAL_ERROR "${file} names the source or build tree: ${hits}")
  endif()
endforeach()

run(${CMAKE_COMMAND} -S ${SOURCE}/tests/consumer -B ${WORK}/build -G Ninja
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK}/build)
execute_process(COMMAND ${WORK}/build/consumer RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
message("${out}")
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "the consumer failed (${rc})")
endif()
