# Compiles every source of the library, without making code, as if its texts were wide, which they are on Windows: a
# narrow literal or stream where a text is meant does not get through. LANE says whether simdjson is there.
include(${CMAKE_CURRENT_LIST_DIR}/library.cmake)
if(LANE)
    list(APPEND wide -DVARNEL_FORMS_SIMDJSON)
endif()
file(GLOB layers ${SOURCE}/src/*)
foreach(layer ${layers})
    file(GLOB sources ${layer}/*.cpp)
    list(TRANSFORM sources REPLACE "(.+)" "#include \"\\1\"\n")
    list(JOIN sources "" all)
    get_filename_component(name ${layer} NAME)
    file(WRITE ${SCRATCH}/${name}.cpp "${all}")
    execute_process(COMMAND ${wide} -fsyntax-only -D_TURN_OFF_PLATFORM_STRING -DVARNEL_FORMS_BUILDING -I${SOURCE}/src
                            ${SCRATCH}/${name}.cpp
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# A narrow literal does not become a bool, and the compiler's message says what to write.
set(narrow ${wide} -fsyntax-only ${CMAKE_CURRENT_LIST_DIR}/narrow.cpp)
execute_process(COMMAND ${narrow} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${narrow} -DNARROW_LITERAL RESULT_VARIABLE result ERROR_VARIABLE messages)
if(result EQUAL 0 OR NOT messages MATCHES "deleted" OR NOT messages MATCHES "write_XPLATSTR_or_to_string_t")
    message(FATAL_ERROR "a narrow literal is not refused with the words that help:\n${messages}")
endif()
