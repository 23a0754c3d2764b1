# Run at every build: writes the source that holds the commit's name, if it has changed.
#   cmake -D SOURCE=tree -D OUTPUT=file [-D COMMIT=name] -P BuildCommit.cmake
# COMMIT is for sources without their history.

if(NOT COMMIT)
    execute_process(COMMAND git -C "${SOURCE}" rev-parse --short=10 HEAD
        OUTPUT_VARIABLE COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
    if(failed)
        set(COMMIT "")
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
