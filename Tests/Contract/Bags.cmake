# What clients rely on beyond single operations: overriders, exceptions across the library's border, lifetimes, threads,
# start and stop, comparison in every language version.
talbase_test(BagOverridersTest
    SOURCES BagComparingTest.cpp BagCopyingTest.cpp BagOverridersTest.cpp ../Support/PlainPropertyBag.cpp
    LINK TalBase::TalBase)
talbase_test(BagExceptionsTest SOURCES BagExceptionsTest.cpp LINK TalBase::TalBase)
talbase_test(BagLifetimeTest
    SOURCES BagAllocationTest.cpp BagLifetimeTest.cpp ../Support/FailingNew.cpp
    LINK TalBase::TalBase)
talbase_test(BagThreadsTest SOURCES BagThreadsTest.cpp LINK TalBase::TalBase LABELS threads)
talbase_test(SharingThreadsTest
    SOURCES SharingThreadsTest.cpp ../Support/FailingNew.cpp
    LINK TalBase::TalBase Q8::Stream
    LABELS threads)
talbase_test(ModuleStartTest SOURCES ModuleStartTest.cpp LINK TalBase::TalBase LABELS threads)

# One source in both language versions. talbase_test asks for C++20, so these two are made by hand.
foreach(lVersion IN ITEMS 17 20)
    set(lName BagOperands${lVersion}Test)
    if(lVersion EQUAL 17)
        set(lLanguage 201703L)
    else()
        set(lLanguage 202002L)
    endif()
    add_executable(${lName} BagOperandsTest.cpp)
    set_target_properties(${lName} PROPERTIES
        CXX_STANDARD ${lVersion} CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
    target_include_directories(${lName} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${lName} PRIVATE TALBASE_EXPECTED_LANGUAGE=${lLanguage})
    target_link_libraries(${lName} PRIVATE TalBase::TalBase GTest::gtest GTest::gtest_main)
    target_compile_options(${lName} PRIVATE -Werror)
    talbase_warnings(${lName})
    gtest_discover_tests(${lName} TEST_PREFIX Cxx${lVersion}. DISCOVERY_TIMEOUT 60)
endforeach()

# The library against the plain implementation.
talbase_test(DifferentialTest
    SOURCES
        DifferentialTest.cpp
        ../Support/BagTexts.cpp
        ../Support/Choices.cpp
        ../Support/Differential.cpp
        ../Support/DifferentialChanges.cpp
        ../Support/DifferentialQuestions.cpp
        ../Support/PlainPropertyBag.cpp
        ../Support/Twins.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(TextCheckDifferentialTest SOURCES TextCheckDifferentialTest.cpp LINK TalBase::TalBase)
talbase_test(TextFaultDifferentialTest SOURCES TextFaultDifferentialTest.cpp LINK TalBase::TalBase)
talbase_test(DepthTest SOURCES DepthTest.cpp LINK TalBase::TalBase Q8::Stream)
