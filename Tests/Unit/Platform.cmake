# The platform family: a file for each public header, and apart from these what needs threads, a random source or an
# allocator of its own.
set(lPlatform Q8::Base Q8::Synch Q8::Log Q8::DataType Q8::Stream)

# A client built as C++17, within the program of the others.
add_library(PlatformAsCxx17 OBJECT QPlatformCxx17Test.cpp)
set_target_properties(PlatformAsCxx17 PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
target_link_libraries(PlatformAsCxx17 PRIVATE ${lPlatform} GTest::gtest)
talbase_warnings(PlatformAsCxx17)

talbase_test(PlatformTest
    SOURCES
        QBaseAtomicTest.cpp
        QBaseConvertTest.cpp
        QBaseExportTest.cpp
        QBaseGuidTest.cpp
        QBaseMessageTest.cpp
        QBaseModuleMainPtrTest.cpp
        QBaseReferenceCountedTest.cpp
        QBaseReturnWStringTest.cpp
        QBaseSmartPtrITest.cpp
        QDataTypeDateTimeTest.cpp
        QDataTypeStringCollectionTest.cpp
        QLogInitializerTest.cpp
        QLogRouterTest.cpp
        QSerializationDataStreamTest.cpp
        QSerializationMemoryDataStreamTest.cpp
        QSerializationSerializableObjectTest.cpp
        QSynchAtomicLongTest.cpp
        QSynchInitializerTest.cpp
        $<TARGET_OBJECTS:PlatformAsCxx17>
    LINK ${lPlatform} ${CMAKE_DL_LIBS})

# The conversions, and once more with the source that makes them compiled as where there is no SSE2.
set(lUtf8 QBaseUtf8StepsTest.cpp ../Support/PlainUtf8.cpp)
talbase_test(Utf8StepsTest SOURCES ${lUtf8} LINK Q8::Base)
talbase_test(Utf8StepsWithoutSse2Test SOURCES ${lUtf8} ../../Platform/QBase/Utf8.cpp LINK Q8::Base PREFIX WithoutSse2.)
target_include_directories(Utf8StepsWithoutSse2Test PRIVATE ${PROJECT_SOURCE_DIR}/Platform)
target_compile_options(Utf8StepsWithoutSse2Test PRIVATE -U__SSE2__ $<$<NOT:$<CONFIG:Debug>>:-O3>)

talbase_test(PlatformThreadsTest
    SOURCES QBaseModuleMainPtrThreadsTest.cpp QBaseReferenceCountedThreadsTest.cpp
    LINK ${lPlatform}
    LABELS threads)

talbase_test(GuidRandomSourceTest SOURCES QBaseGuidRandomSourceTest.cpp LINK ${lPlatform})

talbase_test(PlatformAllocationTest SOURCES QAllocationFailureTest.cpp ../Support/FailingNew.cpp LINK ${lPlatform})
