# BN_ASIO: the folder of Asio's headers. When built on Linux they come from the host's package: they
# are for any system, but nothing else of the host's headers may be seen beside them.
if(CMAKE_CROSSCOMPILING)
    set(BN_ASIO ${CMAKE_CURRENT_BINARY_DIR}/asio)
    file(MAKE_DIRECTORY ${BN_ASIO})
    foreach(nombre asio asio.hpp)
        file(CREATE_LINK /usr/include/${nombre} ${BN_ASIO}/${nombre} SYMBOLIC)
    endforeach()
else()
    find_path(BN_ASIO asio.hpp REQUIRED)
endif()
