# bn_asio: Asio's headers, alone.
add_library(bn_asio INTERFACE)
target_compile_definitions(bn_asio INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED)
if(NOT WIN32)
    return()
endif()

target_link_libraries(bn_asio INTERFACE ws2_32 mswsock)
if(CMAKE_CROSSCOMPILING)
    # The host's package: Asio's headers are for any system, but nothing else of the host's may be
    # seen beside them.
    set(BN_ASIO ${CMAKE_CURRENT_BINARY_DIR}/asio)
    file(MAKE_DIRECTORY ${BN_ASIO})
    foreach(nombre asio asio.hpp)
        file(CREATE_LINK /usr/include/${nombre} ${BN_ASIO}/${nombre} SYMBOLIC)
    endforeach()
else()
    find_path(BN_ASIO asio.hpp REQUIRED)
endif()
target_include_directories(bn_asio SYSTEM INTERFACE ${BN_ASIO})
