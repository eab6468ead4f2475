# Writes the client that the README shows, its first cpp block as main.cpp and its cmake block as CMakeLists.txt.
#   cmake -DREADME=... -DFOLDER=... -P WriteReadmeClient.cmake
cmake_minimum_required(VERSION 3.25)

file(READ ${README} lReadme)

function(write_first_block iLanguage iFile)
    string(FIND "${lReadme}" "\n```${iLanguage}\n" lBegin)
    if(lBegin EQUAL -1)
        message(FATAL_ERROR "${README} has no block of ${iLanguage}")
    endif()
    string(LENGTH "\n```${iLanguage}\n" lFence)
    math(EXPR lBegin "${lBegin} + ${lFence}")
    string(SUBSTRING "${lReadme}" ${lBegin} -1 lRest)
    string(FIND "${lRest}" "```\n" lLength)
    string(SUBSTRING "${lRest}" 0 ${lLength} lBlock)
    file(WRITE ${FOLDER}/${iFile} "${lBlock}")
endfunction()

file(REMOVE_RECURSE ${FOLDER})
write_first_block(cpp main.cpp)
write_first_block(cmake CMakeLists.txt)
