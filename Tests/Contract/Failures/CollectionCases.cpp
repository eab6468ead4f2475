// The operations of collections.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

namespace Failures
{

namespace
{

using QBase::SmartPtrI;
using Support::Quoted;

std::wstring SeeStrings(const QDataType::StringCollection* ipStrings)
{
    std::wstring lSeen = ipStrings != nullptr ? L"" : L"null";
    for (unsigned long lIndex = 0; ipStrings != nullptr && lIndex < ipStrings->GetCount(); ++lIndex)
    {
        lSeen += Quoted(ipStrings->GetString(lIndex));
    }
    return lSeen;
}

// A collection of bags.

using BagsPtr = SmartPtrI<QTalBase::PropertyBags>;

std::wstring SeeBags(const BagsPtr& iBags)
{
    std::wstring lSeen = iBags ? L"" : L"null";
    for (unsigned int lIndex = 0; iBags && lIndex < iBags->GetCount(); ++lIndex)
    {
        lSeen += Quoted(iBags->GetName(lIndex)) + L"=" + SeeBag(iBags->GetPropertyBag(lIndex)) + L"\n";
    }
    return lSeen;
}

struct BagsSubject
{
    std::wstring See() const
    {
        return SeeBags(mBags) + L"given " + SeeBag(mGiven) + L" answers " + SeeBag(mAnswer) + SeeBags(mClone) +
               std::to_wstring(mNumber);
    }

    // Clones share the nests of the bags that are held.
    std::vector<const void*> Identify() const
    {
        std::vector<const void*> lNests;
        for (unsigned int lIndex = 0; lIndex < mBags->GetCount(); ++lIndex)
        {
            const std::vector<const void*> lOfOne = IdentifyNests(mBags->GetPropertyBag(lIndex));
            lNests.insert(lNests.end(), lOfOne.begin(), lOfOne.end());
        }
        return lNests;
    }

    BagsPtr mBags = QTalBase::CreatePropertyBags();
    BagPtr mGiven = Filled();
    BagPtr mAnswer;
    BagsPtr mClone;
    long mNumber = -1;
};

std::unique_ptr<BagsSubject> ThreeBags()
{
    auto lSubject = std::make_unique<BagsSubject>();
    lSubject->mBags->Add(LONG_A, Filled().get());
    lSubject->mBags->Add(LONG_B, Raw().get());
    lSubject->mBags->Add(LONG_B, Empty().get());
    return lSubject;
}

Case OnCollection(const char* ipOperation, const char* ipSituation, const std::function<void(BagsSubject&)>& iRun)
{
    return On<BagsSubject>(ipOperation, ipSituation, ThreeBags, iRun);
}

// What was read before a failure stays.
std::vector<std::wstring> BeginningsOfBags()
{
    std::vector<std::wstring> lStates;
    const std::unique_ptr<BagsSubject> lAll = ThreeBags();
    for (unsigned int lCount = 0; lCount < lAll->mBags->GetCount(); ++lCount)
    {
        BagsSubject lBeginning;
        for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
        {
            lBeginning.mBags->Add(lAll->mBags->GetName(lIndex), lAll->mBags->GetPropertyBag(lIndex).get());
        }
        lStates.push_back(lBeginning.See());
    }
    return lStates;
}

void ReadThreeBags(BagsSubject& oSubject)
{
    QSerialization::MemoryWriteDataStream lWritten;
    ThreeBags()->mBags->Serialize(lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    oSubject.mBags->DeSerialize(lRead);
}

void AddBagCollections(Cases& oCases)
{
    oCases.push_back(OnCollection("QTalBase::CreatePropertyBags()", "",
                                  [](BagsSubject& oSubject) { oSubject.mClone = QTalBase::CreatePropertyBags(); }));
    const char* const lAdd = "QTalBase::PropertyBags::Add(const wchar_t*, const QTalBase::PropertyBag*)";
    oCases.push_back(
        OnCollection(lAdd, "", [](BagsSubject& oSubject) { oSubject.mBags->Add(LONG_C, oSubject.mGiven.get()); }));
    oCases.push_back(OnCollection(lAdd, "null", [](BagsSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mBags->Add(LONG_C, nullptr); });
    }));
    oCases.push_back(OnCollection("QTalBase::PropertyBags::GetCount() const", "", [](BagsSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(oSubject.mBags->GetCount());
                     }).CannotFail());
    const char* const lGetName = "QTalBase::PropertyBags::GetName(unsigned int) const";
    oCases.push_back(OnCollection(lGetName, "", [](BagsSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(std::wcslen(oSubject.mBags->GetName(2)));
                     }).CannotFail());
    oCases.push_back(OnCollection(lGetName, "out of range", [](BagsSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { static_cast<void>(oSubject.mBags->GetName(3)); });
    }));
    const char* const lGetBag = "QTalBase::PropertyBags::GetPropertyBag(unsigned int) const";
    oCases.push_back(
        OnCollection(lGetBag, "", [](BagsSubject& oSubject) { oSubject.mAnswer = oSubject.mBags->GetPropertyBag(1); }));
    oCases.push_back(OnCollection(lGetBag, "out of range", [](BagsSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = oSubject.mBags->GetPropertyBag(3); });
    }));
    const char* const lByName = "QTalBase::PropertyBags::GetPropertyBagByName(const wchar_t*) const";
    oCases.push_back(OnCollection(
        lByName, "", [](BagsSubject& oSubject) { oSubject.mAnswer = oSubject.mBags->GetPropertyBagByName(LONG_B); }));
    oCases.push_back(OnCollection(lByName, "unknown", [](BagsSubject& oSubject) {
                         oSubject.mAnswer = oSubject.mBags->GetPropertyBagByName(L"x");
                     }).CannotFail());
    oCases.push_back(OnCollection("QTalBase::PropertyBags::Clone() const", "", [](BagsSubject& oSubject) {
                         oSubject.mClone = oSubject.mBags->Clone();
                     }).CopiesVector());
    oCases.push_back(OnCollection("QTalBase::PropertyBags::Serialize(QSerialization::WriteDataStream&) const", "",
                                  [](BagsSubject& oSubject) {
                                      QSerialization::MemoryWriteDataStream lStream;
                                      oSubject.mBags->Serialize(lStream);
                                      oSubject.mNumber = static_cast<long>(lStream.GetBytes().size());
                                  }));
    oCases.push_back(
        OnCollection("QTalBase::PropertyBags::DeSerialize(QSerialization::ReadDataStream&)", "", ReadThreeBags)
            .MayLeave(BeginningsOfBags()));
    oCases.push_back(OnCollection("QTalBase::PropertyBags::AddRef() const", "", [](BagsSubject& oSubject) {
                         const BagsPtr lSecond = oSubject.mBags;
                     }).CannotFail());
    oCases.push_back(On<BagsSubject>(
                         "QTalBase::PropertyBags::Release() const", "the last reference",
                         [] {
                             auto lSubject = ThreeBags();
                             lSubject->mClone = ThreeBags()->mBags;
                             return lSubject;
                         },
                         [](BagsSubject& oSubject) { oSubject.mClone = nullptr; })
                         .CannotFail());
}

// A collection of strings.

struct StringsSubject
{
    std::wstring See() const
    {
        std::wstring lSeen;
        for (unsigned long lIndex = 0; lIndex < mStrings->GetCount(); ++lIndex)
        {
            lSeen += Quoted(mStrings->GetString(lIndex));
        }
        return lSeen + L" answers " + SeeStrings(mAnswer.get()) + (mMade ? L" made " : L" ") + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    SmartPtrI<QTalBase::SerializableStringCollection> mStrings = QTalBase::CreateSerializableStringCollection();
    SmartPtrI<QTalBase::SerializableStringCollection> mMade;
    std::unique_ptr<QDataType::StringCollection> mAnswer;
    long mNumber = -1;
};

std::unique_ptr<StringsSubject> TwoStrings()
{
    auto lSubject = std::make_unique<StringsSubject>();
    lSubject->mStrings->Insert(LONG_A);
    lSubject->mStrings->Insert(LONG_B);
    return lSubject;
}

Case OnStrings(const char* ipOperation, const char* ipSituation, const std::function<void(StringsSubject&)>& iRun)
{
    return On<StringsSubject>(ipOperation, ipSituation, TwoStrings, iRun);
}

void ReadTwoStrings(StringsSubject& oSubject)
{
    QSerialization::MemoryWriteDataStream lWritten;
    TwoStrings()->mStrings->Serialize(lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    oSubject.mStrings->DeSerialize(lRead);
}

// Reading adds to what is there, so a second try comes behind what the first one read.
std::vector<std::wstring> StringsRead(bool iAndAgain)
{
    const std::unique_ptr<StringsSubject> lSubject = TwoStrings();
    lSubject->mStrings->Insert(LONG_A);
    if (iAndAgain)
    {
        ReadTwoStrings(*lSubject);
    }
    return {lSubject->See()};
}

void AddStringCollections(Cases& oCases)
{
    oCases.push_back(OnStrings("QTalBase::CreateSerializableStringCollection()", "", [](StringsSubject& oSubject) {
        oSubject.mMade = QTalBase::CreateSerializableStringCollection();
    }));
    const char* const lInsert = "QTalBase::SerializableStringCollection::Insert(const wchar_t*)";
    oCases.push_back(OnStrings(lInsert, "", [](StringsSubject& oSubject) { oSubject.mStrings->Insert(LONG_C); }));
    oCases.push_back(OnStrings(lInsert, "one of its own", [](StringsSubject& oSubject) {
        oSubject.mStrings->Insert(oSubject.mStrings->GetString(1));
    }));
    oCases.push_back(On<StringsSubject>(
        "QTalBase::SerializableStringCollection::Insert(const QDataType::StringCollection&)", "",
        [] {
            auto lSubject = TwoStrings();
            lSubject->mAnswer.reset(lSubject->mStrings->GetStringCollection());
            return lSubject;
        },
        [](StringsSubject& oSubject) { oSubject.mStrings->Insert(*oSubject.mAnswer); }));
    oCases.push_back(
        OnStrings("QTalBase::SerializableStringCollection::GetCount() const", "", [](StringsSubject& oSubject) {
            oSubject.mNumber = static_cast<long>(oSubject.mStrings->GetCount());
        }).CannotFail());
    const char* const lGet = "QTalBase::SerializableStringCollection::GetString(unsigned long) const";
    oCases.push_back(OnStrings(lGet, "", [](StringsSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(std::wcslen(oSubject.mStrings->GetString(1)));
                     }).CannotFail());
    oCases.push_back(OnStrings(lGet, "out of range", [](StringsSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { static_cast<void>(oSubject.mStrings->GetString(2)); });
    }));
    oCases.push_back(OnStrings("QTalBase::SerializableStringCollection::Clear()", "", [](StringsSubject& oSubject) {
                         oSubject.mStrings->Clear();
                     }).CannotFail());
    oCases.push_back(
        OnStrings("QTalBase::SerializableStringCollection::GetStringCollection() const", "",
                  [](StringsSubject& oSubject) { oSubject.mAnswer.reset(oSubject.mStrings->GetStringCollection()); }));
    oCases.push_back(
        OnStrings("QTalBase::SerializableStringCollection::Serialize(QSerialization::WriteDataStream&) const", "",
                  [](StringsSubject& oSubject) {
                      QSerialization::MemoryWriteDataStream lStream;
                      oSubject.mStrings->Serialize(lStream);
                      oSubject.mNumber = static_cast<long>(lStream.GetBytes().size());
                  }));
    oCases.push_back(OnStrings("QTalBase::SerializableStringCollection::DeSerialize(QSerialization::ReadDataStream&)",
                               "", ReadTwoStrings)
                         .MayLeave(StringsRead(false))
                         .MayComeLast(StringsRead(true)));
    oCases.push_back(
        OnStrings("QTalBase::SerializableStringCollection::AddRef() const", "", [](StringsSubject& oSubject) {
            oSubject.mMade = oSubject.mStrings;
        }).CannotFail());
    oCases.push_back(On<StringsSubject>(
                         "QTalBase::SerializableStringCollection::Release() const", "the last reference",
                         [] {
                             auto lSubject = TwoStrings();
                             lSubject->mMade = TwoStrings()->mStrings;
                             return lSubject;
                         },
                         [](StringsSubject& oSubject) { oSubject.mMade = nullptr; })
                         .CannotFail());
}

} // namespace

Cases MakeCollectionCases()
{
    Cases lCases;
    AddBagCollections(lCases);
    AddStringCollections(lCases);
    return lCases;
}

} // namespace Failures
