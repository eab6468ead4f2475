# The client in both language versions that a host may use, and a test that runs each: whatever way a host takes to the
# library, it ends here. After enable_testing().
#   talbase_clients()
function(talbase_clients)
    set(CMAKE_NO_SYSTEM_FROM_IMPORTED ON) # warnings in the installed headers are warnings in the client
    foreach(lVersion IN ITEMS 17 20)
        set(lClient client-as-c++${lVersion})
        add_executable(${lClient} ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Client.cpp)
        set_target_properties(${lClient} PROPERTIES
            CXX_STANDARD ${lVersion} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
        target_compile_definitions(${lClient} PRIVATE CLIENT_CXX_STANDARD=${lVersion})
        target_compile_options(${lClient} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
        target_link_libraries(${lClient} PRIVATE TalBase::TalBase Q8::Stream)
        add_test(NAME ${lClient} COMMAND ${lClient})
    endforeach()
endfunction()
