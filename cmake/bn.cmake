# Helpers for the rooms' CMakeLists: every library and program of the house is made by these two.

find_package(Threads REQUIRED)

function(bn_ajustar target)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_features(${target} PUBLIC cxx_std_20)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 $<$<BOOL:${BN_WERROR}>:/WX>)
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                 $<$<BOOL:${BN_WERROR}>:-Werror>)
    endif()
    if(WIN32)
        target_compile_definitions(${target} PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
                                                     WINVER=0x0A00 _WIN32_WINNT=0x0A00)
    endif()
    if(BN_SANITIZE)
        target_compile_options(${target} PUBLIC -fsanitize=${BN_SANITIZE} -fno-sanitize-recover=all
                                                -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=${BN_SANITIZE})
    endif()
endfunction()

# bn_biblioteca(name SOURCES... [PUBLIC libs...])
function(bn_biblioteca name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    bn_ajustar(${name})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()

# bn_prueba(name SOURCES... LIBS...): one test program, each of its cases a CTest test. Under an
# emulator, where starting a program takes longer than most cases, the whole program is one.
function(bn_prueba name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    bn_ajustar(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} bn_soporte GTest::gmock GTest::gtest_main)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT 300)
    else()
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
    endif()
endfunction()
