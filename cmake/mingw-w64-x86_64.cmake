# Cross-builds the module for 64-bit Windows with Debian's mingw-w64. The -posix compilers: the
# default ones use the win32 thread model, which has no std::mutex or std::thread in GCC 12.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(ORBEL_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ORBEL_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ORBEL_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ORBEL_MINGW_TRIPLET}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ORBEL_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
