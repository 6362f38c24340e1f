# The compile options of every target of the project, in one place: link `ravlin_options` privately.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

option(RAVLIN_WERROR "Treat warnings as errors" OFF)
option(RAVLIN_HARDEN "Compile with the hardening flags of a release" OFF)
set(RAVLIN_SANITIZE "" CACHE STRING "Sanitizers for all targets, for example address,undefined")

add_library(ravlin_options INTERFACE)
target_include_directories(ravlin_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_definitions(ravlin_options INTERFACE RAVLIN_VERSION="${PROJECT_VERSION}")
target_compile_options(ravlin_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wdouble-promotion -Wformat=2
    -Wimplicit-fallthrough -Wextra-semi -Wundef)
# Always errors: a `switch` that forgets a case of its enumeration, and the copying of an object whose class has a
# destructor and says nothing about copies. The compilers check the latter, since they look at copies that are made;
# clang-tidy wants five members declared even where a base or a member rules copies out.
target_compile_options(ravlin_options INTERFACE -Werror=switch -Werror=deprecated-copy-dtor)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(ravlin_options INTERFACE -Wduplicated-cond -Wlogical-op -Wsuggest-override)
endif()
if(RAVLIN_WERROR)
    target_compile_options(ravlin_options INTERFACE -Werror)
endif()
# Not every compiler has all of these: shadow stacks and branch targets go by one name on x86-64 and by another on ARM.
# The linker marks a program as ready for the former only if all its parts are, and glibc's own start files are not
# ready in every distribution (in Debian 12 they are not): then the mark is missing, although all of our code is ready.
if(RAVLIN_HARDEN)
    include(CheckCXXCompilerFlag)
    foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
        string(MAKE_C_IDENTIFIER "RAVLIN_HAS${flag}" has_flag)
        check_cxx_compiler_flag(${flag} ${has_flag})
        if(${has_flag})
            add_compile_options(${flag})  # also for what Qt generates
        endif()
    endforeach()
    target_compile_options(ravlin_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    # The standard library's own checks cost loops over every byte of a text up to two fifths, so everything else gets
    # them.
    set(has_byte_loops "$<IN_LIST:$<TARGET_PROPERTY:NAME>,ravlin_engine;ravlin_pasteboards>")
    target_compile_definitions(ravlin_options INTERFACE "$<$<NOT:${has_byte_loops}>:_GLIBCXX_ASSERTIONS>")
    target_link_options(ravlin_options INTERFACE -Wl,-z,relro,-z,now)
endif()
if(RAVLIN_SANITIZE)
    add_compile_options(-fsanitize=${RAVLIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${RAVLIN_SANITIZE})
endif()

# libFuzzer is guided by the coverage of the code under test, so that code is instrumented as well.
if(RAVLIN_BUILD_FUZZERS AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Qt in its strict dialect only: no implicit conversions from bytes, no keyword macros.
add_library(ravlin_qt_options INTERFACE)
target_compile_definitions(ravlin_qt_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
