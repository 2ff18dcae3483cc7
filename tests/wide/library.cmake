# Lets the HTTP library's texts be wide, which they are on Windows: its JSON header chooses the text type by platform,
# and a copy of it, in SCRATCH, is made to choose the wide one here. `wide` is the compiler, with what makes it see that.
file(WRITE ${SCRATCH}/json.cpp "#include <cpprest/json.h>\n")
execute_process(COMMAND ${COMPILER} -std=c++17 -M ${SCRATCH}/json.cpp OUTPUT_VARIABLE headers
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "[^ ]+/cpprest/json\\.h" header "${headers}")
file(READ ${header} text)
string(REPLACE "#ifdef _WIN32" "#ifdef _UTF16_STRINGS" patched "${text}")
if(patched STREQUAL text)
    message(FATAL_ERROR "${header} no longer chooses its text type as expected")
endif()
file(WRITE ${SCRATCH}/cpprest/json.h "${patched}")
set(wide ${COMPILER} -std=c++17 -D_UTF16_STRINGS -I${SCRATCH} -I${SOURCE}/include)
