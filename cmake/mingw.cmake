# Windows, x86-64, built with Debian's MinGW-w64 and run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)

# Everything goes into the one executable: no DLL of the compiler's beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

# BN_QT_WINDOWS: the folder of a static Qt for this compiler. Its tools (moc, rcc) are the host's.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES BN_QT_WINDOWS)
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${BN_QT_WINDOWS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
