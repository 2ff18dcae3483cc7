# Compiles, without making code, the umbrella and each public header on its own, as a user does whose texts are wide and
# who leaves the HTTP library its macro `U`: a header must include what it needs, and no header of Boost under `U`. The
# part of the HTTP library that all need is compiled once for all; so each header comes after one that defines `U`.
include(${CMAKE_CURRENT_LIST_DIR}/../wide/library.cmake)
set(first ${SCRATCH}/first.h)
file(WRITE ${first} "#include <VarnelAPI/Forms/detail/HttpLibrary.h>\n#ifndef U\n#error \"U is gone\"\n#endif\n")
execute_process(COMMAND ${wide} -x c++-header ${first} -o ${first}.gch COMMAND_ERROR_IS_FATAL ANY)
file(GLOB headers RELATIVE ${SOURCE}/include ${SOURCE}/include/VarnelAPI/Forms/*/*.h)
list(FILTER headers EXCLUDE REGEX "/Coroutines\\.h$") # It is C++20, and comes first in its test.
foreach(header VarnelAPI/Forms.h VarnelAPI/Forms/kit.h ${headers})
    file(WRITE ${SCRATCH}/header.cpp "#include <${header}>\n")
    set(before)
    if(NOT header STREQUAL VarnelAPI/Forms.h)
        set(before -include ${first})
    endif()
    execute_process(COMMAND ${wide} -fsyntax-only ${before} ${SCRATCH}/header.cpp COMMAND_ERROR_IS_FATAL ANY)
endforeach()
