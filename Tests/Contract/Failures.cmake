# Every allocation and every primitive of a stream fails once, in every public operation.
set(lFailureLibraries Q8::Base Q8::Synch Q8::Log Q8::DataType Q8::Stream TalBase::TalBase)
set(lFiles "")
foreach(lLibrary IN LISTS lFailureLibraries)
    list(APPEND lFiles $<TARGET_FILE:${lLibrary}>)
endforeach()
string(REPLACE ";" ":" lFiles "${lFiles}")
talbase_test(FailedAllocationTest
    SOURCES
        Failures/BagChangeCases.cpp
        Failures/BagReadCases.cpp
        Failures/CollectionCases.cpp
        Failures/ConversionCases.cpp
        Failures/OperationsTest.cpp
        Failures/OutputCases.cpp
        Failures/PlatformCases.cpp
        Failures/RareBagCases.cpp
        Failures/Subjects.cpp
        Failures/TemplateCases.cpp
        Failures/Trial.cpp
        Failures/ValueCases.cpp
        Failures/ViewCases.cpp
        ../Support/FailingNew.cpp
        ../Support/PlainPropertyBag.cpp
    LINK ${lFailureLibraries}
    DEFINITIONS TALBASE_LIBRARIES="${lFiles}")

talbase_test(FailedPrimitiveTest
    SOURCES Failures/StreamsTest.cpp ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)

# How much memory hostile input takes, on the same cases as the benchmarks.
talbase_test(MemoryTest
    SOURCES
        MemoryTest.cpp
        ../../Benchmarks/MemoryCases.cpp
        ../../Benchmarks/MemoryStreamCases.cpp
        ../../Benchmarks/MemoryTexts.cpp
        ../Support/FailingNew.cpp
        Documents/Document.cpp
    LINK TalBase::TalBase Q8::Stream)
