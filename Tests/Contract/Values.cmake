# Collections, streams, delivery windows, values and identifiers: memory, failing neighbours, threads.
talbase_test(ValuesAllocationTest
    SOURCES ValuesAllocationTest.cpp ValuesReservationTest.cpp ../Support/FailingNew.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(GuidFailureTest SOURCES GuidFailureTest.cpp LINK TalBase::TalBase)
talbase_test(ValuesThreadsTest SOURCES ValuesThreadsTest.cpp LINK TalBase::TalBase LABELS threads)
