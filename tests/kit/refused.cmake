# Compiles, without making code, what must not compile, and looks at the reason; and first, what must. The headers are
# compiled once for all.
set(first ${SCRATCH}/first.h)
file(WRITE ${first} "#include <VarnelAPI/Forms/api/AttachmentApi.h>\n#include <VarnelAPI/Forms/api/BaseClassApi.h>\n\
#include <VarnelAPI/Forms/api/FileApi.h>\n\
#include <VarnelAPI/Forms/kit/Filters.h>\n#include <VarnelAPI/Forms/kit/Pages.h>\n\
using namespace VarnelAPI::Forms;\nusing Issue = model::DynamicSchemaBaseClass;\nusing File = model::DynamicSchemaAttachment;\n")
set(compile ${COMPILER} -std=c++17 -I${SOURCE}/include)
execute_process(COMMAND ${compile} -x c++-header ${first} -o ${first}.gch COMMAND_ERROR_IS_FATAL ANY)

function(try result errors statement)
    file(WRITE ${SCRATCH}/statement.cpp
         "void f(const api::BaseClassApi& issues) { (void)issues; (void)(${statement}); }\n")
    execute_process(COMMAND ${compile} -fsyntax-only -include ${first} ${SCRATCH}/statement.cpp
                    RESULT_VARIABLE code ERROR_VARIABLE text)
    set(${result} ${code} PARENT_SCOPE)
    set(${errors} "${text}" PARENT_SCOPE)
endfunction()

set(list "kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass, _XPLATSTR(\"L\"))")
foreach(statement "Issue::closed == true && Issue::latitude < 1 && Issue::status == _XPLATSTR(\"Open\")"
                  "${list}.filter(Issue::closed == true)")
    try(code errors "${statement}")
    if(code)
        message(FATAL_ERROR "${statement} should compile:\n${errors}")
    endif()
endforeach()

set(own "a property is compared with a value of its own type")
foreach(row "Issue::closed == 1|${own}" "Issue::closed == _XPLATSTR(\"true\")|${own}" "Issue::status == true|${own}"
            "Issue::status == 1|${own}" "Issue::latitude == _XPLATSTR(\"1\")|${own}" "Issue::latitude == true|${own}"
            "Issue::dueDate < _XPLATSTR(\"2024-01-01\")|${own}" "Issue::dueDate < 20240101|${own}"
            "model::DynamicSchemaFile::size < 1.5|${own}" "Issue::modelPinLocation == 1|${own}"
            "Issue::closed == true && File::name == _XPLATSTR(\"x\")|no match"
            "kit::contains(Issue::closed, _XPLATSTR(\"x\"))|only texts can be searched"
            "kit::names(Issue::status, File::name)|all names are those of one entity"
            "${list}.filter(File::name == _XPLATSTR(\"x\"))|the filter is about another entity"
            "kit::pages(issues, &api::BaseClassApi::select_DynamicSchemaBaseClass)|pages takes a select operation"
            "kit::pages(issues, &api::BaseClassApi::get_DynamicSchemaBaseClass_instanceId, _XPLATSTR(\"L\"))|pages takes")
    string(REGEX MATCH "^(.*)\\|([^|]*)$" row "${row}")
    set(statement "${CMAKE_MATCH_1}")
    set(reason "${CMAKE_MATCH_2}")
    try(code errors "${statement}")
    if(NOT code OR NOT errors MATCHES "${reason}")
        message(FATAL_ERROR "${statement} should be refused, because: ${reason}\n${errors}")
    endif()
endforeach()
