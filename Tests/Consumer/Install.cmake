# Installs a build into an empty prefix and looks at what is there.
#   cmake -DBUILD=... -DPREFIX=... -DHEADERS=... [-DMOVED=...] -P Install.cmake
# HEADERS: every public header. MOVED: where the whole prefix goes afterwards, to show that nothing points back to it.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${PREFIX} ${MOVED})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE lInstalled RELATIVE ${PREFIX}/include ${PREFIX}/include/*)
list(SORT lInstalled)
list(SORT HEADERS)
if(NOT lInstalled STREQUAL HEADERS)
    message(FATAL_ERROR "Installed under include:\n${lInstalled}\nbut the public headers are:\n${HEADERS}")
endif()
if(MOVED)
    file(RENAME ${PREFIX} ${MOVED})
endif()
