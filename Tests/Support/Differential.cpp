#include "Tests/Support/Differential.h"

#include "QBase/Convert.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/PlainPropertyBag.h"

#include <array>
#include <functional>
#include <stdexcept>
#include <typeinfo>
#include <vector>

namespace TalBaseTest
{

namespace
{

using QTalBase::PropertyBag;
using BagPtr = QBase::SmartPtrI<PropertyBag>;

// The two sides of everything.
enum Side
{
    Library,
    PlainSide
};

struct Slot
{
    std::array<BagPtr, 2> mBags;
};

const std::size_t gSlots = 4;
const std::size_t gLongestText = 160; // the plain implementation is exponential in the depth that a text can have
const unsigned int gDeepest = 5;

// Pairs that provoke the odd rules: the defaults, pairs a header cannot carry, letters of the header's words,
// characters of escapes, common prefixes and suffixes, and long ones that almost match.
const wchar_t* const gPairs[][2] = {{L"++++", L"***"},
                                    {L"[[", L"]]"},
                                    {L"<", L">"},
                                    {L"+*", L"**"},
                                    {L"a", L"e"},
                                    {L"xe", L"e"},
                                    {L"<;", L";;"},
                                    {L";]", L"]]"},
                                    {L"&#", L";;"},
                                    {L"4", L"x"},
                                    {L"ab", L"ba"},
                                    {L"aab", L"aac"},
                                    {L"::", L":"},
                                    {L"=", L"\n"},
                                    {L"{", L"}{"},
                                    {L"+", L"*"},
                                    {L"++", L"**"},
                                    {L"ee", L"BB"},
                                    {L"x", L"yn"},
                                    {L"#4", L"<"},
                                    {L"aaaaaaaaaaaaaaaaaaaab", L"aaaaaaaaaaaaaaaaaaac"},
                                    {L"abababababababababababx", L"babababababababababac"},
                                    {L"", L""},
                                    {L"same", L"same"},
                                    {L"\x1F600", L"\x10FFFF"},
                                    {L"*", L"+"}};

const wchar_t* const gWords[] = {L"a",
                                 L"b",
                                 L"c",
                                 L"a*b",
                                 L"x+y",
                                 L"*",
                                 L"+",
                                 L"&#42;",
                                 L"&#43;",
                                 L"&#42",
                                 L"&",
                                 L"#4",
                                 L"2;",
                                 L";",
                                 L"EndDelimiter",
                                 L"EndDelimiter*",
                                 L"FTPServerPassword",
                                 L"v",
                                 L"e",
                                 L"]",
                                 L"[",
                                 L"**",
                                 L"+++",
                                 L"name",
                                 L"",
                                 L"EndDelimiter***BeginDelimiter++++***",
                                 L"EndDelimiter]]BeginDelimiter[[]]",
                                 L"EndDelimiter>BeginDelimiter<>",
                                 L"BeginDelimiter",
                                 L"=",
                                 L"long value with more text"};

template <class Array>
constexpr unsigned int CountOf(const Array& iArray)
{
    return static_cast<unsigned int>(std::size(iArray));
}

std::wstring Describe(const PropertyBag& iBag)
{
    std::wstring lText = std::wstring(L"{") + iBag.GetBeginDelimiter() + L"|" + iBag.GetEndDelimiter() + L"|";
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        lText += std::wstring(iBag.GetName(lIndex).c_str()) + L"=";
        lText += iBag.IsEmbedded(lIndex) ? Describe(*iBag.GetValuePropertyBag(lIndex))
                                         : L"\"" + std::wstring(iBag.GetValue(lIndex).c_str()) + L"\"";
        lText += L",";
    }
    return lText + L"}";
}

std::wstring Quoted(const std::wstring& iText)
{
    return L"\"" + iText + L"\"";
}

// What one side answered: a result, or an exception's class and text.
std::wstring Outcome(const std::function<std::wstring()>& iOperation)
{
    const auto lNamed = [](const char* ipClass, const wchar_t* ipText) {
        return L"throws " + std::wstring(ipClass, ipClass + std::char_traits<char>::length(ipClass)) + L" " + ipText;
    };
    try
    {
        return iOperation();
    }
    catch (const QBase::Message& lMessage)
    {
        return lNamed(typeid(lMessage).name(), lMessage.GetMessage());
    }
    catch (const std::out_of_range&)
    {
        return L"throws std::out_of_range";
    }
    catch (const std::length_error&)
    {
        return L"throws std::length_error";
    }
}

class Driver
{
public:
    explicit Driver(Choices& iChoices) : mChoices(iChoices), mBegin(BEGIN), mEnd(END)
    {
        for (Slot& lSlot : mSlots)
        {
            lSlot.mBags = {QTalBase::CreatePropertyBag(), Plain::CreatePlainPropertyBag()};
        }
    }

    ~Driver()
    {
        BEGIN = mBegin;
        END = mEnd;
    }

    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    std::string FindDifference(std::size_t iOperations)
    {
        for (std::size_t lStep = 0; lStep < iOperations && !mChoices.IsAtEnd(); ++lStep)
        {
            hOperate();
            if (!mDifference.empty())
            {
                return QBase::WideCharToUTF8((mLog + L"\nDIFFERENCE: " + mDifference).c_str(), false);
            }
        }
        return {};
    }

private:
    using Operation = std::function<std::wstring(Side)>;

    unsigned int hBelow(unsigned int iLimit)
    {
        return mChoices.Below(iLimit);
    }

    Slot& hSlot()
    {
        mSlotIndex = hBelow(gSlots);
        return mSlots[mSlotIndex];
    }

    std::wstring hWord()
    {
        std::wstring lWord = gWords[hBelow(CountOf(gWords))];
        if (hBelow(8) == 0)
        {
            lWord += gWords[hBelow(CountOf(gWords))];
        }
        return lWord;
    }

    const wchar_t* const* hPair()
    {
        return gPairs[hBelow(2) == 0 ? hBelow(3) : hBelow(CountOf(gPairs))];
    }

    // A text that mostly has the shape of a text form, with or without header.
    std::wstring hText(const wchar_t* ipBegin, const wchar_t* ipEnd)
    {
        std::wstring lText;
        if (hBelow(2) == 0)
        {
            const wchar_t* const* lPair = hBelow(3) == 0 ? hPair() : gPairs[0];
            ipBegin = lPair[0];
            ipEnd = lPair[1];
            lText = std::wstring(L"EndDelimiter") + ipEnd + L"BeginDelimiter" + ipBegin + ipEnd;
        }
        unsigned int lDepth = 0;
        const unsigned int lPieces = hBelow(14);
        for (unsigned int lPiece = 0; lPiece < lPieces && lText.size() < gLongestText; ++lPiece)
        {
            switch (hBelow(7))
            {
            case 0:
            case 1:
            case 2:
                lText += hWord() + ipBegin + hWord() + ipEnd;
                break;
            case 3:
                lText += hWord() + ipBegin + ipEnd;
                break;
            case 4:
                if (lDepth < gDeepest)
                {
                    lText += hWord() + ipBegin;
                    ++lDepth;
                }
                break;
            case 5:
                if (lDepth > 0)
                {
                    lText += ipEnd;
                    --lDepth;
                }
                break;
            default:
                lText += hBelow(4) == 0 ? hWord() : L"";
                break;
            }
        }
        while (lDepth > 0)
        {
            lText += hBelow(40) == 0 ? L"" : ipEnd;
            --lDepth;
        }
        return hBelow(30) == 0 ? lText.substr(0, lText.size() / 2) : lText;
    }

    void hTry(const std::wstring& iWhat, const Operation& iOperation)
    {
        mLog += std::to_wstring(mSlotIndex) + L": " + iWhat + L"\n";
        const std::wstring lLibrary = Outcome([&] { return iOperation(Library); });
        const std::wstring lPlain = Outcome([&] { return iOperation(PlainSide); });
        if (lLibrary != lPlain)
        {
            mDifference = L"library: " + lLibrary + L"\nplain:   " + lPlain;
            return;
        }
        for (std::size_t lIndex = 0; lIndex < gSlots; ++lIndex)
        {
            const std::wstring lLibraryState = Describe(*mSlots[lIndex].mBags[Library]);
            const std::wstring lPlainState = Describe(*mSlots[lIndex].mBags[PlainSide]);
            if (lLibraryState != lPlainState)
            {
                mDifference = L"state of " + std::to_wstring(lIndex) + L"\nlibrary: " + lLibraryState + L"\nplain:   " +
                              lPlainState;
                return;
            }
            // Merging bags into bags would grow them without end, and what the plain one does with depth takes for
            // ever.
            if (lPlainState.size() > 1500 || hDepth(*mSlots[lIndex].mBags[PlainSide]) > gDeepest)
            {
                mSlots[lIndex].mBags = {QTalBase::CreatePropertyBag(), Plain::CreatePlainPropertyBag()};
            }
        }
    }

    static unsigned int hDepth(const PropertyBag& iBag)
    {
        unsigned int lDeepest = 0;
        for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
        {
            lDeepest =
                iBag.IsEmbedded(lIndex) ? std::max(lDeepest, 1 + hDepth(*iBag.GetValuePropertyBag(lIndex))) : lDeepest;
        }
        return lDeepest;
    }

    // A new bag takes a slot's place where it could be made.
    template <class Make>
    std::wstring hReplace(Slot& oSlot, Side iSide, const Make& iMake)
    {
        const BagPtr lBag(iMake());
        oSlot.mBags[iSide] = lBag;
        return L"made";
    }

    void hOperate();
    void hChange(unsigned int iChoice, Slot& oSlot);
    void hAsk(unsigned int iChoice, Slot& oSlot);
    void hCombine(unsigned int iChoice, Slot& oSlot);
    void hDeSerialize(Slot& oSlot);

    Choices& mChoices;
    const wchar_t* mBegin;
    const wchar_t* mEnd;
    std::array<Slot, gSlots> mSlots;
    std::size_t mSlotIndex = 0;
    std::wstring mLog;
    std::wstring mDifference;
};

void Driver::hOperate()
{
    Slot& lSlot = hSlot();
    const unsigned int lChoice = hBelow(24);
    if (lChoice < 12)
    {
        hChange(lChoice, lSlot);
    }
    else if (lChoice < 18)
    {
        hAsk(hBelow(9), lSlot);
    }
    else
    {
        hCombine(lChoice - 18, lSlot);
    }
}

void Driver::hChange(unsigned int iChoice, Slot& oSlot)
{
    const auto lBag = [&oSlot](Side iSide) -> PropertyBag& { return *oSlot.mBags[iSide]; };
    const std::wstring lName = hWord();
    switch (iChoice)
    {
    case 0:
    case 1:
    case 2: {
        const std::wstring lValue = hWord();
        hTry(L"SetProperty " + Quoted(lName) + L" " + Quoted(lValue), [&](Side iSide) {
            lBag(iSide).SetProperty(lName.c_str(), lValue.c_str(), false);
            return std::wstring();
        });
        return;
    }
    case 3:
    case 4:
    case 5:
    case 6:
    case 7: {
        const std::wstring lText = hText(lBag(Library).GetBeginDelimiter(), lBag(Library).GetEndDelimiter());
        const bool lIsSet = iChoice < 5;
        hTry((lIsSet ? L"SetProperty nested " + Quoted(lName) : std::wstring(L"AddString")) + L" " + Quoted(lText),
             [&](Side iSide) {
                 if (lIsSet)
                 {
                     lBag(iSide).SetProperty(lName.c_str(), lText.c_str(), true);
                 }
                 else
                 {
                     lBag(iSide).AddString(lText.c_str());
                 }
                 return std::wstring();
             });
        return;
    }
    case 8:
        hTry(L"RemoveProperty " + Quoted(lName), [&](Side iSide) {
            lBag(iSide).RemoveProperty(lName.c_str());
            return std::wstring();
        });
        return;
    case 9: {
        const unsigned int lIndex = hBelow(8);
        hTry(L"MoveProperty " + Quoted(lName) + L" " + std::to_wstring(lIndex), [&](Side iSide) {
            lBag(iSide).MoveProperty(lName.c_str(), lIndex);
            return std::wstring();
        });
        return;
    }
    case 10: {
        const wchar_t* const* lPair = hPair();
        hTry(L"ChangeDelimiters " + Quoted(lPair[0]) + L" " + Quoted(lPair[1]), [&](Side iSide) {
            lBag(iSide).ChangeDelimiters(lPair[0], lPair[1]);
            return std::wstring();
        });
        return;
    }
    default:
        hDeSerialize(oSlot);
        return;
    }
}

void Driver::hDeSerialize(Slot& oSlot)
{
    const wchar_t* const* lPair = hPair();
    QSerialization::MemoryWriteDataStream lWriter;
    lWriter.WriteWString(lPair[0]);
    lWriter.WriteWString(lPair[1]);
    lWriter.WriteWString(hText(lPair[0], lPair[1]).c_str());
    const std::size_t lSize = lWriter.GetBytes().size() - (hBelow(10) == 0 ? 4 : 0);
    hTry(L"DeSerialize with " + Quoted(lPair[0]) + L" " + Quoted(lPair[1]), [&](Side iSide) {
        QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lSize);
        oSlot.mBags[iSide]->DeSerialize(lReader);
        return std::wstring();
    });
}

void Driver::hAsk(unsigned int iChoice, Slot& oSlot)
{
    const auto lBag = [&oSlot](Side iSide) -> const PropertyBag& { return *oSlot.mBags[iSide]; };
    const std::wstring lName = hWord();
    const unsigned int lIndex = hBelow(6);
    switch (iChoice)
    {
    case 0:
        hTry(L"GetProperty " + Quoted(lName),
             [&](Side iSide) { return std::wstring(lBag(iSide).GetProperty(lName.c_str())); });
        return;
    case 1:
        hTry(L"GetName " + std::to_wstring(lIndex),
             [&](Side iSide) { return std::wstring(lBag(iSide).GetName(lIndex)); });
        return;
    case 2:
        hTry(L"GetValue " + std::to_wstring(lIndex),
             [&](Side iSide) { return std::wstring(lBag(iSide).GetValue(lIndex)); });
        return;
    case 3:
        hTry(L"IsEmbedded " + std::to_wstring(lIndex),
             [&](Side iSide) { return std::wstring(lBag(iSide).IsEmbedded(lIndex) ? L"true" : L"false"); });
        return;
    case 4:
    case 5:
    case 6: {
        const wchar_t* const* lPair = hPair();
        const unsigned int lFlags = hBelow(16);
        hTry(L"GetString " + std::to_wstring(lFlags) + L" " + Quoted(lPair[0]) + L" " + Quoted(lPair[1]),
             [&](Side iSide) {
                 return std::wstring(lBag(iSide).GetString((lFlags & 1) != 0, (lFlags & 2) != 0 ? lPair[0] : nullptr,
                                                           (lFlags & 4) != 0 ? lPair[1] : nullptr, (lFlags & 8) != 0));
             });
        return;
    }
    case 7: {
        const wchar_t* const* lPair = hPair();
        hTry(L"BEGIN and END become " + Quoted(lPair[0]) + L" " + Quoted(lPair[1]), [&](Side) {
            BEGIN = lPair[0];
            END = lPair[1];
            return std::wstring();
        });
        return;
    }
    default:
        hTry(L"IsPropertyEmbedded, GetPropertyBag " + Quoted(lName), [&](Side iSide) {
            return (lBag(iSide).IsPropertyEmbedded(lName.c_str()) ? L"true " : L"false ") +
                   Describe(*lBag(iSide).GetPropertyBag(lName.c_str()));
        });
        return;
    }
}

void Driver::hCombine(unsigned int iChoice, Slot& oSlot)
{
    const std::size_t lOtherIndex = hBelow(gSlots);
    Slot& lOther = mSlots[lOtherIndex];
    const std::wstring lWith = L" with " + std::to_wstring(lOtherIndex);
    const std::wstring lName = hWord();
    switch (iChoice)
    {
    case 0:
        hTry(L"AddPropertyBag" + lWith, [&](Side iSide) {
            oSlot.mBags[iSide]->AddPropertyBag(lOther.mBags[iSide].get());
            return std::wstring();
        });
        return;
    case 1:
        hTry(L"EmbedProperty " + Quoted(lName) + lWith, [&](Side iSide) {
            oSlot.mBags[iSide]->EmbedProperty(lName.c_str(), lOther.mBags[iSide].get());
            return std::wstring();
        });
        return;
    case 2:
        hTry(L"== and IsSubset" + lWith, [&](Side iSide) {
            const PropertyBag& lLeft = *oSlot.mBags[iSide];
            const PropertyBag& lRight = *lOther.mBags[iSide];
            const std::wstring lEqual = Outcome([&] { return lLeft == lRight ? L"equal " : L"different "; });
            return lEqual + Outcome([&] { return lLeft.IsSubset(&lRight) ? L"subset" : L"no subset"; });
        });
        return;
    case 3:
        hTry(L"Clone of" + lWith,
             [&](Side iSide) { return hReplace(oSlot, iSide, [&] { return lOther.mBags[iSide]->Clone(); }); });
        return;
    case 4: {
        const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
        for (unsigned int lCount = hBelow(12); lCount > 0; --lCount)
        {
            lFilter->Insert(hWord().c_str());
        }
        hTry(L"FilteredClone of" + lWith, [&](Side iSide) {
            return hReplace(oSlot, iSide, [&] { return lOther.mBags[iSide]->FilteredClone(lFilter.get()); });
        });
        return;
    }
    default:
        break;
    }
    const unsigned int lKind = hBelow(4);
    const wchar_t* const* lPair = hPair();
    const std::wstring lText = hText(lPair[0], lPair[1]);
    hTry(L"make " + std::to_wstring(lKind) + L" " + Quoted(lText) + lWith, [&](Side iSide) {
        return hReplace(oSlot, iSide, [&]() -> BagPtr {
            const bool lIsLibrary = iSide == Library;
            switch (lKind)
            {
            case 0:
                return lIsLibrary ? QTalBase::CreatePropertyBag() : Plain::CreatePlainPropertyBag();
            case 1:
                return lIsLibrary ? QTalBase::CreatePropertyBag(lPair[0], lPair[1])
                                  : Plain::CreatePlainPropertyBag(lPair[0], lPair[1]);
            case 2:
                return lIsLibrary ? QTalBase::CreatePropertyBag(lText.c_str())
                                  : Plain::CreatePlainPropertyBag(lText.c_str());
            default:
                // A nest of another bag, shared with it from now on.
                return lOther.mBags[iSide]->GetPropertyBag(lName.c_str());
            }
        });
    });
}

} // namespace

RandomChoices::RandomChoices(std::uint64_t iSeed) : mEngine(iSeed) {}

unsigned int RandomChoices::Below(unsigned int iLimit)
{
    return static_cast<unsigned int>(mEngine() % iLimit);
}

bool RandomChoices::IsAtEnd() const
{
    return false;
}

ByteChoices::ByteChoices(const std::uint8_t* ipBytes, std::size_t iSize) : mBytes(ipBytes), mLeft(iSize) {}

unsigned int ByteChoices::Below(unsigned int iLimit)
{
    if (mLeft == 0)
    {
        return 0;
    }
    --mLeft;
    return *mBytes++ % iLimit;
}

bool ByteChoices::IsAtEnd() const
{
    return mLeft == 0;
}

std::string FindDifference(Choices& iChoices, std::size_t iOperations)
{
    return Driver(iChoices).FindDifference(iOperations);
}

} // namespace TalBaseTest
