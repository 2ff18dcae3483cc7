# Builds and runs the project of this folder. SCRATCH is a folder for it, GENERATOR and COMPILER what to build with, and
# either LIBRARY_BUILD (a build of the library, which is installed and then found) or LIBRARY_SOURCE is given.
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(LIBRARY_BUILD)
    file(REMOVE_RECURSE ${SCRATCH})
    run(${CMAKE_COMMAND} --install ${LIBRARY_BUILD} --prefix ${SCRATCH}/installed)
    set(library -DCMAKE_PREFIX_PATH=${SCRATCH}/installed)
else()
    # Quick to compile; and it is kept, so that a second run compiles only what changed.
    set(library -DVARNEL_FORMS_SOURCE=${LIBRARY_SOURCE} -DCMAKE_UNITY_BUILD_BATCH_SIZE=64)
endif()
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${SCRATCH}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    ${library})
run(${CMAKE_COMMAND} --build ${SCRATCH}/build --target consumer)
run(${SCRATCH}/build/consumer)
