# What the toolchains of Debian's cross compilers have in common; CMAKE_SYSTEM_PROCESSOR says which one it is.
set(lTriplet ${CMAKE_SYSTEM_PROCESSOR}-linux-gnu)
set(CMAKE_C_COMPILER ${lTriplet}-gcc-12) # GoogleTest's project asks for one
set(CMAKE_CXX_COMPILER ${lTriplet}-g++-12)
set(CMAKE_FIND_ROOT_PATH /usr/${lTriplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR}-static;-L;/usr/${lTriplet})
