# Cross build for Windows with mingw-w64. The posix thread model is the one that has std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${KV_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KV_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${KV_TRIPLET}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${KV_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
