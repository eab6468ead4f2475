# Collections, streams, delivery windows, values and identifiers.

# A locale with a decimal comma for the number tests, where the machine can compile one; the tests look for one of the
# machine's own otherwise.
set(lLocales ${CMAKE_CURRENT_BINARY_DIR}/Locales)
set(lHasCommaLocale 0)
find_program(TALBASE_LOCALEDEF localedef)
if(TALBASE_LOCALEDEF)
    file(MAKE_DIRECTORY ${lLocales})
    if(CMAKE_CXX_BYTE_ORDER STREQUAL "BIG_ENDIAN") # of the machine that the tests are built for
        set(lByteOrder --big-endian)
    else()
        set(lByteOrder --little-endian)
    endif()
    execute_process(COMMAND ${TALBASE_LOCALEDEF} ${lByteOrder} -i de_DE -f UTF-8 ${lLocales}/de_DE.UTF-8
        RESULT_VARIABLE lResult OUTPUT_QUIET ERROR_QUIET)
    if(lResult EQUAL 0)
        set(lHasCommaLocale 1)
    endif()
endif()

talbase_test(DeliveryWindowTest
    SOURCES DeliveryWindowBagTest.cpp DeliveryWindowTest.cpp ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(GoldenBagsTest
    SOURCES GoldenBagsTest.cpp ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(GuidTest SOURCES GuidTest.cpp LINK TalBase::TalBase)
talbase_test(PropertyBagHelpersTest
    SOURCES PropertyBagHelpersLocaleTest.cpp PropertyBagHelpersTest.cpp
    LINK TalBase::TalBase
    DEFINITIONS TALBASE_TEST_LOCALES="${lLocales}" TALBASE_TEST_HAS_COMMA_LOCALE=${lHasCommaLocale})
talbase_test(PropertyBagsTest
    SOURCES PropertyBagsStreamTest.cpp PropertyBagsTest.cpp ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(SensitiveNamesTest SOURCES SensitiveNamesTest.cpp LINK TalBase::TalBase)
talbase_test(SerializableStringCollectionTest
    SOURCES SerializableStringCollectionTest.cpp ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(SerializationTemplatesTest
    SOURCES
        PropertyBagSerializationTest.cpp
        SerializationTemplatesClientTest.cpp
        SerializationTemplatesEntryTest.cpp
        SerializationTemplatesTest.cpp
        ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)

# What clients build into their own programs, in both language versions that they may use. talbase_test asks for C++20.
foreach(lVersion IN ITEMS 17 20)
    set(lName Views${lVersion}Test)
    add_executable(${lName} IterationTest.cpp OutputTest.cpp ViewsTest.cpp ../Support/ScriptedStream.cpp)
    set_target_properties(${lName} PROPERTIES CXX_STANDARD ${lVersion} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
    target_include_directories(${lName} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${lName} PRIVATE TalBase::TalBase Q8::Stream GTest::gtest GTest::gtest_main)
    talbase_warnings(${lName})
    gtest_discover_tests(${lName} TEST_PREFIX Cxx${lVersion}. DISCOVERY_TIMEOUT 60)
endforeach()
