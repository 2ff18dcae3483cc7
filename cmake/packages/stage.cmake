# Gives each staged package what Debian wants of it besides the files of its component: copyright, changelogs, compressed
# manual pages. CPack runs it before it packs.
macro(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endmacro()
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # SOURCE_DATE_EPOCH, if that is set
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
foreach(group RUNTIME DEV TOOLS)
    string(TOLOWER ${group} folder)
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${folder}/usr/share)
    set(doc ${share}/doc/${CPACK_DEBIAN_${group}_PACKAGE_NAME})
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc})
    configure_file(${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md ${doc}/changelog COPYONLY)
    file(WRITE ${doc}/changelog.Debian "${CPACK_PACKAGE_NAME} (${version}) unstable; urgency=medium\n\n"
                                       "  * See changelog.gz for what changed in the library and its tools.\n\n"
                                       " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    if(group STREQUAL "TOOLS")
        run(help2man --no-info --version-string=${CPACK_PACKAGE_VERSION} --name "local forms and issues repository"
            --output ${share}/man/man1/varnel-forms-repository.1
            ${CPACK_TEMPORARY_DIRECTORY}/${folder}/usr/bin/varnel-forms-repository)
    endif()
    if(group STREQUAL "RUNTIME")
        # Which version brought which symbol: all are of this one, until a later one keeps this file and adds to it.
        run(dpkg-gensymbols -q -p${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} -v${CPACK_PACKAGE_VERSION}
            -P${CPACK_TEMPORARY_DIRECTORY}/${folder} -O${CPACK_SYMBOLS})
    endif()
    file(GLOB compressed ${doc}/changelog* ${share}/man/man1/*)
    run(gzip -9 --no-name --force ${compressed})
endforeach()
