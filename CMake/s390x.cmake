# Toolchain: s390x from Debian's cross compiler, its programs run by qemu. The one big-endian machine that Debian keeps.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/DebianCross.cmake)
