# Cross-compiles for Windows with the distribution's mingw-w64 (the posix thread model has std::thread and std::mutex). The including
# file has set CMAKE_SYSTEM_PROCESSOR to i686 or x86_64.
set(CMAKE_SYSTEM_NAME Windows)
set(QVX_TRIPLE ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${QVX_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QVX_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${QVX_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${QVX_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
