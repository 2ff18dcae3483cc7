# Builds and runs the project of this folder. SCRATCH is a folder for it, GENERATOR and COMPILER what to build with, and
# either LIBRARY_BUILD (a build of the library, which is installed and then found), LIBRARY_TYPE (as CMake names it) and
# LIBRARY_MAJOR (of its version), or LIBRARY_SOURCE is given.
macro(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endmacro()

if(LIBRARY_BUILD)
    file(REMOVE_RECURSE ${SCRATCH})
    run(${CMAKE_COMMAND} --install ${LIBRARY_BUILD} --prefix ${SCRATCH}/installed)
    set(library -DCMAKE_PREFIX_PATH=${SCRATCH}/installed)
    if(LIBRARY_TYPE STREQUAL "SHARED_LIBRARY")
        file(GLOB_RECURSE installed ${SCRATCH}/installed/libVarnelForms.so)
        run(nm -DC --defined-only ${installed} OUTPUT_VARIABLE symbols)
        run(nm -DC --undefined-only ${installed} OUTPUT_VARIABLE needed)
        run(readelf -d ${installed} OUTPUT_VARIABLE dynamic)
        string(REGEX REPLACE "[0-9a-f]+ [A-Za-z] ([a-z -]+ (for|to) )?VarnelAPI::Forms::[^\n]*\n" "" foreign "${symbols}")
        if(foreign OR NOT symbols MATCHES "VarnelAPI::Forms::api::ApiClient::callApi")
            message(FATAL_ERROR "the library exports what is not its own, or not what is:\n${foreign}")
        endif()
        if(NOT needed MATCHES "pplx::")
            message(FATAL_ERROR "the library's needs can't be listed:\n${needed}")
        endif()
        if(needed MATCHES "pthread_create|std::thread")
            message(FATAL_ERROR "the library starts threads of its own:\n${needed}")
        endif()
        if(NOT dynamic MATCHES "SONAME[^\n]*\\[libVarnelForms\\.so\\.${LIBRARY_MAJOR}\\]")
            message(FATAL_ERROR "the library's SONAME does not end in its major version:\n${dynamic}")
        endif()
    endif()
else()
    # Static, as the installed one is not. Quick to compile; and it is kept, so that a second run compiles only what
    # changed.
    set(library -DVARNEL_FORMS_SOURCE=${LIBRARY_SOURCE} -DBUILD_SHARED_LIBS=OFF -DCMAKE_UNITY_BUILD_BATCH_SIZE=64)
endif()
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${SCRATCH}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    ${library})
run(${CMAKE_COMMAND} --build ${SCRATCH}/build --target consumer)
run(${SCRATCH}/build/consumer)
