# Compiles every source of the library, without making code, as if its texts were wide, which they are on Windows: a
# narrow literal or stream where a text is meant does not get through. The JSON header of the HTTP library chooses its
# text type by platform; a copy of it, in SCRATCH, is made to choose the wide one here.
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

foreach(layer api model)
    file(GLOB sources ${SOURCE}/src/${layer}/*.cpp)
    list(TRANSFORM sources REPLACE "(.+)" "#include \"\\1\"\n")
    list(JOIN sources "" all)
    file(WRITE ${SCRATCH}/${layer}.cpp "${all}")
    execute_process(COMMAND ${COMPILER} -std=c++17 -fsyntax-only -D_UTF16_STRINGS -D_TURN_OFF_PLATFORM_STRING
                            -DVARNEL_FORMS_BUILDING -I${SCRATCH} -I${SOURCE}/include -I${SOURCE}/src
                            ${SCRATCH}/${layer}.cpp
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
