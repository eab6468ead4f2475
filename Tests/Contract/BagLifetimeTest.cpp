// Reference counts, and who frees what: every object dies with its last reference, and nothing is left behind by an
// operation that fails.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/FailingNew.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

using QTalBase::PropertyBag;
using namespace Support;

namespace
{

// An object of the library's own class that tells when it dies.
template <class Implementation>
class Mortal : public Implementation
{
public:
    explicit Mortal(int& oDeaths) : mDeaths(oDeaths) {}

    ~Mortal() override
    {
        ++mDeaths;
    }

private:
    int& mDeaths;
};

// Returns by how many blocks of memory the work leaves the program with more than before. What a first call keeps for
// good (a static object, say) does not count: the work is done once before it is watched.
template <class Work>
long Leaked(const Work& iWork)
{
    iWork();
    const auto lBefore = static_cast<long>(AllocationsLive());
    iWork();
    return static_cast<long>(AllocationsLive()) - lBefore;
}

template <class Object>
void TakeAndDrop(const Object* ipObject)
{
    ipObject->AddRef();
    ipObject->Release();
}

template <class Implementation>
void ExpectCountedLife()
{
    int lDeaths = 0;
    const auto* lObject = new Mortal<Implementation>(lDeaths);
    lObject->AddRef();
    lObject->AddRef();
    lObject->Release();
    EXPECT_EQ(lDeaths, 0);
    lObject->Release();
    EXPECT_EQ(lDeaths, 1);
}

// A Release too many takes the count below zero and leaves the object; it then takes two references to hold it.
template <class Implementation>
void ExpectUnbalancedReleaseLeavesTheObject()
{
    int lDeaths = 0;
    const auto* lObject = new Mortal<Implementation>(lDeaths);
    lObject->Release();
    EXPECT_EQ(lDeaths, 0);
    lObject->AddRef();
    EXPECT_EQ(lDeaths, 0);
    lObject->AddRef();
    lObject->Release();
    EXPECT_EQ(lDeaths, 1);
}

// Expects the work to throw, and to leave nothing behind.
template <class Work>
void ExpectCleanFailure(const char* ipWhat, const Work& iWork)
{
    const long lLeaked = Leaked([&] {
        bool lThrown = false;
        try
        {
            iWork();
        }
        catch (const QBase::Message&)
        {
            lThrown = true;
        }
        catch (const std::exception&)
        {
            lThrown = true;
        }
        EXPECT_TRUE(lThrown) << ipWhat;
    });
    EXPECT_EQ(lLeaked, 0) << ipWhat;
}

BagPtr NestedBag()
{
    return BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v").Nest(L"o", BagBuilder()));
}

} // namespace

TEST(BagLifetime, LastReleaseDeletesOnce)
{
    ExpectCountedLife<QTalBase::PropertyBagImpl>();
    ExpectCountedLife<QTalBase::BufferedWStringImpl>();
}

TEST(BagLifetime, UnbalancedReleaseLeavesTheObject)
{
    ExpectUnbalancedReleaseLeavesTheObject<QTalBase::PropertyBagImpl>();
    ExpectUnbalancedReleaseLeavesTheObject<QTalBase::BufferedWStringImpl>();
}

TEST(BagLifetime, ReferencesNeverThrow)
{
    static_assert(noexcept(std::declval<const PropertyBag&>().AddRef()));
    static_assert(noexcept(std::declval<const PropertyBag&>().Release()));
    static_assert(noexcept(std::declval<const QTalBase::BufferedWString&>().AddRef()));
    static_assert(noexcept(std::declval<const QTalBase::BufferedWString&>().Release()));
    const PropertyBag* lBag = QTalBase::CreatePropertyBag();
    TakeAndDrop(lBag);
}

TEST(BagLifetime, FactoryResultsHaveCountZero)
{
    EXPECT_EQ(Leaked([] { TakeAndDrop(QTalBase::CreatePropertyBag()); }), 0);
    EXPECT_EQ(Leaked([] { TakeAndDrop(QTalBase::CreatePropertyBag(L"[[", L"]]")); }), 0);
    EXPECT_EQ(Leaked([] { TakeAndDrop(QTalBase::CreatePropertyBag(L"")); }), 0);
    EXPECT_EQ(Leaked([] {
                  TakeAndDrop(QTalBase::CreatePropertyBag(L"EndDelimiter***BeginDelimiter++++***n++++k++++v******"));
              }),
              0);
    EXPECT_EQ(Leaked([] { TakeAndDrop(QTalBase::CreateBufferedWString()); }), 0);
    EXPECT_EQ(Leaked([] { TakeAndDrop(QTalBase::CreateBufferedWString(10, 3)); }), 0);
}

TEST(BagLifetime, FactoryResultMayBeDeletedByItsCreator)
{
    EXPECT_EQ(Leaked([] { delete QTalBase::CreatePropertyBag(L"[[", L"]]"); }), 0);
    EXPECT_EQ(Leaked([] { delete QTalBase::CreateBufferedWString(10, 3); }), 0);
}

TEST(BagLifetime, BagOnWhichNobodyHasAReferenceIsMergedAndStays)
{
    EXPECT_EQ(Leaked([] {
                  const BagPtr lBag(QTalBase::CreatePropertyBag());
                  const std::unique_ptr<PropertyBag> lMerged(QTalBase::CreatePropertyBag());
                  lMerged->SetProperty(L"k", L"v", false);
                  lBag->AddPropertyBag(lMerged.get());
                  lBag->AddPropertyBag(lMerged.get());
                  EXPECT_EQ(lBag->GetCount(), 1U);
                  EXPECT_EQ(lMerged->GetCount(), 1U);
              }),
              0);
}

TEST(BagLifetime, ClonesHaveCountZeroAndReleaseWhatTheyShare)
{
    const BagPtr lBag = NestedBag();
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    EXPECT_EQ(Leaked([&] { TakeAndDrop(lBag->Clone()); }), 0);
    EXPECT_EQ(Leaked([&] { TakeAndDrop(lBag->FilteredClone(lFilter.get())); }), 0);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'n'={'k'='v' 'o'={}}}");
}

TEST(BagLifetime, ContainerReleasesItsNests)
{
    EXPECT_EQ(Leaked([] { NestedBag(); }), 0);
    EXPECT_EQ(Leaked([] { NestedBag()->RemoveProperty(L"n"); }), 0);
    EXPECT_EQ(Leaked([] { NestedBag()->SetProperty(L"n", L"1", false); }), 0);
    EXPECT_EQ(Leaked([] { NestedBag()->EmbedProperty(L"n", NestedBag().get()); }), 0);
    EXPECT_EQ(Leaked([] { NestedBag()->AddString(L"n++++k++++v******"); }), 0);
    EXPECT_EQ(Leaked([] { static_cast<void>(NestedBag()->GetPropertyBag(L"n")); }), 0);
    EXPECT_EQ(Leaked([] { static_cast<void>(NestedBag()->GetValuePropertyBag(1)); }), 0);
    EXPECT_EQ(Leaked([] {
                  const BagPtr lBag = BagBuilder().Nest(L"m", BagBuilder()).Nest(L"n", BagBuilder());
                  lBag->MoveProperty(L"m", 1);
              }),
              0);
}

TEST(BagLifetime, FailedFactoriesLeaveNothing)
{
    ExpectCleanFailure("empty begin", [] { QTalBase::CreatePropertyBag(L"", L"***"); });
    ExpectCleanFailure("equal", [] { QTalBase::CreatePropertyBag(L"x", L"x"); });
    ExpectCleanFailure("no header", [] { QTalBase::CreatePropertyBag(L"a++++1***"); });
    ExpectCleanFailure("header cut short", [] { QTalBase::CreatePropertyBag(L"EndDelimiter***Begin"); });
    ExpectCleanFailure("bad content", [] {
        QTalBase::CreatePropertyBag(L"EndDelimiter***BeginDelimiter++++***a++++1***n++++k++++v***");
    });
    ExpectCleanFailure("empty buffer", [] { QTalBase::CreateBufferedWString(0, 0); });
}

TEST(BagLifetime, FailedReadingsLeaveNothing)
{
    const BagPtr lBag = NestedBag();
    for (const wchar_t* lText : {L"***", L"a++++", L"b++++2***n++++k++++v***", L"n++++m++++k++++v******++++",
                                 L"EndDelimiter***", L"EndDelimiter***Begin"})
    {
        ExpectCleanFailure("AddString", [&] { lBag->AddString(lText); });
        ExpectCleanFailure("SetProperty", [&] { NestedBag()->SetProperty(L"n", lText, true); });
        ExpectCleanFailure("DeSerialize", [&] {
            ScriptedReadStream lStream({L"++++", L"***", lText});
            lBag->DeSerialize(lStream);
        });
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'n'={'k'='v' 'o'={}}}");
}

TEST(BagLifetime, FailedClonesLeaveNothing)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"x>>").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->ChangeDelimiters(L"<<", L">>");
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    lFilter->Insert(L"a");
    ExpectCleanFailure("FilteredClone", [&] { lBag->FilteredClone(lFilter.get()); });
    const RepointedDefaults lDefaults(L"x", L"x");
    const BagPtr lUnchecked = NewBag();
    ExpectCleanFailure("Clone", [&] { lUnchecked->Clone(); });
    ExpectCleanFailure("GetString", [&] { lUnchecked->GetString(true, nullptr, nullptr, true); });
}
