#include "Tests/Support/DifferentialDriver.h"

#include "QBase/Convert.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Views.h"

#include <sstream>
#include <vector>

namespace Support
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

// Whether only one property has the name of the one at iIndex.
bool IsOnlyOne(const QTalBase::PropertyBag& iBag, unsigned int iIndex)
{
    const std::wstring lName(iBag.GetName(iIndex));
    unsigned int lCount = 0;
    for (const QTalBase::Property& lProperty : iBag)
    {
        lCount += lName == lProperty.GetName().c_str() ? 1 : 0;
    }
    return lCount == 1;
}

// What a view shows of the property, and what stands at its path. Both are the same code on both sides, so the
// library's has to show what reading by the name shows, too.
std::wstring DescribeView(Side iSide, const QTalBase::PropertyBag& iBag, unsigned int iIndex)
{
    const std::wstring lView = Outcome([&] { return std::wstring(QTalBase::Property(iBag, iIndex).GetValue()); });
    if (iIndex >= iBag.GetCount())
    {
        return lView;
    }
    const std::wstring lName(iBag.GetName(iIndex));
    const std::wstring lPath = QTalBase::AsPathStep(lName);
    const std::wstring lAtPath = Outcome([&] { return std::wstring(QTalBase::GetValueAt(iBag, lPath.c_str())); });
    if (iSide == Library && IsOnlyOne(iBag, iIndex))
    {
        const std::wstring lByName = Outcome([&] { return std::wstring(iBag.GetProperty(lName.c_str())); });
        const bool lIsSame = lView == lByName && (iBag.IsEmbedded(iIndex) || lAtPath == lByName);
        return lView + L" " + lAtPath + (lIsSame ? L"" : L", but by its name " + lByName);
    }
    return lView + L" " + lAtPath;
}

// What stands at the path of the first property of the nest at iIndex.
std::wstring DescribeBelow(const QTalBase::PropertyBag& iBag, unsigned int iIndex)
{
    const BagPtr lNest = iBag.GetValuePropertyBag(iIndex);
    const std::wstring lPath = QTalBase::AsPathStep(iBag.GetName(iIndex)) + L"/";
    return std::wstring(QTalBase::GetValueAt(iBag, (lPath + QTalBase::AsPathStep(lNest->GetName(0))).c_str()));
}

// What << writes, said once more for the characters that the words here have.
std::wstring QuotedForOutput(const std::wstring& iText)
{
    std::wstring lText = L"'";
    for (const wchar_t lCharacter : iText)
    {
        const bool lHasBackslash = lCharacter == L'\\' || lCharacter == L'\'';
        lText += lCharacter == L'\n'       ? std::wstring(L"\\n")
                 : lCharacter == L'\xD800' ? std::wstring(L"\\u{d800}")
                                           : (lHasBackslash ? L"\\" : L"") + std::wstring(1, lCharacter);
    }
    return lText + L"'";
}

std::wstring PlainOutput(const QTalBase::PropertyBag& iBag)
{
    std::wstring lText;
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        const std::wstring lName(iBag.GetName(lIndex));
        lText += (lIndex == 0 ? L"" : L" ") + QuotedForOutput(lName) + L"=";
        lText += lName == L"FTPServerPassword" ? std::wstring(L"<hidden>")
                 : iBag.IsEmbedded(lIndex)     ? PlainOutput(*iBag.GetValuePropertyBag(lIndex))
                                               : QuotedForOutput(QTalBase::Property(iBag, lIndex).GetValue().c_str());
    }
    return L"{" + lText + L"}";
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
        lText += L" " + Outcome([&] { return Describe(*lBag.GetValuePropertyBag(lIndex)); });
        lText += L" " + DescribeView(iSide, lBag, lIndex);
        return lText + L" " + Outcome([&] { return DescribeBelow(lBag, lIndex); });
    });
}

void Driver::hWriteOut()
{
    hTry(L"<<", [&](Side iSide) {
        if (iSide == PlainSide)
        {
            return PlainOutput(hBag(iSide));
        }
        std::ostringstream lStream;
        lStream << hBag(iSide);
        return QBase::UTF8ToWideChar(lStream.str(), true);
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
               Describe(*hBag(iSide).GetPropertyBag(lName.c_str()));
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

// Two bags that hold copies of a bag as their nest, in the right one of which a plain property of the same name hides
// it from reading. There its nests are spoilt one by one, from the inside out.
std::wstring Driver::hCompareHidden(Side iSide, const PropertyBag& iBag,
                                    const std::function<void(PropertyBag&)>& iSpoil)
{
    const auto lMake = [&](const wchar_t* ipSecond) {
        const BagPtr lKeeper = MakeKeeper(iSide, true, true);
        lKeeper->SetProperty(L"a", L"1", false);
        lKeeper->SetProperty(ipSecond, L"1", false);
        lKeeper->EmbedProperty(L"n", &iBag);
        return BagPtr(lKeeper->Clone());
    };
    const BagPtr lLeft = lMake(L"a");
    const BagPtr lRight = lMake(L"n");
    std::vector<BagPtr> lNests = {lRight};
    while (lNests.back()->GetCount() > 0 && lNests.back()->IsEmbedded(lNests.back()->GetCount() - 1))
    {
        lNests.push_back(lNests.back()->GetValuePropertyBag(lNests.back()->GetCount() - 1));
    }
    std::wstring lAnswers = hCompareWith(*lLeft, *lRight);
    for (; lNests.size() > 1; lNests.pop_back())
    {
        Outcome([&] {
            iSpoil(*lNests.back());
            return std::wstring();
        });
        lAnswers += L" " + hCompareWith(*lLeft, *lRight) + L" " + hCompareWith(*lRight, *lLeft);
    }
    return lAnswers;
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

} // namespace Support
