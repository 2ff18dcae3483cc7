# Compiles the test of the coroutines as PROGRAM with COMPILER, which is clang, and runs it.
get_filename_component(folder ${LIBRARY} DIRECTORY)
execute_process(COMMAND ${COMPILER} -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
                        -D_TURN_OFF_PLATFORM_STRING -I${TESTS} -I${INCLUDE}
                        ${TESTS}/kit/CoroutinesTest.cpp ${TESTS}/support/PoolAtRest.cpp -o ${PROGRAM}
                        ${SUPPORT} ${LIBRARY} -lcpprest -lssl -lcrypto -lgtest_main -lgtest -lpthread
                        -Wl,-rpath,${folder}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} COMMAND_ERROR_IS_FATAL ANY)
