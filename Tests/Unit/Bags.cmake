# Property bags, the text buffer they are written with, and the library's start and stop.
talbase_test(PropertyBagTest
    SOURCES
        PropertyBagAccessTest.cpp
        PropertyBagCloneTest.cpp
        PropertyBagCompareTest.cpp
        PropertyBagDefaultsTest.cpp
        PropertyBagDelimitersTest.cpp
        PropertyBagManyNamesTest.cpp
        PropertyBagNestTest.cpp
        PropertyBagParseTest.cpp
        PropertyBagRepeatedNamesTest.cpp
        PropertyBagSetTest.cpp
        PropertyBagStreamTest.cpp
        PropertyBagTextTest.cpp
        ../Support/ScriptedStream.cpp
    LINK TalBase::TalBase Q8::Stream)
talbase_test(PropertyBagTokenTest
    SOURCES PropertyBagTokenTest.cpp ../Support/PlainPropertyBag.cpp
    LINK TalBase::TalBase)
talbase_test(TextReaderTest SOURCES TextBoundsTest.cpp TextPrimitivesTest.cpp TextReaderTest.cpp LINK TalBaseInside)
talbase_test(ValueContentTest SOURCES ValueContentTest.cpp ../Support/FailingNew.cpp LINK TalBaseInside)
talbase_test(NestCopierTest SOURCES BagMergerTest.cpp NestCopierTest.cpp LINK TalBaseInside)
talbase_test(TextRuleTest SOURCES TextRuleTest.cpp LINK TalBaseInside)
talbase_test(NameTableTest SOURCES NameTableTest.cpp LINK TalBaseInside)
talbase_test(TextCheckTest SOURCES TextCheckTest.cpp LINK TalBase::TalBase)
talbase_test(BufferedWStringTest
    SOURCES BufferedWStringTest.cpp ../Support/FailingNew.cpp
    LINK TalBase::TalBase)
talbase_test(TextFaultTest SOURCES TextFaultTest.cpp LINK TalBase::TalBase Q8::Stream)
talbase_test(BytesTest
    SOURCES BytesTest.cpp ../Support/BagTexts.cpp ../Support/Choices.cpp ../Support/FailingNew.cpp
        ../Support/PlainPropertyBag.cpp
    LINK TalBase::TalBase)
talbase_test(InitializerTest SOURCES InitializerTest.cpp LINK TalBase::TalBase)
talbase_test(ModuleMainTest SOURCES ModuleMainTest.cpp LINK TalBase::TalBase)
