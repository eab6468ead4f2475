# The layout of objects that hosts are built against: which function stands in which slot of a virtual table. The tables
# are read from clang's layout by name, and called through by slot number in a program of either compiler.
set(lTables ${CMAKE_CURRENT_SOURCE_DIR}/VirtualTables.sh)
set(lIncludes ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/Platform)
find_program(TALBASE_LAYOUT_CLANG NAMES clang++-14 clang++ DOC "The clang that prints the layout of virtual tables")
if(TALBASE_LAYOUT_CLANG)
    add_test(NAME Layout.VirtualTablesEqualGoldenFile
        COMMAND ${lTables} golden ${TALBASE_LAYOUT_CLANG} ${lIncludes})
    # It starts a compiler of this machine, whatever machine the tests are built for.
    set_tests_properties(Layout.VirtualTablesEqualGoldenFile PROPERTIES LABELS host)
else()
    message(STATUS "No clang++: the tests that read virtual tables by name are left out")
endif()

# Compiled with the others as well, so that warnings and the naming check see it.
add_library(VirtualTables OBJECT VirtualTables.cpp)
target_compile_features(VirtualTables PRIVATE cxx_std_20)
target_include_directories(VirtualTables PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(VirtualTables PRIVATE TalBase::TalBase)
talbase_warnings(VirtualTables)

# Where a virtual function takes its object as its first argument.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|aarch64|s390x)$")
    talbase_test(VirtualSlotsTest SOURCES VirtualSlotsTest.cpp LINK TalBase::TalBase Q8::Stream)
endif()
