// Reading whatever bytes there are as each kind of object that the library can read: what is read, what is thrown and
// what is left are those of a plain reader, an object writes itself as a plain writer would and comes back from that,
// and no bytes cost more memory than Docs/Limits.md states.
//
// The first byte chooses the kind; the others are the stream, or, with the highest bit of the first one set, short
// orders from which the stream is made.

#include "Fuzz/Support/AllocationLimit.h"
#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/PlainStreams.h"
#include "Fuzz/Support/Target.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/SerializationTemplates.h"
#include "TalBase/TextCheck.h"
#include "Tests/Support/BagTexts.h"
#include "Tests/Support/BrokenRule.h"
#include "Tests/Support/Twins.h"

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace
{

using QSerialization::ReadDataStream;
using QSerialization::WriteDataStream;
using QTalBase::PropertyBag;
using Support::BagPtr;
using Support::Describe;
using Support::Library;
using Support::MakeBag;
using Support::Outcome;
using Support::PlainSide;
using Support::Side;

// What can be seen of an object that was read, and of its writing.
struct Observed
{
    std::wstring mRead;
    std::wstring mState;
    std::wstring mWritten = L"done";
    bool mComesBack = true; // whether it must when what was written is read
};

std::wstring Done(const std::function<void()>& iOperation)
{
    return Outcome([&] {
        iOperation();
        return std::wstring(L"done");
    });
}

// Reading takes at most as many times the bytes of the stream as Docs/Limits.md states, and something for what there is
// before. The plain side has no limit.
std::wstring DoneReading(ReadDataStream& iRead, const std::function<void()>& iOperation)
{
    const std::size_t lMultiple = 33;
    const auto* lStream = dynamic_cast<const QSerialization::MemoryReadDataStream*>(&iRead);
    std::optional<Fuzz::AllocationLimit> lLimit;
    if (lStream != nullptr)
    {
        lLimit.emplace(20000 + lMultiple * lStream->GetRemaining());
    }
    return Done(iOperation);
}

// Bags.

std::wstring StateOf(const PropertyBag* ipBag)
{
    return ipBag != nullptr ? Describe(*ipBag) : L"null";
}

bool ComesBack(const PropertyBag* ipBag)
{
    return ipBag == nullptr || QTalBase::FindTextFault(*ipBag, true, nullptr, nullptr).IsNone();
}

Observed ObserveBag(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    const BagPtr lBag = MakeBag(iSide);
    Observed lObserved;
    lObserved.mRead = DoneReading(iRead, [&] { lBag->DeSerialize(iRead); });
    lObserved.mState = Describe(*lBag);
    lObserved.mWritten = Done([&] { lBag->Serialize(iWrite); });
    lObserved.mComesBack = ComesBack(lBag.get());
    return lObserved;
}

// An entry of a collection, of one side or the other.
using Entries = std::vector<std::pair<std::wstring, QBase::SmartPtrI<const PropertyBag>>>;

void PlainRead(ReadDataStream& iRead, QBase::SmartPtrI<const PropertyBag>& oBag)
{
    bool lIsPresent = false;
    iRead.ReadBool(lIsPresent);
    const BagPtr lBag = lIsPresent ? MakeBag(PlainSide) : nullptr;
    oBag = lBag;
    if (lIsPresent)
    {
        lBag->DeSerialize(iRead);
    }
}

void PlainRead(ReadDataStream& iRead, Entries& oEntries)
{
    oEntries.clear();
    unsigned int lCount = 0;
    iRead.ReadUInt32(lCount);
    for (; lCount > 0; --lCount)
    {
        Entries::value_type lEntry;
        lEntry.first = std::wstring_view(iRead.ReadWString());
        PlainRead(iRead, lEntry.second);
        oEntries.push_back(lEntry);
    }
}

void PlainWrite(WriteDataStream& iWrite, const Entries& iEntries)
{
    iWrite.WriteUInt32(static_cast<unsigned int>(iEntries.size()));
    for (const auto& [lName, lBag] : iEntries)
    {
        iWrite.WriteWString(lName.c_str());
        iWrite.WriteBool(lBag != nullptr);
        if (lBag != nullptr)
        {
            lBag->Serialize(iWrite);
        }
    }
}

void Describe(const Entries& iEntries, Observed& oObserved)
{
    for (const auto& [lName, lBag] : iEntries)
    {
        oObserved.mState += std::to_wstring(lName.size()) + L" " + lName + L" " + StateOf(lBag.get()) + L"\n";
        // A name is read whole and written up to its first zero.
        oObserved.mComesBack = oObserved.mComesBack && ComesBack(lBag.get()) && lName.find(L'\0') == std::wstring::npos;
    }
}

Observed ObserveEntries(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    Entries lEntries = {{L"old", MakeBag(iSide)}};
    Observed lObserved;
    lObserved.mRead =
        DoneReading(iRead, [&] { iSide == Library ? void(iRead >> lEntries) : PlainRead(iRead, lEntries); });
    Describe(lEntries, lObserved);
    lObserved.mWritten = Done([&] { iSide == Library ? void(iWrite << lEntries) : PlainWrite(iWrite, lEntries); });
    return lObserved;
}

Observed ObserveReference(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    QBase::SmartPtrI<const PropertyBag> lBag(MakeBag(iSide));
    Observed lObserved;
    lObserved.mRead = DoneReading(iRead, [&] {
        using QSerialization::operator>>;
        iSide == Library ? void(iRead >> lBag) : PlainRead(iRead, lBag);
    });
    lObserved.mState = StateOf(lBag.get());
    lObserved.mComesBack = ComesBack(lBag.get());
    lObserved.mWritten = Done([&] {
        iWrite.WriteBool(lBag != nullptr);
        if (lBag != nullptr)
        {
            lBag->Serialize(iWrite);
        }
    });
    return lObserved;
}

// Names are told apart whole, though what is seen of one ends at its first zero.
const PropertyBag* PlainFind(const Entries& iEntries, const wchar_t* ipName)
{
    for (const auto& [lName, lBag] : iEntries)
    {
        if (lName == ipName)
        {
            return lBag.get();
        }
    }
    return nullptr;
}

// A clone is refused where a stream brought delimiters that no bag may have.
std::wstring StateOfClone(const PropertyBag* ipBag)
{
    return Outcome([&] { return StateOf(BagPtr(ipBag != nullptr ? ipBag->Clone() : nullptr).get()); });
}

Observed ObservePlainBags(ReadDataStream& iRead, WriteDataStream& iWrite)
{
    Observed lObserved;
    Entries lEntries;
    lObserved.mRead = Done([&] { PlainRead(iRead, lEntries); });
    lObserved.mWritten = Done([&] { PlainWrite(iWrite, lEntries); });
    for (const auto& [lName, lBag] : lEntries)
    {
        lObserved.mState += std::wstring(lName.c_str()) + L" " + StateOfClone(lBag.get()) + L" " +
                            StateOfClone(PlainFind(lEntries, lName.c_str())) + L"\n";
    }
    return lObserved;
}

Observed ObserveBags(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    if (iSide == PlainSide)
    {
        return ObservePlainBags(iRead, iWrite);
    }
    const QBase::SmartPtrI<QTalBase::PropertyBags> lRead(QTalBase::CreatePropertyBags());
    lRead->Add(L"old", MakeBag(Library).get());
    Observed lObserved;
    lObserved.mRead = DoneReading(iRead, [&] { lRead->DeSerialize(iRead); });
    lObserved.mWritten = Done([&] { lRead->Serialize(iWrite); });
    const QBase::SmartPtrI<const QTalBase::PropertyBags> lBags(lRead->Clone());
    std::map<std::wstring, std::wstring> lFirstSeen;
    for (unsigned int lIndex = 0; lIndex < lBags->GetCount(); ++lIndex)
    {
        const std::wstring lName = lBags->GetName(lIndex);
        BagPtr lBag;
        const std::wstring lThis = Outcome([&] { return StateOf((lBag = lBags->GetPropertyBag(lIndex)).get()); });
        const std::wstring lFirst = Outcome([&] { return StateOf(lBags->GetPropertyBagByName(lName.c_str()).get()); });
        lObserved.mState += lName + L" " + lThis + L" " + lFirst + L"\n";
        // Where that is not the first one seen, a name holds a zero, and is written without what follows.
        const bool lIsFirst = lFirstSeen.emplace(lName, lThis).first->second == lFirst;
        lObserved.mComesBack = lObserved.mComesBack && ComesBack(lBag.get()) && lIsFirst;
    }
    return lObserved;
}

// The rest.

Observed ObserveWindow(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    Observed lObserved;
    unsigned int lWord = 0;
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    const bool lIsLibrary = iSide == Library;
    lObserved.mRead = DoneReading(iRead, [&] { lIsLibrary ? lWindow->DeSerialize(iRead) : iRead.ReadUInt32(lWord); });
    for (unsigned int lHour = 0; lHour < 40; ++lHour)
    {
        const bool lIsEnabled = lIsLibrary ? lWindow->IsEnabled(lHour) : (lWord & 1U << lHour % 32) == 0;
        lObserved.mState += lIsEnabled ? L'+' : L'-';
    }
    lObserved.mWritten = Done([&] { lIsLibrary ? lWindow->Serialize(iWrite) : iWrite.WriteUInt32(lWord); });
    return lObserved;
}

std::vector<std::wstring> PlainReadTexts(ReadDataStream& iRead, std::vector<std::wstring>& oTexts)
{
    unsigned long lCount = 0;
    iRead.ReadUInt64(lCount);
    for (; lCount > 0; --lCount)
    {
        oTexts.push_back(iRead.ReadWString().c_str());
    }
    return oTexts;
}

void PlainWriteTexts(WriteDataStream& iWrite, const std::vector<std::wstring>& iTexts)
{
    iWrite.WriteUInt64(iTexts.size());
    for (const std::wstring& lText : iTexts)
    {
        iWrite.WriteWString(lText.c_str());
    }
}

// DeSerialize, or a double of it that takes memory for as many strings as the bytes claim to hold.
void ReadStrings(QTalBase::SerializableStringCollection& oStrings, ReadDataStream& iRead)
{
    if (Plain::IsBroken("ClaimedCount"))
    {
        QSerialization::MemoryReadDataStream lAhead(dynamic_cast<QSerialization::MemoryReadDataStream&>(iRead));
        unsigned long lCount = 0;
        lAhead.ReadUInt64(lCount);
        std::wstring().reserve(lCount % 1000000000);
    }
    oStrings.DeSerialize(iRead);
}

Observed ObserveStrings(Side iSide, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    Observed lObserved;
    std::vector<std::wstring> lTexts;
    if (iSide == PlainSide)
    {
        lObserved.mRead = Done([&] { PlainReadTexts(iRead, lTexts); });
        lObserved.mWritten = Done([&] { PlainWriteTexts(iWrite, lTexts); });
    }
    else
    {
        const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lStrings(
            QTalBase::CreateSerializableStringCollection());
        lObserved.mRead = DoneReading(iRead, [&] { ReadStrings(*lStrings, iRead); });
        lObserved.mWritten = Done([&] { lStrings->Serialize(iWrite); });
        const std::unique_ptr<QDataType::StringCollection> lCopy(lStrings->GetStringCollection());
        Fuzz::Require(lCopy->GetCount() == lStrings->GetCount(), "a copied collection has another size");
        for (unsigned long lIndex = 0; lIndex < lCopy->GetCount(); ++lIndex)
        {
            lTexts.push_back(lCopy->GetString(lIndex));
        }
    }
    for (const std::wstring& lText : lTexts)
    {
        lObserved.mState += std::to_wstring(lText.size()) + L" " + lText + L"\n";
    }
    return lObserved;
}

// The first eight bytes are the order in which primitives are read; each is written again.
Observed ObservePrimitives(Side, ReadDataStream& iRead, WriteDataStream& iWrite)
{
    Observed lObserved;
    unsigned long lOrder = 0;
    unsigned int lNumber = 0;
    bool lFlag = false;
    lObserved.mRead = Done([&] {
        iRead.ReadUInt64(lOrder);
        iWrite.WriteUInt64(lOrder);
        for (int lRead = 0; lRead < 32; ++lRead, lOrder >>= 2)
        {
            switch (lOrder & 3)
            {
            case 0:
                iRead.ReadBool(lFlag);
                iWrite.WriteBool(lFlag);
                break;
            case 1:
                iRead.ReadUInt32(lNumber);
                iWrite.WriteUInt32(lNumber);
                break;
            case 2: {
                unsigned long lLongNumber = 0;
                iRead.ReadUInt64(lLongNumber);
                iWrite.WriteUInt64(lLongNumber);
                break;
            }
            default: {
                const QBase::ReturnWString lText = iRead.ReadWString();
                lObserved.mState += std::to_wstring(lText.GetLength()) + L" " + std::wstring(std::wstring_view(lText));
                lObserved.mComesBack =
                    lObserved.mComesBack && std::wstring_view(lText).find(L'\0') == std::wstring_view::npos;
                iWrite.WriteWString(lText.c_str());
                break;
            }
            }
        }
    });
    return lObserved;
}

using Observe = Observed (*)(Side, ReadDataStream&, WriteDataStream&);
const Observe gKinds[] = {ObserveBag,     ObserveBags,      ObserveWindow,    ObserveStrings,
                          ObserveEntries, ObserveReference, ObservePrimitives};

// Thrown where the plain bag would take too long.
class TooExpensive
{
};

class GuardedReadStream : public Fuzz::PlainReadStream
{
public:
    using PlainReadStream::PlainReadStream;

    QBase::ReturnWString ReadWString() override
    {
        const QBase::ReturnWString lText = PlainReadStream::ReadWString();
        if (!Support::IsAffordable(lText.c_str(), mLastTwo))
        {
            throw TooExpensive();
        }
        mLastTwo = {mLastTwo.mEnd, lText.c_str()};
        return lText;
    }

private:
    Support::DelimiterPair mLastTwo;
};

std::string BytesOf(const QSerialization::MemoryWriteDataStream& iStream)
{
    const auto& lBytes = iStream.GetBytes();
    return std::string(reinterpret_cast<const char*>(lBytes.data()), lBytes.size());
}

struct Seen
{
    Observed mObserved;
    std::string mBytes;
    std::size_t mRemaining;
};

Seen ReadWithLibrary(Observe ipObserve, const std::string& iBytes)
{
    QSerialization::MemoryReadDataStream lRead(iBytes.data(), iBytes.size());
    QSerialization::MemoryWriteDataStream lWrite;
    const Observed lObserved = ipObserve(Library, lRead, lWrite);
    return {lObserved, BytesOf(lWrite), lRead.GetRemaining()};
}

void CheckAgainstPlain(Observe ipObserve, const std::string& iBytes, const Seen& iSeen)
{
    GuardedReadStream lRead(iBytes);
    Fuzz::PlainWriteStream lWrite;
    Observed lPlain;
    try
    {
        lPlain = ipObserve(PlainSide, lRead, lWrite);
    }
    catch (const TooExpensive&)
    {
        return;
    }
    Fuzz::RequireEqual(iSeen.mObserved.mRead, lPlain.mRead, "reading has another outcome than the plain reader's");
    Fuzz::RequireEqual(iSeen.mObserved.mState, lPlain.mState, "what was read is not what the plain reader read");
    Fuzz::RequireEqual(iSeen.mObserved.mWritten, lPlain.mWritten,
                       "writing has another outcome than the plain writer's");
    Fuzz::Require(iSeen.mBytes == lWrite.mBytes, "the bytes written are not those of the plain writer");
    Fuzz::Require(iSeen.mRemaining == lRead.GetRemaining(), "another number of bytes is left than by the plain reader");
}

void Check(Observe ipObserve, const std::string& iBytes)
{
    Seen lSeen;
    {
        // Beside what was read there are its description, what it writes and copies.
        const Fuzz::AllocationLimit lLimit(20000 + 100 * iBytes.size());
        lSeen = ReadWithLibrary(ipObserve, iBytes);
    }
    CheckAgainstPlain(ipObserve, iBytes, lSeen);
    // A spoilt bag, which a collection may hold, stops the writing.
    if (lSeen.mObserved.mRead == L"done" && lSeen.mObserved.mWritten == L"done" && lSeen.mObserved.mComesBack)
    {
        const Seen lAgain = ReadWithLibrary(ipObserve, lSeen.mBytes);
        Fuzz::RequireEqual(lAgain.mObserved.mRead, L"done", "what was written cannot be read");
        Fuzz::RequireEqual(lAgain.mObserved.mState, lSeen.mObserved.mState,
                           "what was written is read as something else");
        Fuzz::Require(lAgain.mBytes == lSeen.mBytes && lAgain.mRemaining == 0, "what was written is not written again");
    }
}

// What one order stands for in a stream.
void Append(Fuzz::PlainWriteStream& oStream, Fuzz::Input& iInput)
{
    const unsigned int lOrder = iInput.Byte();
    const auto& lPairs = Support::OddPairs();
    const auto& lPair = lPairs[lOrder / 8 % lPairs.size()];
    switch (lOrder % 8)
    {
    case 0:
        oStream.WriteBool((lOrder & 8) != 0);
        return;
    case 1:
        oStream.WriteUInt32(lOrder / 8);
        return;
    case 2:
        oStream.WriteUInt64(lOrder / 8);
        return;
    case 3:
        oStream.WriteWString(lPair.mBegin.c_str());
        oStream.WriteWString(lPair.mEnd.c_str());
        return;
    case 4:
        oStream.WriteWString((L"EndDelimiter" + lPair.mEnd + L"BeginDelimiter" + lPair.mBegin + lPair.mEnd + L"name" +
                              lPair.mBegin + L"value" + lPair.mEnd)
                                 .c_str());
        return;
    case 5:
        oStream.mBytes += iInput.Bytes(lOrder / 8);
        return;
    default: {
        const std::string lText = iInput.Bytes(lOrder / 8 * (lOrder % 2 == 0 ? 1 : 4));
        oStream.WriteWString(std::wstring(lText.begin(), lText.end()).c_str());
        return;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    const unsigned int lFirst = lInput.Byte();
    const Observe lObserve = gKinds[(lFirst & 0x7F) % std::size(gKinds)];
    if ((lFirst & 0x80) == 0)
    {
        Check(lObserve, lInput.Rest());
        return 0;
    }
    Fuzz::PlainWriteStream lStream;
    while (!lInput.IsAtEnd())
    {
        Append(lStream, lInput);
    }
    Check(lObserve, lStream.mBytes);
    return 0;
}
