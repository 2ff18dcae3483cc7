# Installs a build of the library and of the local repository, and builds and runs the project of this folder with them.
# SCRATCH is a folder for it, LIBRARY_BUILD the build, GENERATOR and COMPILER what to build with.
macro(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endmacro()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${LIBRARY_BUILD} --prefix ${SCRATCH}/installed)
run(${SCRATCH}/installed/bin/varnel-forms-repository --help)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${SCRATCH}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_PREFIX_PATH=${SCRATCH}/installed)
run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
run(${SCRATCH}/build/application_test)
