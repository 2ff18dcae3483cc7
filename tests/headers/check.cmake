# Compiles, without making code, each header of the models on its own: it must include the headers of the library that
# it needs. Those of the HTTP library are compiled once for all. (An API header comes first in its source.)
set(others ${SCRATCH}/others.h)
file(WRITE ${others} "#include <cpprest/asyncrt_utils.h>\n#include <cpprest/json.h>\n")
set(compile ${COMPILER} -std=c++17 -I${SOURCE}/include)
execute_process(COMMAND ${compile} -x c++-header ${others} -o ${others}.gch COMMAND_ERROR_IS_FATAL ANY)
file(GLOB headers RELATIVE ${SOURCE}/include ${SOURCE}/include/VarnelAPI/Forms/model/*.h
     ${SOURCE}/include/VarnelAPI/Forms/detail/*.h)
foreach(header ${headers})
    file(WRITE ${SCRATCH}/header.cpp "#include <${header}>\n")
    execute_process(COMMAND ${compile} -fsyntax-only -include ${others} ${SCRATCH}/header.cpp COMMAND_ERROR_IS_FATAL ANY)
endforeach()
