# What every target of the project shares: include root, warnings, Qt's stricter modes, hardening, sanitizers.

include(CheckPIESupported)
check_pie_supported()

function(orvesa_target target)
    target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src")
    # -pthread comes with some libraries and not with others; precompiled headers want it everywhere or nowhere.
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -pthread)
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
        get_target_property(type ${target} TYPE)
        if(type STREQUAL "EXECUTABLE")
            set(defaults "${PROJECT_SOURCE_DIR}/cmake/SanitizerDefaults.cpp")
            target_sources(${target} PRIVATE "${defaults}")
            set_source_files_properties("${defaults}" PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
        endif()
    else()
        # Control-flow protection goes by the processor.
        set(flow "")
        if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64|i.86)$")
            set(flow -fcf-protection)
        elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
            set(flow -mbranch-protection=standard)
        endif()
        target_compile_options(${target} PRIVATE -fstack-protector-strong ${flow}
            $<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
        target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
    endif()
endfunction()

# The headers that nearly every source reads, compiled once for all libraries and once for all test programs (whose code
# is position independent in another way). This halves the time of a build with GCC 12. Compiler caches and clang-tidy
# work on single files, so they go without; the debug preset does too, and so proves that each file includes what it uses.
set(precompile ON)
if(CMAKE_CXX_COMPILER_LAUNCHER OR CMAKE_CXX_CLANG_TIDY OR APPLE)
    set(precompile OFF)
endif()
option(ORVESA_PRECOMPILED_HEADERS "Precompile the headers of the libraries that nearly every source reads" ${precompile})

set(ORVESA_PRECOMPILED
    <QCoroTask> <QByteArray> <QHash> <QObject> <QPointer> <QString> <QStringList> <QTimer> <QUrl>
    <array> <chrono> <functional> <map> <memory> <optional> <string> <string_view> <utility> <variant> <vector>)

if(ORVESA_PRECOMPILED_HEADERS)
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/precompiled.cpp" CONTENT "")
    add_library(orvesa_precompiled OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
    orvesa_target(orvesa_precompiled)
    target_link_libraries(orvesa_precompiled PRIVATE Qt6::Core QCoro6::Core)
    target_precompile_headers(orvesa_precompiled PRIVATE ${ORVESA_PRECOMPILED})
endif()

# orvesa_library(NAME source... LINK library... [MOC]): a static library of one room. MOC ones have classes with
# Q_OBJECT; a target without them would scan and compile for nothing.
function(orvesa_library name)
    cmake_parse_arguments(ARG "MOC" "" "LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    orvesa_target(${name})
    target_link_libraries(${name} PUBLIC ${ARG_LINK})
    if(ORVESA_PRECOMPILED_HEADERS)
        target_precompile_headers(${name} REUSE_FROM orvesa_precompiled)
    endif()
endfunction()

# What the test programs share, and what is precompiled for them. A test's own code takes hardly any time to run and much
# to optimize: that is left to the libraries that are tested. FORTIFY in the release build wants the lowest level.
function(orvesa_test_target target)
    orvesa_target(${target})
    target_compile_options(${target} PRIVATE $<IF:$<BOOL:${ORVESA_SANITIZE}>,-O0,$<$<CONFIG:Release>:-O1>>)
endfunction()

# orvesa_test(NAME source... LINK library... [LABELS label...] [GUI] [MOC] [ALONE]): a GoogleTest program, each of its cases
# a test of ctest. GUI ones run inside an application with widgets; ALONE ones beside no other, as other programs' pace
# is part of them.
function(orvesa_test name)
    cmake_parse_arguments(ARG "GUI;MOC;ALONE" "" "LINK;LABELS" ${ARGN})
    add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    orvesa_test_target(${name})
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    if(ARG_GUI)
        set(main orvesa_gui_test_main)
    else()
        set(main orvesa_test_main)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LINK} ${main})
    if(ORVESA_PRECOMPILED_HEADERS)
        target_precompile_headers(${name} REUSE_FROM orvesa_precompiled_test)
    endif()
    if(NOT ARG_LABELS)
        set(ARG_LABELS unit)
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}."
        PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 120 RUN_SERIAL ${ARG_ALONE})
endfunction()
