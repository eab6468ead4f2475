# Refuses a document that shows another source, or another output, than the file and the program really have.
#   cmake -DDOCUMENT=... -DPROGRAM=... [-DSOURCE=... [-DLINES=15]] -P CheckProgram.cmake
cmake_minimum_required(VERSION 3.25)

file(READ ${DOCUMENT} lDocument)

function(check_block iLanguage iText iWhat)
    set(lFence "```")
    string(FIND "${lDocument}" "\n${lFence}${iLanguage}\n${iText}${lFence}\n" lPlace)
    if(lPlace EQUAL -1)
        message(FATAL_ERROR "${DOCUMENT} has no '${iLanguage}' block that is ${iWhat}:\n${iText}")
    endif()
endfunction()

if(SOURCE)
    file(READ ${SOURCE} lSource)
    check_block(cpp "${lSource}" "the file ${SOURCE}")
    string(REGEX REPLACE "[^\n]" "" lNewLines "${lSource}")
    string(LENGTH "${lNewLines}" lLines)
    if(LINES AND NOT lLines EQUAL LINES)
        message(FATAL_ERROR "${SOURCE} has ${lLines} lines instead of ${LINES}")
    endif()
endif()

execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE lOutput COMMAND_ERROR_IS_FATAL ANY)
if(lOutput STREQUAL "")
    message(FATAL_ERROR "${PROGRAM} prints nothing")
endif()
check_block(text "${lOutput}" "the output of ${PROGRAM}")
