# The Debian packages, by CPack, of the four components. scripts/packages builds and tries them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME varnel-forms)
# A stand-in: whoever gives packages away says who answers for them (scripts/packages, DEBFULLNAME and DEBEMAIL).
set(CPACK_PACKAGE_CONTACT "Varnel Forms developers <developers@varnel-forms.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/stage.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE varnel-forms)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(same_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

# Named by the SOVERSION. What is added to the interface comes with a new version, which programs then need.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libvarnel-forms${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_SYMBOLS ${PROJECT_BINARY_DIR}/symbols)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/triggers ${CPACK_SYMBOLS})
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "client library for the Varnel Forms service\n\
Typed, task-based access to a repository of forms and issues over HTTP.\n\
\n\
This package has what programs run with: the library, and the transport\n\
that keeps connections.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libvarnel-forms-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
# What the headers include, and what find_package looks for.
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
    "libvarnel-forms${PROJECT_VERSION_MAJOR} ${same_version}, libcpprest-dev, libboost-dev, libssl-dev")
# The same of the components Curl and testing.
set(CPACK_DEBIAN_DEV_PACKAGE_RECOMMENDS "libcurl4-openssl-dev, libsqlite3-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "client library for the Varnel Forms service (development files)\n\
Typed, task-based access to a repository of forms and issues over HTTP.\n\
\n\
This package has what programs are built with, and the local repository as\n\
a library for their tests.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME varnel-forms-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libvarnel-forms${PROJECT_VERSION_MAJOR} ${same_version}")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "command line and local repository for the Varnel Forms service\n\
varnel-forms does from a shell what the client library does from a program:\n\
it lists, counts, reads and changes forms, issues and their files.\n\
\n\
varnel-forms-repository serves the same protocol from one database file, so\n\
that applications can be tried and tested without the service.")

include(CPack)
cpack_add_component_group(dev)
cpack_add_component(development GROUP dev)
cpack_add_component(testing GROUP dev)
