// The templates with which collections of named bags travel through streams and are copied. They are compiled into
// their callers, so no table of a library names them.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/SerializationTemplates.h"

namespace Failures
{

namespace
{

using QTalBase::NamedPropertyBag;
using Support::Quoted;

using Entries = std::vector<NamedPropertyBag>;

std::wstring SeeEntries(const Entries& iEntries)
{
    std::wstring lSeen;
    for (const NamedPropertyBag& lEntry : iEntries)
    {
        const BagPtr lBag(lEntry.second ? lEntry.second->Clone() : nullptr);
        lSeen += Quoted(lEntry.first) + L"=" + SeeBag(lBag) + L"\n";
    }
    return lSeen;
}

struct EntriesSubject
{
    std::wstring See() const
    {
        return SeeEntries(mEntries) + L"destination " + SeeEntries(mDestination) + std::to_wstring(mNumber) + L" bag " +
               (mBag ? Support::Describe(*mBag) : L"null");
    }

    std::vector<const void*> Identify() const
    {
        std::vector<const void*> lBags;
        for (const NamedPropertyBag& lEntry : mEntries)
        {
            lBags.push_back(lEntry.second.get());
        }
        lBags.push_back(mBag.get());
        return lBags;
    }

    Entries mEntries;
    Entries mDestination;
    QBase::SmartPtrI<const QTalBase::PropertyBag> mBag;
    long mNumber = -1;
};

std::unique_ptr<EntriesSubject> ThreeEntries()
{
    auto lSubject = std::make_unique<EntriesSubject>();
    lSubject->mEntries.emplace_back(LONG_A, Filled());
    lSubject->mEntries.emplace_back(LONG_B, nullptr);
    lSubject->mEntries.emplace_back(LONG_C, Raw());
    lSubject->mDestination.emplace_back(L"old", Empty());
    return lSubject;
}

Case OnEntries(const char* ipOperation, const std::function<void(EntriesSubject&)>& iRun)
{
    return On<EntriesSubject>(ipOperation, "", ThreeEntries, iRun);
}

// What a reader or a copy that fails has put into the destination: the entries before the one that failed.
std::vector<std::wstring> Beginnings()
{
    std::vector<std::wstring> lStates;
    const std::unique_ptr<EntriesSubject> lSubject = ThreeEntries();
    for (std::size_t lCount = 0; lCount < lSubject->mEntries.size(); ++lCount)
    {
        lSubject->mDestination.assign(lSubject->mEntries.begin(),
                                      lSubject->mEntries.begin() + static_cast<std::ptrdiff_t>(lCount));
        lStates.push_back(lSubject->See());
    }
    return lStates;
}

void WriteAndRead(EntriesSubject& oSubject)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten << oSubject.mEntries;
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    lRead >> oSubject.mDestination;
}

// A bag that is there, read into where another one was.
Case ReadingBag()
{
    const BagPtr lBag = Support::BagBuilder(LONG_BEGIN, LONG_END).Set(LONG_A, LONG_V).Set(LONG_B, LONG_V);
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteBool(true);
    lBag->Serialize(lWritten);
    const auto lMake = [] {
        std::unique_ptr<EntriesSubject> lSubject = ThreeEntries();
        lSubject->mBag = Filled();
        return lSubject;
    };
    // A new bag, and that with one and with both of its delimiters.
    std::wstring lSeen = ThreeEntries()->See();
    lSeen.erase(lSeen.rfind(L"null"));
    const std::vector<std::wstring> lLeft = {lSeen + L"'++++' '***' {}", lSeen + L"'" LONG_BEGIN L"' '***' {}",
                                             lSeen + L"'" LONG_BEGIN L"' '" LONG_END L"' {}"};
    return On<EntriesSubject>("QSerialization::operator>>(ReadDataStream&, SmartPtrI<const PropertyBag>&)", "present",
                              lMake,
                              [lBytes = lWritten.GetBytes()](EntriesSubject& oSubject) {
                                  QSerialization::MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
                                  QSerialization::operator>>(lStream, oSubject.mBag);
                              })
        .LeavesEachOf(lLeft);
}

} // namespace

Cases MakeTemplateCases()
{
    Cases lCases;
    lCases.push_back(OnEntries("operator<<(WriteDataStream&, const std::vector<Entry>&)", [](EntriesSubject& oSubject) {
        QSerialization::MemoryWriteDataStream lStream;
        lStream << oSubject.mEntries;
        oSubject.mNumber = static_cast<long>(lStream.GetBytes().size());
    }));
    lCases.push_back(
        OnEntries("operator>>(ReadDataStream&, std::vector<Entry>&)", WriteAndRead).LeavesEachOf(Beginnings()));
    lCases.push_back(OnEntries("QSerialization::operator>>(ReadDataStream&, SmartPtrI<const PropertyBag>&)",
                               [](EntriesSubject& oSubject) {
                                   const unsigned char lAbsent[] = {0};
                                   QSerialization::MemoryReadDataStream lStream(lAbsent, sizeof lAbsent);
                                   QSerialization::operator>>(lStream, oSubject.mEntries.back().second);
                               })
                         .CannotFail());
    lCases.push_back(ReadingBag());
    lCases.push_back(OnEntries("QClone::Clear(std::vector<Entry>&)", [](EntriesSubject& oSubject) {
                         QClone::Clear(oSubject.mEntries);
                     }).CannotFail());
    lCases.push_back(OnEntries("QClone::Deep(std::vector<Entry>&, std::vector<Entry>)",
                               [](EntriesSubject& oSubject) { QClone::Deep(oSubject.mDestination, oSubject.mEntries); })
                         .LeavesEachOf(Beginnings())
                         .CopiesVector());
    return lCases;
}

} // namespace Failures
