# The documents say what the library does: their tables are run, and the README's client is built from its own blocks.
get_property(lLibraries GLOBAL PROPERTY TALBASE_LIBRARIES)
set(lLinks "")
foreach(lLibrary IN LISTS lLibraries)
    string(APPEND lLinks "lib$<TARGET_PROPERTY:${lLibrary},OUTPUT_NAME>")
    get_property(lOthers TARGET ${lLibrary} PROPERTY INTERFACE_LINK_LIBRARIES)
    foreach(lOther IN LISTS lOthers)
        string(APPEND lLinks " lib$<TARGET_PROPERTY:${lOther},OUTPUT_NAME>")
    endforeach()
    string(APPEND lLinks "\n")
endforeach()
file(GENERATE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/Links.txt CONTENT "${lLinks}")
talbase_test(DocumentsTest
    SOURCES
        Documents/ArchitectureTest.cpp
        Documents/BagProvocations.cpp
        Documents/ComingFromTest.cpp
        Documents/Document.cpp
        Documents/ErrorsTest.cpp
        Documents/LimitsTest.cpp
        Documents/LinksTest.cpp
        Documents/Provocations.cpp
        Documents/Provoker.cpp
        Documents/TextFormatTest.cpp
    LINK TalBaseInside Q8::Stream
    DEFINITIONS TALBASE_LINKS="${CMAKE_CURRENT_BINARY_DIR}/Links.txt")

# What Docs/Limits.md says of time.
# With a sanitizer a library shows more, and needs less of what it is linked with.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(lFiles "")
    foreach(lLibrary IN LISTS lLibraries)
        list(APPEND lFiles $<TARGET_FILE:${lLibrary}>)
    endforeach()
    set(lScript ${CMAKE_CURRENT_SOURCE_DIR}/Documents/shown-symbols.sh)
    add_test(NAME ArchitectureDocument.LibrariesShowNothingOfTheStandardLibrary
        COMMAND ${lScript} symbols ${CMAKE_NM} ${lFiles})
    add_test(NAME ArchitectureDocument.LibrariesNeedWhatTheyAreLinkedWith
        COMMAND ${lScript} links ${CMAKE_READELF} ${CMAKE_CURRENT_BINARY_DIR}/Links.txt ${lFiles})
    set_tests_properties(ArchitectureDocument.LibrariesShowNothingOfTheStandardLibrary
        ArchitectureDocument.LibrariesNeedWhatTheyAreLinkedWith PROPERTIES LABELS host) # without an emulator
endif()

talbase_test(GrowthTest
    SOURCES
        GrowthTest.cpp
        ../../Benchmarks/Collisions.cpp
        ../../Benchmarks/DepthCases.cpp
        ../../Benchmarks/GrowthCases.cpp
        ../../Benchmarks/SmallStack.cpp
        ../../Benchmarks/Texts.cpp
    LINK TalBase::TalBase Q8::Stream)

# The code in the documents, and what it prints, is that of the programs that the examples build.
if(TALBASE_BUILD_EXAMPLES)
    get_property(lPrograms GLOBAL PROPERTY TALBASE_SHOWN_PROGRAMS)
    get_property(lTargets GLOBAL PROPERTY TALBASE_SHOWN_TARGETS)
    set(lList ${CMAKE_CURRENT_BINARY_DIR}/ShownPrograms.txt)
    file(GENERATE OUTPUT ${lList} CONTENT "${lPrograms}")
    set(lScript ${CMAKE_CURRENT_SOURCE_DIR}/Documents/ShownCode.sh)
    file(GLOB lDocuments CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
        ${PROJECT_SOURCE_DIR}/*.md ${PROJECT_SOURCE_DIR}/*/*.md ${PROJECT_SOURCE_DIR}/*/*/*.md)
    list(FILTER lDocuments EXCLUDE REGEX "^build/")
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " lEmulator)
    set(lCommand ${CMAKE_COMMAND} -E env "TALBASE_EMULATOR=${lEmulator}" ${lScript})
    foreach(lDocument IN LISTS lDocuments)
        add_test(NAME Documents.${lDocument}ShowsRealCode COMMAND ${lCommand} check ${lList} ${lDocument})
    endforeach()
    add_test(NAME Documents.ShownProgramsRunAndAreShown COMMAND ${lCommand} programs ${lList} ${lDocuments})
    add_custom_target(shown-code
        COMMAND ${lScript} write ${lList} ${lDocuments}
        DEPENDS ${lTargets} COMMENT "Writing the code in the documents" VERBATIM)
endif()

# Against the installation that the consumer tests make; like theirs, not where a sanitizer would have to be installed.
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(lClient ${CMAKE_CURRENT_BINARY_DIR}/ReadmeClient)
    add_test(NAME Documents.ReadmeClientSources
        COMMAND ${CMAKE_COMMAND} -DREADME=${PROJECT_SOURCE_DIR}/README.md -DFOLDER=${lClient}
            -P ${CMAKE_CURRENT_SOURCE_DIR}/Documents/WriteReadmeClient.cmake)
    set_tests_properties(Documents.ReadmeClientSources PROPERTIES FIXTURES_SETUP Documents.ReadmeClient)
    add_test(NAME Documents.ReadmeClientBuildsAndRuns
        COMMAND ${CMAKE_CTEST_COMMAND} --build-and-test ${lClient} ${lClient}/build
            --build-generator ${CMAKE_GENERATOR} --build-makeprogram ${CMAKE_MAKE_PROGRAM}
            --build-options -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
                -DCMAKE_PREFIX_PATH=${PROJECT_BINARY_DIR}/Tests/Consumer/Installation
            --test-command my-service)
    set_tests_properties(Documents.ReadmeClientBuildsAndRuns PROPERTIES LABELS consumer
        FIXTURES_REQUIRED "Documents.ReadmeClient;Consumer.Installation"
        PASS_REGULAR_EXPRESSION "EndDelimiter\\*\\*\\*BeginDelimiter\\+\\+\\+\\+\\*\\*\\*Host")
endif()
