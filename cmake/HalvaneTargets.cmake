# SPDX-License-Identifier: MIT
# One place for what every target shares: language level, warnings, sanitizers, linker.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1 -fno-omit-frame-pointer")

set(HALVANE_SANITIZE "" CACHE STRING "Sanitizers for everything that is built, comma separated")
if(HALVANE_SANITIZE)
    add_compile_options(-fsanitize=${HALVANE_SANITIZE} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${HALVANE_SANITIZE})
    if(HALVANE_SANITIZE STREQUAL "thread")
        add_compile_definitions(HALVANE_TSAN=1)
    endif()
endif()

# What distributions ask of a program that opens files from anywhere: checked copies, a guarded stack,
# tables that nothing overwrites once they are bound. The sanitizers check more, in their own way.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT HALVANE_SANITIZE AND NOT HALVANE_FUZZ)
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
    add_link_options(-Wl,-z,relro,-z,now)
endif()

include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=lld HALVANE_HAVE_LLD)
if(HALVANE_HAVE_LLD)
    add_link_options(-fuse-ld=lld)
endif()

# Paths of the machine that builds must not reach the program.
add_compile_options("-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")

set(HALVANE_WARNINGS
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    -Wformat=2 -Wimplicit-fallthrough -Wextra-semi)
# Warnings are errors with the compilers of Debian 12 and 13, whose libraries no longer change either.
# Another compiler, or a newer library, may warn of what is no fault.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^(12|14)\\.")
    list(APPEND HALVANE_WARNINGS -Werror)
    if(CMAKE_CXX_COMPILER_VERSION MATCHES "^14\\.")
        # GCC 14 takes the value of an empty optional for one that is used.
        list(APPEND HALVANE_WARNINGS -Wno-error=maybe-uninitialized)
    endif()
    if(HALVANE_SANITIZE)
        # Among the sanitizer's own code GCC sees values used before they are set where none are.
        list(APPEND HALVANE_WARNINGS -Wno-maybe-uninitialized)
    endif()
endif()

add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING
                        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS)

# What most sources include is read once: by the first library for the program, by the fakes for the
# tests. The preset "fuzz" and clang-tidy do without; so a source that lacks an include is found there.
set(HALVANE_PRECOMPILED
    <algorithm> <atomic> <chrono> <functional> <memory> <mutex> <optional> <span> <string> <vector>
    <QHash> <QList> <QObject> <QString> <QThreadPool> <QUrl> <QVariant>)

# halvane_library(NAME SOURCES ... [PUBLIC targets...] [PRIVATE targets...])
# A static library of one folder. Other folders' headers are reached as "folder/header.h", and only
# those of the folders it links: a wrong include fails to build.
function(halvane_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(halvane_${name} STATIC ${ARG_SOURCES})
    set_target_properties(halvane_${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(halvane_${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    target_compile_options(halvane_${name} PRIVATE ${HALVANE_WARNINGS})
    if(name STREQUAL "libav")
        target_precompile_headers(halvane_libav PRIVATE ${HALVANE_PRECOMPILED})
    else()
        target_precompile_headers(halvane_${name} REUSE_FROM halvane_libav)
    endif()
    halvane_expose_headers(halvane_${name} ${CMAKE_CURRENT_SOURCE_DIR})
    # What its classes offer to QML, for the views' type information.
    qt_extract_metatypes(halvane_${name})
endfunction()

# Gives a target an include directory that holds nothing but a link to its own folder.
function(halvane_expose_headers target folder)
    get_filename_component(base ${folder} NAME)
    set(root ${PROJECT_BINARY_DIR}/include/${base})
    file(MAKE_DIRECTORY ${root})
    file(CREATE_LINK ${folder} ${root}/${base} SYMBOLIC)
    get_target_property(kind ${target} TYPE)
    if(kind STREQUAL "INTERFACE_LIBRARY")
        target_include_directories(${target} INTERFACE ${root})
    else()
        target_include_directories(${target} PUBLIC ${root})
    endif()
endfunction()

# halvane_test(NAME SOURCES ... LINK targets... [LABELS labels...] [USES resources...] [SERIAL]
#              [TIMEOUT seconds])
# A GoogleTest program whose tests are each known to ctest. Tests that use the same resource, such
# as the keyboard focus of the display, do not run side by side; SERIAL ones run alone. Those without
# a label that names a real part of the desktop are "headless". Those that wait for another program,
# which waits for the machine in turn, have the label "waits" as well, and may be tried again. The
# target LABEL_tests builds those with a label that the sanitizers run.
function(halvane_test name)
    cmake_parse_arguments(ARG "SERIAL" "TIMEOUT" "SOURCES;LINK;LABELS;USES" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(test_${name} ${ARG_SOURCES})
    set_target_properties(test_${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(test_${name} PRIVATE ${ARG_LINK} halvane_test_support GTest::gmock)
    # The precompiled headers are a library's, whose code GCC tells apart from a program's -fPIE.
    target_compile_options(test_${name} PRIVATE ${HALVANE_WARNINGS} -fPIC)
    target_precompile_headers(test_${name} REUSE_FROM halvane_test_support)
    if(NOT ARG_LABELS MATCHES "sound|windows|system")
        list(APPEND ARG_LABELS headless)
    endif()
    foreach(label headless windows system concurrent)
        if(label IN_LIST ARG_LABELS)
            if(NOT TARGET ${label}_tests)
                add_custom_target(${label}_tests)
            endif()
            add_dependencies(${label}_tests test_${name})
        endif()
    endforeach()
    set(properties TIMEOUT ${ARG_TIMEOUT})
    if(HALVANE_SANITIZE STREQUAL "thread")
        list(APPEND properties ENVIRONMENT
             "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:halt_on_error=1")
    elseif(HALVANE_SANITIZE MATCHES "address")
        set(options
            "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")
        if(ARG_LABELS MATCHES "windows|system")
            # The toolkit and the graphics driver keep memory until the end.
            set(options "ASAN_OPTIONS=detect_leaks=0")
        endif()
        list(APPEND properties ENVIRONMENT "${options}")
    endif()
    # In one word, in which ctest's patterns find each: of a list only the first would become a label.
    list(JOIN ARG_LABELS "," labels)
    list(APPEND properties LABELS "${labels}")
    if(ARG_USES)
        list(APPEND properties RESOURCE_LOCK "${ARG_USES}")
    endif()
    if(ARG_SERIAL)
        list(APPEND properties RUN_SERIAL TRUE)
    endif()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
                         NO_PRETTY_VALUES
                         PROPERTIES ${properties})
endfunction()
