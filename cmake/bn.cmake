# Helpers for the rooms' CMakeLists: every library and program of the house is made by these two.

find_package(Threads REQUIRED)

function(bn_ajustar target)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    if(BN_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
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

# bn_prueba(name SOURCES... LIBS...): one test program, each of its cases a CTest test.
function(bn_prueba name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    bn_ajustar(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} bn_soporte GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
