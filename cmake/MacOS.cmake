# What a build on macOS needs besides: Objective-C++, a standard library with stop tokens, and no benchmarks, which
# measure on a private X11 desktop.

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(ORVESA_BENCH OFF)

include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_FLAGS "-std=c++20")
set(uses_stop_tokens "#include <stop_token>\nint main() { std::stop_source source; return source.get_token().stop_requested(); }")
check_cxx_source_compiles("${uses_stop_tokens}" ORVESA_HAS_STOP_TOKENS)
if(NOT ORVESA_HAS_STOP_TOKENS)
    # Some versions of the library have them behind this option.
    set(CMAKE_REQUIRED_FLAGS "-std=c++20 -fexperimental-library")
    check_cxx_source_compiles("${uses_stop_tokens}" ORVESA_HAS_EXPERIMENTAL_STOP_TOKENS)
    if(NOT ORVESA_HAS_EXPERIMENTAL_STOP_TOKENS)
        message(FATAL_ERROR "This compiler's standard library has no <stop_token>. Homebrew's llvm has one: "
            "-DCMAKE_CXX_COMPILER=$(brew --prefix llvm)/bin/clang++ "
            "-DCMAKE_OBJCXX_COMPILER=$(brew --prefix llvm)/bin/clang++")
    endif()
    add_compile_options(-fexperimental-library)
    add_link_options(-fexperimental-library)
endif()
unset(CMAKE_REQUIRED_FLAGS)
