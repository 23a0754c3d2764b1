# Run at every build: writes the source that holds the commit's name, if it has changed.
#   cmake -D SOURCE=tree -D OUTPUT=file [-D COMMIT=name] -P BuildCommit.cmake
# COMMIT is for sources without their history; an archive that git made has the name in commit.txt.

if(NOT COMMIT)
    # The history of these sources, not that of a repository that they have been unpacked in, whose prefix has a name.
    execute_process(COMMAND git -C "${SOURCE}" rev-parse --show-prefix --short=10 HEAD
        OUTPUT_VARIABLE answer ERROR_QUIET RESULT_VARIABLE failed)
    if(NOT failed AND answer MATCHES "^\n([0-9a-f]+)\n$")
        set(COMMIT "${CMAKE_MATCH_1}")
    endif()
endif()
if(NOT COMMIT AND EXISTS "${SOURCE}/cmake/commit.txt")
    file(READ "${SOURCE}/cmake/commit.txt" archived)
    if(archived MATCHES "^([0-9a-f]+)\n$")
        string(SUBSTRING "${CMAKE_MATCH_1}" 0 10 COMMIT)
    endif()
endif()
if(NOT COMMIT MATCHES "^[0-9A-Za-z.+~-]*$")
    message(FATAL_ERROR "A commit's name is letters and digits: ${COMMIT}")
endif()
set(text "#include \"App/BuildCommit.h\"\n\nQString orvesa::buildCommit()\n{\n    return QStringLiteral(\"${COMMIT}\");\n}\n")
set(before "")
if(EXISTS "${OUTPUT}")
    file(READ "${OUTPUT}" before)
endif()
if(NOT before STREQUAL text)
    file(WRITE "${OUTPUT}" "${text}")
endif()
