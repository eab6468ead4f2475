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
        return SeeEntries(mEntries) + L"destination " + SeeEntries(mDestination) + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        std::vector<const void*> lBags;
        for (const NamedPropertyBag& lEntry : mEntries)
        {
            lBags.push_back(lEntry.second.get());
        }
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

// What a reader or a copy that fails has put into the destination: the entries up to some one.
std::vector<std::wstring> Beginnings()
{
    std::vector<std::wstring> lStates;
    const std::unique_ptr<EntriesSubject> lSubject = ThreeEntries();
    for (std::size_t lCount = 0; lCount <= lSubject->mEntries.size(); ++lCount)
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
        OnEntries("operator>>(ReadDataStream&, std::vector<Entry>&)", WriteAndRead).MayLeave(Beginnings()));
    lCases.push_back(OnEntries("QSerialization::operator>>(ReadDataStream&, SmartPtrI<const PropertyBag>&)",
                               [](EntriesSubject& oSubject) {
                                   const unsigned char lAbsent[] = {0};
                                   QSerialization::MemoryReadDataStream lStream(lAbsent, sizeof lAbsent);
                                   QSerialization::operator>>(lStream, oSubject.mEntries.back().second);
                               })
                         .CannotFail());
    lCases.push_back(OnEntries("QClone::Clear(std::vector<Entry>&)", [](EntriesSubject& oSubject) {
                         QClone::Clear(oSubject.mEntries);
                     }).CannotFail());
    lCases.push_back(OnEntries("QClone::Deep(std::vector<Entry>&, std::vector<Entry>)",
                               [](EntriesSubject& oSubject) { QClone::Deep(oSubject.mDestination, oSubject.mEntries); })
                         .MayLeave(Beginnings())
                         .CopiesVector());
    return lCases;
}

} // namespace Failures
