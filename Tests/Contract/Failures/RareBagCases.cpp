// Bags in states that few of them are ever in: made while BEGIN and END point elsewhere, with a pair that a stream
// spoilt, merged with a bag that one of the two holds, and with a name that occurs twice.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"

#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/RepeatingBag.h"
#include "Tests/Support/RepointedDefaults.h"

namespace Failures
{

namespace
{

using QTalBase::PropertyBag;

const char* const gSet = "QTalBase::PropertyBag::SetProperty(const wchar_t*, const wchar_t*, bool)";
const char* const gGet = "QTalBase::PropertyBag::GetProperty(const wchar_t*) const";
const char* const gGetString = "QTalBase::PropertyBag::GetString(bool, const wchar_t*, const wchar_t*, bool) const";
const char* const gAddString = "QTalBase::PropertyBag::AddString(const wchar_t*)";
const char* const gAddBag = "QTalBase::PropertyBag::AddPropertyBag(const QTalBase::PropertyBag*)";
const char* const gChange = "QTalBase::PropertyBag::ChangeDelimiters(const wchar_t*, const wchar_t*)";
const char* const gClone = "QTalBase::PropertyBag::Clone() const";
const char* const gFilteredClone = "QTalBase::PropertyBag::FilteredClone(const QDataType::StringCollection*) const";

void Clone(BagSubject& oSubject)
{
    oSubject.mAnswer = oSubject.mBag->Clone();
}

void CloneFiltered(BagSubject& oSubject)
{
    oSubject.mFilter.reset(QDataType::CreateStringCollection());
    for (unsigned int lIndex = 0; lIndex < oSubject.mBag->GetCount(); ++lIndex)
    {
        oSubject.mFilter->Insert(oSubject.mBag->GetName(lIndex).c_str());
    }
    oSubject.mAnswer = oSubject.mBag->FilteredClone(oSubject.mFilter.get());
}

void Render(BagSubject& oSubject)
{
    oSubject.mText = oSubject.mBag->GetString(true, nullptr, nullptr, true);
}

void MergeOther(BagSubject& oSubject)
{
    oSubject.mBag->AddPropertyBag(oSubject.mOther.get());
}

// BEGIN and END point elsewhere from before the bags are made until they are gone.
struct Repointed
{
    Support::RepointedDefaults mDefaults{LONG_BEGIN, LONG_END};
};

class RepointedSubject : public Repointed, public BagSubject
{
};

Case OnRepointed(const char* ipOperation, const char* ipSituation, const MakeBag& iMake, const RunOnBag& iRun)
{
    const auto lMake = [iMake] {
        auto lSubject = std::make_unique<RepointedSubject>();
        lSubject->mBag = iMake();
        return lSubject;
    };
    return On<RepointedSubject>(ipOperation, ipSituation, lMake, iRun);
}

// Escaped, as only the defaults are.
BagPtr DefaultByNow()
{
    return Support::BagBuilder(BEGIN, END).Set(LONG_A, LONG_V).Nest(L"n", Support::BagBuilder().Set(LONG_C, LONG_V));
}

void AddRepointed(Cases& oCases)
{
    const wchar_t* const lText = LONG_C LONG_BEGIN L"1" LONG_END;
    oCases.push_back(OnRepointed("QTalBase::CreatePropertyBag()", "defaults that point elsewhere", Nothing,
                                 [](BagSubject& oSubject) { oSubject.mAnswer = QTalBase::CreatePropertyBag(); }));
    oCases.push_back(OnRepointed(gSet, "a value that is escaped for other defaults", DefaultByNow,
                                 [](BagSubject& oSubject) { oSubject.mBag->SetProperty(LONG_C, LONG_V, false); }));
    oCases.push_back(OnRepointed(gSet, "a nested bag with other defaults", DefaultByNow,
                                 [=](BagSubject& oSubject) { oSubject.mBag->SetProperty(LONG_C, lText, true); }));
    oCases.push_back(OnRepointed(gGet, "a value that was escaped for other defaults", DefaultByNow,
                                 [](BagSubject& oSubject) { oSubject.mText = oSubject.mBag->GetProperty(LONG_A); }));
    oCases.push_back(OnRepointed(gAddString, "other defaults", DefaultByNow,
                                 [=](BagSubject& oSubject) { oSubject.mBag->AddString(lText); }));
    oCases.push_back(OnRepointed(gClone, "other defaults", DefaultByNow, Clone));
    oCases.push_back(OnRepointed(gFilteredClone, "other defaults", DefaultByNow, CloneFiltered));
}

// Without nests, which would hold the delimiters too.
BagPtr WithLongDelimiters()
{
    return Support::BagBuilder(LONG_BEGIN, LONG_END).Set(LONG_A, LONG_V);
}

void AddOwnDelimiters(Cases& oCases)
{
    oCases.push_back(OnBag(gChange, "its own ones", WithLongDelimiters, [](BagSubject& oSubject) {
        oSubject.mBag->ChangeDelimiters(oSubject.mBag->GetBeginDelimiter(), oSubject.mBag->GetEndDelimiter());
    }));
    oCases.push_back(OnBag(gChange, "its own ones, exchanged", WithLongDelimiters, [](BagSubject& oSubject) {
        oSubject.mBag->ChangeDelimiters(oSubject.mBag->GetEndDelimiter(), oSubject.mBag->GetBeginDelimiter());
    }));
}

// A bag whose delimiters are equal, which only a stream can bring about.
BagPtr Spoilt()
{
    const BagPtr lBag = Filled();
    Support::ScriptedReadStream lStream({LONG_END, LONG_END, L""});
    try
    {
        lBag->DeSerialize(lStream);
    }
    catch (const QTalBase::PropertyBagException&)
    {
        return lBag;
    }
    throw std::logic_error("a pair of equal delimiters was accepted");
}

void AddSpoilt(Cases& oCases)
{
    BagSubject lLeft;
    lLeft.mBag = Spoilt();
    lLeft.mBag->RemoveProperty(L"n");
    oCases.push_back(OnBag(gClone, "of a spoilt bag", Spoilt, Refused(Clone)));
    oCases.push_back(OnBag(gFilteredClone, "of a spoilt bag", Spoilt, Refused(CloneFiltered)));
    oCases.push_back(OnBag(gSet, "a nested bag in a spoilt one", Spoilt, Refused([](BagSubject& oSubject) {
                               oSubject.mBag->SetProperty(L"n", LONG_A L"++++" LONG_V L"***", true);
                           }))
                         .MayLeave({lLeft.See()}));
    oCases.push_back(OnBag(gSet, "a plain property in a spoilt bag", Spoilt,
                           [](BagSubject& oSubject) { oSubject.mBag->SetProperty(LONG_A, LONG_V LONG_V, false); }));
    oCases.push_back(OnBag(gGetString, "of a spoilt bag", Spoilt, Refused(Render)));
    oCases.push_back(OnBag(gAddString, "in a spoilt bag", Spoilt,
                           Refused([](BagSubject& oSubject) { oSubject.mBag->AddString(LONG_A); })));
    oCases.push_back(OnBag(gChange, "of a spoilt bag", Spoilt,
                           [](BagSubject& oSubject) { oSubject.mBag->ChangeDelimiters(LONG_BEGIN, LONG_END); }));
}

// What a merge that goes entry by entry leaves when it fails, and what it makes of that when it runs again.
struct Stages
{
    std::vector<std::wstring> mLeft;
    std::vector<std::wstring> mLast;
};

// iFrom: the bag that is merged. A nested bag is gone for a moment before it is replaced.
Stages StagesOf(const std::function<std::unique_ptr<BagSubject>()>& iMake,
                const std::function<BagPtr(const BagSubject&)>& iFrom, const RunOnBag& iRun)
{
    Stages lStages;
    for (unsigned int lCount = 0; lCount <= iFrom(*iMake())->GetCount(); ++lCount)
    {
        for (const bool lIsRemoved : {false, true})
        {
            const std::unique_ptr<BagSubject> lSubject = iMake();
            BagPtr lFrom = iFrom(*lSubject);
            for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
            {
                lSubject->mBag->SetProperty(lFrom->GetName(lIndex).c_str(), lFrom->GetValue(lIndex).c_str(),
                                            lFrom->IsEmbedded(lIndex));
            }
            if (lIsRemoved && lCount < lFrom->GetCount() && lFrom->IsEmbedded(lCount))
            {
                lSubject->mBag->RemoveProperty(lFrom->GetName(lCount).c_str());
            }
            lFrom = nullptr;
            lStages.mLeft.push_back(lSubject->See());
            iRun(*lSubject);
            lStages.mLast.push_back(lSubject->See());
        }
    }
    return lStages;
}

Case MergingInStages(const char* ipOperation, const char* ipSituation,
                     const std::function<std::unique_ptr<BagSubject>()>& iMake,
                     const std::function<BagPtr(const BagSubject&)>& iFrom, const RunOnBag& iRun)
{
    const Stages lStages = StagesOf(iMake, iFrom, iRun);
    return On<BagSubject>(ipOperation, ipSituation, iMake, iRun).MayLeave(lStages.mLeft).MayComeLast(lStages.mLast);
}

std::unique_ptr<BagSubject> WithNestOfItsName()
{
    auto lSubject = std::make_unique<BagSubject>();
    lSubject->mBag = Support::BagBuilder()
                         .Set(LONG_A, LONG_V)
                         .Nest(LONG_B, Support::BagBuilder()
                                           .Set(LONG_C, LONG_V)
                                           .Nest(LONG_B, Support::BagBuilder().Set(L"k", L"v"))
                                           .Nest(LONG_C LONG_C, Support::BagBuilder().Set(L"l", LONG_V)));
    return lSubject;
}

// The nest has an entry of its own name, so it is replaced while it is merged, and only the merge still holds it.
void MergeOwnNest(BagSubject& oSubject)
{
    if (oSubject.mBag->IsPropertyEmbedded(LONG_B))
    {
        const PropertyBag* const lNest = oSubject.mBag->GetPropertyBag(LONG_B).get();
        oSubject.mBag->AddPropertyBag(lNest);
    }
}

std::unique_ptr<BagSubject> NestAndItsHolder()
{
    auto lSubject = std::make_unique<BagSubject>();
    lSubject->mOther = Filled();
    lSubject->mBag = lSubject->mOther->GetPropertyBag(LONG_B);
    return lSubject;
}

// With so many names that a merge at once would leave replaced ones marked while it reads the nest.
std::unique_ptr<BagSubject> ManyAndTheirHolder()
{
    auto lSubject = std::make_unique<BagSubject>();
    lSubject->mOther = Filled();
    lSubject->mOther->EmbedProperty(L"many", Many().get());
    lSubject->mBag = lSubject->mOther->GetPropertyBag(L"many");
    return lSubject;
}

void AddMergesOfHolders(Cases& oCases)
{
    oCases.push_back(MergingInStages(
        gAddBag, "of its own nest, which is replaced", WithNestOfItsName,
        [](const BagSubject& iSubject) { return iSubject.mBag->GetPropertyBag(LONG_B); }, MergeOwnNest));
    const auto lFrom = [](const BagSubject& iSubject) { return iSubject.mOther; };
    oCases.push_back(MergingInStages(gAddBag, "of the bag that holds it", NestAndItsHolder, lFrom, MergeOther));
    oCases.push_back(MergingInStages(gAddBag, "of the bag that holds it, many", ManyAndTheirHolder, lFrom, MergeOther));
}

// A bag of the library's own class in which names occur twice, because it is a clone of one that keeps old entries.
BagPtr Repeating()
{
    return Support::RepeatingBag()
        .Plain(LONG_A, LONG_V)
        .Plain(LONG_A, LONG_B)
        .Plain(L"n", LONG_V)
        .Nest(L"n", LONG_C L"++++" LONG_V L"***")
        .Nest(L"n", L"k++++v***")
        .Nest(LONG_A, L"l++++w***")
        .Cloned();
}

// The same with so many names that they are found with tables.
BagPtr RepeatingMany()
{
    Support::RepeatingBag lBag;
    for (int lNumber = 0; lNumber < 40; ++lNumber)
    {
        const std::wstring lName = L"a name that is longer than a string object " + std::to_wstring(lNumber / 4);
        lBag.SetProperty(lName.c_str(), lNumber % 2 == 0 ? lName.c_str() : L"k++++v***", lNumber % 2 != 0);
    }
    return lBag.Cloned();
}

void AddRepeatingMerges(Cases& oCases)
{
    struct Pair
    {
        const char* mSituation;
        BagPtr (*mMake)();
        BagPtr (*mMakeOther)();
    };
    for (const Pair& lPair : {Pair{"in a clone that repeats names", Repeating, Filled},
                              Pair{"of a clone that repeats names", Filled, Repeating},
                              Pair{"of a clone of a derived class", Filled, [] { return BagPtr(Derived()->Clone()); }}})
    {
        const auto lMake = [lPair] {
            auto lSubject = std::make_unique<BagSubject>();
            lSubject->mBag = lPair.mMake();
            lSubject->mOther = lPair.mMakeOther();
            return lSubject;
        };
        const auto lFrom = [](const BagSubject& iSubject) { return iSubject.mOther; };
        oCases.push_back(MergingInStages(gAddBag, lPair.mSituation, lMake, lFrom, MergeOther));
        oCases.push_back(MergingInStages(gAddString, lPair.mSituation, lMake, lFrom, [](BagSubject& oSubject) {
            oSubject.mBag->AddString(Support::FullText(*oSubject.mOther).c_str());
        }));
    }
}

void AddRepeatingReads(Cases& oCases)
{
    for (const MakeBag& lMake : {MakeBag(Repeating), MakeBag(RepeatingMany)})
    {
        AddComparing(oCases, "names that occur twice", lMake, lMake);
        oCases.push_back(OnBag(gClone, "names that occur twice", lMake, Clone));
        oCases.push_back(OnBag(gFilteredClone, "names that occur twice", lMake, CloneFiltered));
        oCases.push_back(OnBag(gGetString, "names that occur twice", lMake, Render));
    }
}

} // namespace

Cases MakeRareBagCases()
{
    Cases lCases;
    AddRepointed(lCases);
    AddOwnDelimiters(lCases);
    AddSpoilt(lCases);
    AddMergesOfHolders(lCases);
    AddRepeatingMerges(lCases);
    AddRepeatingReads(lCases);
    return lCases;
}

} // namespace Failures
