#include "Tests/Support/DifferentialDriver.h"

#include "QSerialization/MemoryDataStream.h"

#include <vector>

namespace TalBaseTest
{

namespace
{

std::wstring YesOrNo(bool iAnswer)
{
    return iAnswer ? L"yes" : L"no";
}

// What a stream carries, as a text in which every difference shows.
std::wstring Described(const std::vector<std::byte>& iBytes)
{
    std::wstring lText = L"bytes";
    for (const std::byte lByte : iBytes)
    {
        lText += L" " + std::to_wstring(std::to_integer<unsigned int>(lByte));
    }
    return lText;
}

} // namespace

void Driver::hSerialize()
{
    hTry(L"Serialize", [&](Side iSide) {
        QSerialization::MemoryWriteDataStream lWriter;
        const std::wstring lOutcome = Outcome([&] {
            hBag(iSide).Serialize(lWriter);
            return std::wstring();
        });
        return lOutcome + Described(lWriter.GetBytes());
    });
}

void Driver::hGetProperty()
{
    const std::wstring lName = hName();
    hTry(L"GetProperty " + Quoted(lName),
         [&](Side iSide) { return std::wstring(hBag(iSide).GetProperty(lName.c_str())); });
}

void Driver::hGetAtPosition()
{
    const unsigned int lChoice = hBelow(12);
    const unsigned int lIndex = lChoice == 11 ? 0xFFFFFFFF : lChoice;
    hTry(L"what is at " + std::to_wstring(lIndex), [&](Side iSide) {
        const PropertyBag& lBag = hBag(iSide);
        std::wstring lText = std::to_wstring(lBag.GetCount());
        lText += L" " + Outcome([&] { return std::wstring(lBag.GetName(lIndex)); });
        lText += L" " + Outcome([&] { return std::wstring(lBag.GetValue(lIndex)); });
        lText += L" " + Outcome([&] { return YesOrNo(lBag.IsEmbedded(lIndex)); });
        return lText + L" " + Outcome([&] { return DescribeState(*lBag.GetValuePropertyBag(lIndex)); });
    });
}

void Driver::hGetString()
{
    const unsigned int lFlags = hBelow(32);
    const DelimiterPair lPair = mTexts.Pair();
    hTry(L"GetString " + std::to_wstring(lFlags) + L" " + Quoted(lPair), [&](Side iSide) {
        const PropertyBag& lBag = hBag(iSide);
        const bool lHasHeader = (lFlags & 1) != 0;
        const wchar_t* lBegin = (lFlags & 2) != 0 ? lPair.mBegin.c_str() : nullptr;
        const wchar_t* lEnd = (lFlags & 4) != 0 ? lPair.mEnd.c_str() : nullptr;
        if ((lFlags & 16) != 0)
        {
            return std::wstring(lBag.GetStringWithoutSensitiveInfo(lHasHeader, lBegin, lEnd));
        }
        return std::wstring(lBag.GetString(lHasHeader, lBegin, lEnd, (lFlags & 8) != 0));
    });
}

void Driver::hGetNest()
{
    const std::wstring lName = hName();
    hTry(L"IsPropertyEmbedded, GetPropertyBag " + Quoted(lName), [&](Side iSide) {
        return YesOrNo(hBag(iSide).IsPropertyEmbedded(lName.c_str())) + L" " +
               DescribeState(*hBag(iSide).GetPropertyBag(lName.c_str()));
    });
}

// Also with the twin of the other kind on the right, which changes no answer.
void Driver::hCompare()
{
    const Twins& lOther = hOther();
    const bool lIsForeign = mChoices.Once(3);
    hTry(L"==, IsSubset" + hWithOther() + (lIsForeign ? L", foreign" : L""), [&](Side iSide) {
        const PropertyBag& lLeft = hBag(iSide);
        const PropertyBag& lRight = *lOther.mBags[lIsForeign ? OtherSide(iSide) : iSide];
        return hCompareWith(lLeft, lRight);
    });
}

std::wstring Driver::hCompareWith(const PropertyBag& iLeft, const PropertyBag& iRight)
{
    const std::wstring lEqual = Outcome([&] { return YesOrNo(iLeft.operator==(iRight)); });
    return lEqual + L" " + Outcome([&] { return YesOrNo(iLeft.IsSubset(&iRight)); });
}

// A bag and what was a copy of it: by its text, or a clone that shares its nests.
void Driver::hCompareAltered()
{
    const unsigned int lKind = hBelow(6);
    const std::wstring lName = hName();
    const std::wstring lValue = mTexts.Word();
    const unsigned int lIndex = hBelow(4);
    const bool lIsClone = mChoices.Once(2);
    hTry(L"==, IsSubset with a copy altered by " + std::to_wstring(lKind) + L" " + Quoted(lName) + L" " +
             Quoted(lValue),
         [&](Side iSide) {
             const PropertyBag& lBag = hBag(iSide);
             const BagPtr lCopy =
                 lIsClone ? BagPtr(lBag.Clone()) : MakeBag(iSide, lBag.GetString(true, nullptr, nullptr, true).c_str());
             switch (lKind)
             {
             case 0:
                 lCopy->SetProperty(lName.c_str(), lValue.c_str(), false);
                 break;
             case 1:
                 lCopy->MoveProperty(lName.c_str(), lIndex);
                 break;
             case 2:
                 lCopy->RemoveProperty(lName.c_str());
                 break;
             case 3:
                 lCopy->AddPropertyBag(&lBag);
                 break;
             case 4:
                 lCopy->RemoveProperty(lName.c_str());
                 lCopy->AddPropertyBag(&lBag);
                 break;
             default:
                 break;
             }
             return hCompareWith(lBag, *lCopy) + L" " + hCompareWith(*lCopy, lBag);
         });
}

} // namespace TalBaseTest
