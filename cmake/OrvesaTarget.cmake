# What every target of the project shares: include root, warnings, Qt's stricter modes, hardening, sanitizers.

include(CheckPIESupported)
check_pie_supported()

function(orvesa_target target)
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src")
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(ORVESA_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CONTEXTLESS_CONNECT QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_STRICT_ITERATORS)
    if(ORVESA_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    else()
        target_compile_options(${target} PRIVATE -fstack-protector-strong -fcf-protection
            $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
        target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
    endif()
endfunction()

# orvesa_library(NAME source... LINK library...): a static library of one room.
function(orvesa_library name)
    cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_UNPARSED_ARGUMENTS})
    orvesa_target(${name})
    target_link_libraries(${name} PUBLIC ${ARG_LINK})
endfunction()

# orvesa_test(NAME source... LINK library... [LABELS label...]): a GoogleTest program, each of its cases a test of ctest.
function(orvesa_test name)
    cmake_parse_arguments(ARG "" "" "LINK;LABELS" ${ARGN})
    add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
    orvesa_target(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE ${ARG_LINK} orvesa_test_main)
    if(NOT ARG_LABELS)
        set(ARG_LABELS unit)
    endif()
    # Unit tests never open a window on whatever display is there; desktop tests bring their own.
    set(environment "")
    if(NOT "desktop" IN_LIST ARG_LABELS)
        set(environment ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}."
        PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 120 ${environment})
endfunction()
