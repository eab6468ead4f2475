# Toolchain: 64-bit ARM from Debian's cross compiler, its programs run by qemu. Wide characters are unsigned there and a
# thread's least stack is 128 KiB.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake)
