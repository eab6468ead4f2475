// Where an operation of a bag calls another one, of the same bag or of another, a class derived from the library's own
// sees the call, here of the operations that change a bag, give its parts, or write it. These lists are what clients'
// overriders have come to rely on.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RecordingBag.h"
#include "Tests/Support/RecordingStreams.h"

#include <gtest/gtest.h>

#include <stdexcept>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagImpl;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

class BagOverriders : public testing::Test
{
protected:
    // A recording bag that holds a plain property a and a nested bag n, with nothing recorded yet.
    BagOverriders()
    {
        mBag->SetProperty(L"a", L"1*", false);
        mBag->SetProperty(L"n", L"k++++v***", true);
        mLog.clear();
    }

    CallLog mLog;
    const QBase::SmartPtrI<RecordingBag> mBag = new RecordingBag(mLog);
    const QBase::SmartPtrI<ForeignBag> mOther = new ForeignBag(mLog);
};

const wchar_t* const gNestedText = L"EndDelimiter***BeginDelimiter++++***k++++v***";

} // namespace

TEST_F(BagOverriders, SetPropertyRemovesThroughRemoveProperty)
{
    mBag->SetProperty(L"b", L"x+", false);
    EXPECT_EQ(mLog, (CallLog{L"bag.SetProperty(b, x+, false)", L"bag.RemoveProperty(b)",
                             L"bag.RemovePropertyInValueContent(b)", L"bag.RemovePropertyInEmbeddedContent(b)"}));
    mLog.clear();
    mBag->SetProperty(L"a", L"", false);
    EXPECT_EQ(mLog, (CallLog{L"bag.SetProperty(a, , false)", L"bag.RemoveProperty(a)",
                             L"bag.RemovePropertyInValueContent(a)", L"bag.RemovePropertyInEmbeddedContent(a)"}));
    mLog.clear();
    mBag->SetProperty(L"n", L"l++++w***", true);
    EXPECT_EQ(mLog, (CallLog{L"bag.SetProperty(n, l++++w***, true)", L"bag.RemoveProperty(n)",
                             L"bag.RemovePropertyInValueContent(n)", L"bag.RemovePropertyInEmbeddedContent(n)"}));
}

TEST_F(BagOverriders, SetPropertyRefusedCallsNothing)
{
    EXPECT_THROW(mBag->SetProperty(nullptr, L"1", false), PropertyBagUserErrorException);
    EXPECT_THROW(mBag->SetProperty(L"***", L"1", false), PropertyBagException);
    EXPECT_THROW(mBag->SetProperty(L"a", nullptr, false), PropertyBagUserErrorException);
    EXPECT_EQ(mLog, (CallLog{L"bag.SetProperty(NULL, 1, false)", L"bag.SetProperty(***, 1, false)",
                             L"bag.SetProperty(a, NULL, false)"}));
}

TEST_F(BagOverriders, RemovePropertyCallsBothRemovers)
{
    mBag->RemoveProperty(L"a");
    mBag->RemoveProperty(nullptr);
    EXPECT_EQ(mLog, (CallLog{L"bag.RemoveProperty(a)", L"bag.RemovePropertyInValueContent(a)",
                             L"bag.RemovePropertyInEmbeddedContent(a)", L"bag.RemoveProperty(NULL)"}));
}

TEST_F(BagOverriders, EmbedPropertyRendersTheOtherAndSets)
{
    mOther->SetText(L"k++++w***");
    mBag->EmbedProperty(L"m", mOther.get());
    EXPECT_EQ(mLog, (CallLog{L"bag.EmbedProperty(m)", L"other.GetString(false, ++++, ***, true)",
                             L"bag.SetProperty(m, k++++w***, true)", L"bag.RemoveProperty(m)",
                             L"bag.RemovePropertyInValueContent(m)", L"bag.RemovePropertyInEmbeddedContent(m)"}));
    EXPECT_EQ(Describe(mBag), L"'++++' '***' {'a'='1&#42;' 'n'={'k'='v'} 'm'={'k'='w'}}");
}

TEST_F(BagOverriders, EmbedPropertyRendersBeforeTheNameIsChecked)
{
    mOther->SetText(L"k++++w***");
    EXPECT_MESSAGE(mBag->EmbedProperty(nullptr, mOther.get()), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL");
    EXPECT_EQ(mLog, (CallLog{L"bag.EmbedProperty(NULL)", L"other.GetString(false, ++++, ***, true)",
                             L"bag.SetProperty(NULL, k++++w***, true)"}));
}

TEST_F(BagOverriders, PositionsAskForTheCount)
{
    static_cast<void>(mBag->GetName(0));
    static_cast<void>(mBag->GetValue(0));
    static_cast<void>(mBag->IsEmbedded(0));
    static_cast<void>(mBag->GetValuePropertyBag(1));
    EXPECT_EQ(mLog, (CallLog{L"bag.GetName(0)", L"bag.GetCount", L"bag.GetValue(0)", L"bag.GetCount",
                             L"bag.IsEmbedded(0)", L"bag.GetCount", L"bag.GetValuePropertyBag(1)", L"bag.GetCount"}));
}

TEST_F(BagOverriders, LookUpsByNameCallNothing)
{
    static_cast<void>(mBag->GetProperty(L"n"));
    static_cast<void>(mBag->IsPropertyEmbedded(L"n"));
    static_cast<void>(mBag->GetPropertyBag(L"n"));
    static_cast<void>(mBag->NamePositionInValueContent(L"a"));
    static_cast<void>(mBag->NamePositionInEmbeddedContent(L"n"));
    EXPECT_EQ(mLog, (CallLog{L"bag.GetProperty(n)", L"bag.IsPropertyEmbedded(n)", L"bag.GetPropertyBag(n)"}));
}

TEST_F(BagOverriders, GetStringWithoutSensitiveInfoIsGetString)
{
    EXPECT_EQ(Text(mBag->GetStringWithoutSensitiveInfo(true, L"<", nullptr)),
              L"EndDelimiter***BeginDelimiter<***a<1&#42;***n<k<v******");
    EXPECT_EQ(mLog,
              (CallLog{L"bag.GetStringWithoutSensitiveInfo(true, <, NULL)", L"bag.GetString(true, <, NULL, false)"}));
}

TEST_F(BagOverriders, AddStringMergesThroughAddPropertyBagAndSetProperty)
{
    mBag->AddString(L"m++++k++++v******b++++x*y***");
    EXPECT_EQ(mLog, (CallLog{L"bag.AddString(m++++k++++v******b++++x*y***)", L"bag.AddPropertyBag",
                             L"bag.SetProperty(b, x&#42;y, false)", L"bag.RemoveProperty(b)",
                             L"bag.RemovePropertyInValueContent(b)", L"bag.RemovePropertyInEmbeddedContent(b)",
                             std::wstring(L"bag.SetProperty(m, ") + gNestedText + L", true)", L"bag.RemoveProperty(m)",
                             L"bag.RemovePropertyInValueContent(m)", L"bag.RemovePropertyInEmbeddedContent(m)"}));
}

TEST_F(BagOverriders, AddStringWithoutPropertiesStillMerges)
{
    mBag->AddString(L"");
    EXPECT_EQ(mLog, (CallLog{L"bag.AddString()", L"bag.AddPropertyBag"}));
}

TEST_F(BagOverriders, AddStringRefusedTextCallsNothing)
{
    EXPECT_THROW(mBag->AddString(L"b++++2***c++++"), PropertyBagException);
    EXPECT_EQ(mLog, (CallLog{L"bag.AddString(b++++2***c++++)"}));
}

TEST_F(BagOverriders, AddPropertyBagAsksForTheCountBeforeEveryStep)
{
    mOther->Nest(L"m", BagBuilder().Set(L"k", L"v")).Set(L"b", L"2");
    mBag->AddPropertyBag(mOther.get());
    EXPECT_EQ(mLog, (CallLog{L"bag.AddPropertyBag", L"other.GetCount", L"other.GetName(0)", L"other.GetValue(0)",
                             L"other.IsEmbedded(0)", std::wstring(L"bag.SetProperty(m, ") + gNestedText + L", true)",
                             L"bag.RemoveProperty(m)", L"bag.RemovePropertyInValueContent(m)",
                             L"bag.RemovePropertyInEmbeddedContent(m)", L"other.GetCount", L"other.GetName(1)",
                             L"other.GetValue(1)", L"other.IsEmbedded(1)", L"bag.SetProperty(b, 2, false)",
                             L"bag.RemoveProperty(b)", L"bag.RemovePropertyInValueContent(b)",
                             L"bag.RemovePropertyInEmbeddedContent(b)", L"other.GetCount"}));
    EXPECT_EQ(Describe(mBag), L"'++++' '***' {'a'='1&#42;' 'b'='2' 'n'={'k'='v'} 'm'={'k'='v'}}");
}

TEST_F(BagOverriders, AddPropertyBagFollowsABagThatGrowsOrShrinks)
{
    // Takes properties from, or gives them to, the bag that is being merged into it.
    class Meddling : public PropertyBagImpl
    {
    public:
        Meddling(ForeignBag& oOther, bool iGrow) : mOther(oOther), mGrow(iGrow) {}

        void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) override
        {
            PropertyBagImpl::SetProperty(ipName, ipValue, iIsPropertyBag);
            if (mGrow && mOther.Entries().size() < 4)
            {
                mOther.Set(L"more", ipName);
            }
            else if (!mGrow)
            {
                mOther.Entries().pop_back();
            }
        }

    private:
        ForeignBag& mOther;
        bool mGrow;
    };
    mOther->Set(L"p", L"1").Set(L"q", L"2").Set(L"r", L"3");
    Meddling lShrinking(*mOther, false);
    lShrinking.AddPropertyBag(mOther.get());
    EXPECT_EQ(Describe(lShrinking), L"'++++' '***' {'p'='1' 'q'='2'}");
    mOther->Entries().clear();
    mOther->Set(L"p", L"1");
    Meddling lGrowing(*mOther, true);
    lGrowing.AddPropertyBag(mOther.get());
    EXPECT_EQ(Describe(lGrowing), L"'++++' '***' {'p'='1' 'more'='more'}");
}

TEST_F(BagOverriders, SetPropertyThatThrowsStopsTheMerge)
{
    class Refusing : public PropertyBagImpl
    {
    public:
        void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) override
        {
            if (ipName == std::wstring(L"bad"))
            {
                throw std::runtime_error("refused");
            }
            PropertyBagImpl::SetProperty(ipName, ipValue, iIsPropertyBag);
        }
    };
    Refusing lBag;
    EXPECT_THROW(lBag.AddString(L"a++++1***bad++++2***c++++3***"), std::runtime_error);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
    mOther->Set(L"b", L"1").Set(L"bad", L"2");
    EXPECT_THROW(lBag.AddPropertyBag(mOther.get()), std::runtime_error);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='1'}");
    EXPECT_THROW(lBag.EmbedProperty(L"bad", NewBag().get()), std::runtime_error);
}

TEST_F(BagOverriders, SerializeRendersAndThenWrites)
{
    RecordingWriteStream lStream(mLog);
    mBag->Serialize(lStream);
    const std::wstring lText = L"EndDelimiter***BeginDelimiter++++***a++++1&#42;***n++++k++++v******";
    EXPECT_EQ(mLog, (CallLog{L"bag.Serialize", L"bag.GetString(true, NULL, NULL, true)", L"stream.WriteWString(++++)",
                             L"stream.WriteWString(***)", L"stream.WriteWString(" + lText + L")"}));
}

TEST_F(BagOverriders, DeSerializeCallsAddString)
{
    ScriptedReadStream lStream({L"<", L">", L"b<2>"});
    mBag->DeSerialize(lStream);
    EXPECT_EQ(mLog, (CallLog{L"bag.DeSerialize", L"bag.AddString(b<2>)", L"bag.AddPropertyBag",
                             L"bag.SetProperty(b, 2, false)", L"bag.RemoveProperty(b)",
                             L"bag.RemovePropertyInValueContent(b)", L"bag.RemovePropertyInEmbeddedContent(b)"}));
}

TEST_F(BagOverriders, OverriddenCountMovesTheRangeTest)
{
    class Counting : public PropertyBagImpl
    {
    public:
        unsigned int GetCount() const override
        {
            return mCount;
        }

        unsigned int mCount = 0;
    };
    Counting lBag;
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"n", L"k++++v***", true);
    EXPECT_EQ(Text(lBag.GetName(0)), L"a");
    EXPECT_MESSAGE(lBag.GetName(1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range");
    EXPECT_MESSAGE(lBag.GetValue(1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
    EXPECT_MESSAGE(lBag.IsEmbedded(1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
    EXPECT_MESSAGE(lBag.GetValuePropertyBag(1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; iIndex is out of range");
    lBag.mCount = 0xFFFFFFFF;
    EXPECT_EQ(Text(lBag.GetName(1)), L"n");
    EXPECT_FALSE(lBag.IsEmbedded(0));
    EXPECT_TRUE(lBag.IsEmbedded(1));
    EXPECT_MESSAGE(lBag.IsEmbedded(3), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
    for (const unsigned int lIndex : {2U, 3U, 0x7FFFFFFFU, 0xFFFFFFFFU})
    {
        EXPECT_MESSAGE(lBag.GetName(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range");
        EXPECT_MESSAGE(lBag.GetValue(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
        EXPECT_MESSAGE(lBag.GetValuePropertyBag(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetPropertyBag; iIndex is out of range");
    }
}

TEST_F(BagOverriders, OverriddenRemovalKeepsTheOldEntry)
{
    class Keeping : public PropertyBagImpl
    {
    public:
        void RemovePropertyInValueContent(const wchar_t*) noexcept override {}
    };
    Keeping lBag;
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"a", L"2", false);
    lBag.SetProperty(L"n", L"k++++v***", true);
    lBag.SetProperty(L"n", L"", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'a'='2'}");
}
