# Targets "format" (rewrites the sources), "tidy" and "tidy_all" (report); present where the tools are.
file(GLOB_RECURSE all_sources CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/src/*.h ${PROJECT_SOURCE_DIR}/src/*.cpp
    ${PROJECT_SOURCE_DIR}/tools/*.h ${PROJECT_SOURCE_DIR}/tools/*.cpp ${PROJECT_SOURCE_DIR}/tests/*.h
    ${PROJECT_SOURCE_DIR}/tests/*.cpp ${PROJECT_SOURCE_DIR}/bench/*.h ${PROJECT_SOURCE_DIR}/bench/*.cpp
    ${PROJECT_SOURCE_DIR}/examples/*.c ${PROJECT_SOURCE_DIR}/tests/*.c)
find_program(CLANG_FORMAT clang-format)
if(CLANG_FORMAT)
    add_custom_target(format COMMAND ${CLANG_FORMAT} -i ${all_sources} VERBATIM)
endif()
find_program(RUN_CLANG_TIDY run-clang-tidy)
if(RUN_CLANG_TIDY)
    # Each file of the command takes ten times as long, for the libraries that it includes: "tidy_all" has those as well.
    set(tidy ${RUN_CLANG_TIDY} -quiet -p ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}/src/)
    add_custom_target(tidy COMMAND ${tidy} VERBATIM)
    add_custom_target(tidy_all COMMAND ${tidy} ${PROJECT_SOURCE_DIR}/tools/ VERBATIM)
endif()
