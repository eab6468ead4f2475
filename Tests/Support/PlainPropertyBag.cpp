#include "Tests/Support/PlainPropertyBag.h"

#include "QBase/Atomic.h"
#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/PrivateSource/Messages.h"
#include "Tests/Support/BrokenRule.h"

#include <algorithm>
#include <cwchar>
#include <memory>

namespace Plain
{

using QTalBase::BufferedWString;
using QTalBase::CreateBufferedWString;
using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
namespace Messages = QTalBase::Messages;

namespace
{

using Messages::Throw;
using BufferPtr = QBase::SmartPtrI<BufferedWString>;

const wchar_t gEndWord[] = L"EndDelimiter";
const wchar_t gBeginWord[] = L"BeginDelimiter";
const unsigned int gEndWordLength = 12;
const unsigned int gBeginWordLength = 14;

const wchar_t gStarEscape[] = L"&#42;";
const wchar_t gPlusEscape[] = L"&#43;";
const std::size_t gEscapeLength = 5;

bool Contains(const wchar_t* ipText, const wchar_t* ipPart)
{
    return std::wcsstr(ipText, ipPart) != nullptr;
}

// Deletes a bag that nobody has taken a reference on yet, unless it is handed over.
using UnownedBag = std::unique_ptr<PropertyBag>;

template <class Content>
unsigned int NamePosition(const Content& iContent, const wchar_t* ipName)
{
    for (std::size_t lIndex = 0; lIndex < iContent.size(); ++lIndex)
    {
        if (iContent[lIndex].first == ipName)
        {
            return static_cast<unsigned int>(lIndex);
        }
    }
    return gNotFoundPosition;
}

// Shifts the later entries one place to the front; the last slot goes.
template <class Content>
void RemoveFirst(Content& iContent, const wchar_t* ipName)
{
    if (ipName == nullptr || iContent.empty())
    {
        return;
    }
    const unsigned int lPosition = NamePosition(iContent, ipName);
    if (lPosition == gNotFoundPosition)
    {
        return;
    }
    iContent.erase(iContent.begin() + lPosition);
}

void AppendRun(BufferedWString& iBuffer, const std::wstring& iText, std::size_t iFrom, std::size_t iTo)
{
    if (iFrom < iTo)
    {
        iBuffer += iText.substr(iFrom, iTo - iFrom);
    }
}

std::wstring AsText(const QBase::ReturnWString& iText)
{
    return std::wstring(iText.c_str(), iText.GetLength());
}

// Comparing asks both bags by calls, which derived classes answer. A value is compared as it is stored with what
// reading the other one's property gives.
bool IsEqualIn(const PropertyBag& iOther, const PropertyBag& iBag, unsigned int iIndex)
{
    const std::wstring lName = AsText(iBag.GetName(iIndex));
    const std::wstring lRead = AsText(iOther.GetProperty(lName.c_str()));
    const bool lIsNest = iBag.IsEmbedded(iIndex);
    if (iOther.IsPropertyEmbedded(lName.c_str()) != lIsNest)
    {
        return false;
    }
    if (lIsNest)
    {
        const QBase::SmartPtrI<PropertyBag> lNest = iOther.GetPropertyBag(lName.c_str());
        return *lNest == *iBag.GetValuePropertyBag(iIndex);
    }
    return AsText(IsBroken("EqualsReadsBoth") ? iBag.GetProperty(lName.c_str()) : iBag.GetValue(iIndex)) == lRead;
}

// Here both sides are asked by name, and both values are read.
bool IsContainedIn(const PropertyBag& iBag, const PropertyBag& iSubset, unsigned int iIndex)
{
    const std::wstring lName = AsText(iSubset.GetName(iIndex));
    const wchar_t* lAsked = lName.c_str();
    const bool lHasNest = iBag.IsPropertyEmbedded(lAsked);
    if (lHasNest != iSubset.IsPropertyEmbedded(lAsked))
    {
        return false;
    }
    if (iSubset.IsEmbedded(iIndex))
    {
        const QBase::SmartPtrI<PropertyBag> lNest = iBag.GetPropertyBag(lAsked);
        return lNest->IsSubset(iSubset.GetPropertyBag(lAsked).get());
    }
    const std::wstring lValue = AsText(iBag.GetProperty(lAsked));
    return lValue == AsText(iSubset.GetProperty(lAsked));
}

} // namespace

PlainPropertyBag::PlainPropertyBag() : mBeginDelimiter(BEGIN), mEndDelimiter(END), mRefCount(0) {}

PlainPropertyBag::PlainPropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mBeginDelimiter(ipBegin), mEndDelimiter(ipEnd), mRefCount(0)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
}

PlainPropertyBag::~PlainPropertyBag() = default;

void PlainPropertyBag::Serialize(QSerialization::WriteDataStream& iStream) const
{
    const QBase::ReturnWString lText = GetString(true, nullptr, nullptr, true);
    iStream.WriteWString(mBeginDelimiter.c_str());
    iStream.WriteWString(mEndDelimiter.c_str());
    iStream.WriteWString(lText.c_str());
}

void PlainPropertyBag::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    mBeginDelimiter = iStream.ReadWString().c_str();
    mEndDelimiter = iStream.ReadWString().c_str();
    const std::wstring lText = iStream.ReadWString().c_str();
    AddString(lText.c_str());
}

void PlainPropertyBag::SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag)
{
    if (ipName == nullptr)
    {
        Throw<PropertyBagUserErrorException>(Messages::gNameNull);
    }
    if (Contains(ipName, mEndDelimiter.c_str()) || Contains(ipName, mBeginDelimiter.c_str()))
    {
        Throw<PropertyBagException>(Messages::gNameHasDelimiter);
    }
    if (ipValue == nullptr)
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueNull);
    }
    const std::wstring lName(ipName);
    std::wstring lValue(ipValue);
    if (!iIsPropertyBag)
    {
        if (hUsesDefaultDelimiters() && lValue.find_first_of(L"*+") != std::wstring::npos)
        {
            lValue = hConvertDelimiters(ipValue).c_str();
        }
        if (Contains(lValue.c_str(), mEndDelimiter.c_str()) || Contains(lValue.c_str(), mBeginDelimiter.c_str()))
        {
            Throw<PropertyBagException>((Messages::gValueHasDelimiter + lValue + Messages::gLabelBegin +
                                         mBeginDelimiter + Messages::gLabelEnd + mEndDelimiter)
                                            .c_str());
        }
    }
    RemoveProperty(lName.c_str());
    if (lValue.empty())
    {
        return;
    }
    if (!iIsPropertyBag)
    {
        mValueContent.emplace_back(lName, lValue);
        return;
    }
    QBase::SmartPtrI<PropertyBag> lBag(new PlainPropertyBag(mBeginDelimiter.c_str(), mEndDelimiter.c_str()));
    lBag->AddString(lValue.c_str());
    mEmbeddedContent.emplace_back(lName, lBag);
}

void PlainPropertyBag::EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag)
{
    const std::wstring lText =
        ipPropertyBag->GetString(false, mBeginDelimiter.c_str(), mEndDelimiter.c_str(), true).c_str();
    SetProperty(ipName, lText.c_str(), true);
}

void PlainPropertyBag::RemoveProperty(const wchar_t* ipName)
{
    if (ipName == nullptr)
    {
        return;
    }
    const std::wstring lName(ipName); // the name may be that of the entry that goes
    RemovePropertyInValueContent(lName.c_str());
    RemovePropertyInEmbeddedContent(lName.c_str());
}

QBase::ReturnWString PlainPropertyBag::GetProperty(const wchar_t* ipName) const
{
    const unsigned int lValuePosition = NamePositionInValueContent(ipName);
    if (lValuePosition != gNotFoundPosition)
    {
        const wchar_t* lValue = mValueContent[lValuePosition].second.c_str();
        // The trigger lacks the semicolon; the conversion itself replaces complete sequences only.
        if (hUsesDefaultDelimiters() && (Contains(lValue, L"&#42") || Contains(lValue, L"&#43")))
        {
            return hInverseConvertDelimiters(lValue);
        }
        return lValue;
    }
    const unsigned int lEmbeddedPosition = NamePositionInEmbeddedContent(ipName);
    if (lEmbeddedPosition != gNotFoundPosition)
    {
        return mEmbeddedContent[lEmbeddedPosition].second->GetString(true, nullptr, nullptr, true);
    }
    return L"";
}

bool PlainPropertyBag::IsPropertyEmbedded(const wchar_t* ipName) const
{
    return NamePositionInEmbeddedContent(ipName) != gNotFoundPosition;
}

QBase::SmartPtrI<PropertyBag> PlainPropertyBag::GetPropertyBag(const wchar_t* ipName) const
{
    const unsigned int lPosition = NamePositionInEmbeddedContent(ipName);
    if (lPosition == gNotFoundPosition)
    {
        const bool lIsPlain = NamePositionInValueContent(ipName) != gNotFoundPosition;
        Throw<PropertyBagUserErrorException>(lIsPlain ? Messages::gNameNotEmbedded : Messages::gNameUnknown);
    }
    return mEmbeddedContent[lPosition].second;
}

unsigned int PlainPropertyBag::GetCount() const
{
    return static_cast<unsigned int>(mValueContent.size() + mEmbeddedContent.size());
}

// The four positional operations let the position equal to the count pass their test; it designates no entry, and so
// does any position that an overridden GetCount lets through.

QBase::ReturnWString PlainPropertyBag::GetName(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mValueContent.size();
    if (iIndex > GetCount() || (iIndex >= mValueContent.size() && lEmbeddedIndex >= mEmbeddedContent.size()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gNameIndex);
    }
    if (iIndex < mValueContent.size())
    {
        return mValueContent[iIndex].first.c_str();
    }
    return mEmbeddedContent[lEmbeddedIndex].first.c_str();
}

QBase::ReturnWString PlainPropertyBag::GetValue(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mValueContent.size();
    if (iIndex > GetCount() || (iIndex >= mValueContent.size() && lEmbeddedIndex >= mEmbeddedContent.size()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    if (iIndex < mValueContent.size())
    {
        return mValueContent[iIndex].second.c_str();
    }
    return mEmbeddedContent[lEmbeddedIndex].second->GetString(true, nullptr, nullptr, true);
}

bool PlainPropertyBag::IsEmbedded(unsigned int iIndex) const
{
    if (iIndex > GetCount() || iIndex > mValueContent.size() + mEmbeddedContent.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    return iIndex >= mValueContent.size();
}

QBase::SmartPtrI<PropertyBag> PlainPropertyBag::GetValuePropertyBag(unsigned int iIndex) const
{
    if (iIndex > GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    if (iIndex < mValueContent.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gIndexNotEmbedded);
    }
    if (iIndex - mValueContent.size() >= mEmbeddedContent.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    return mEmbeddedContent[iIndex - mValueContent.size()].second;
}

void PlainPropertyBag::AddString(const wchar_t* ipString)
{
    const std::wstring lText(ipString);
    Delimiters lDelimiters{mBeginDelimiter, mEndDelimiter};
    std::size_t lPosition = ExtractDelimiters(lText, lDelimiters);
    // Before the text is cut: with an empty delimiter that would never end.
    CheckValidityOfDelimiters(lDelimiters.mBegin.c_str(), lDelimiters.mEnd.c_str());

    TokenList lTokens;
    std::size_t lRunStart = lPosition;
    while (lPosition < lText.size())
    {
        const bool lIsBegin = lText.compare(lPosition, lDelimiters.mBegin.size(), lDelimiters.mBegin) == 0;
        if (!lIsBegin && lText.compare(lPosition, lDelimiters.mEnd.size(), lDelimiters.mEnd) != 0)
        {
            ++lPosition;
            continue;
        }
        if (lRunStart < lPosition)
        {
            lTokens.push_back(Token{StringToken, lText.substr(lRunStart, lPosition - lRunStart)});
        }
        lTokens.push_back(Token{lIsBegin ? BeginToken : EndToken, std::wstring()});
        lPosition += lIsBegin ? lDelimiters.mBegin.size() : lDelimiters.mEnd.size();
        lRunStart = lPosition;
    }

    QBase::SmartPtrI<PropertyBag> lScratch(new PlainPropertyBag(lDelimiters.mBegin.c_str(), lDelimiters.mEnd.c_str()));
    while (!lTokens.empty())
    {
        ExtractData(lTokens, lScratch.get());
    }
    AddPropertyBag(lScratch.get());
}

void PlainPropertyBag::AddPropertyBag(const PropertyBag* ipPropertyBag)
{
    const bool lTakesFirstValue = ipPropertyBag == this && IsBroken("MergeIntoItself");
    for (unsigned int lIndex = 0; lIndex < ipPropertyBag->GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = ipPropertyBag->GetName(lIndex);
        const QBase::ReturnWString lValue = ipPropertyBag->GetValue(lTakesFirstValue ? 0 : lIndex);
        const bool lIsEmbedded = ipPropertyBag->IsEmbedded(lIndex);
        SetProperty(lName.c_str(), lValue.c_str(), lIsEmbedded);
    }
}

QBase::ReturnWString PlainPropertyBag::GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                                 bool iWithSensitiveInfo) const
{
    const BufferPtr lBuffer(CreateBufferedWString((mValueContent.size() + mEmbeddedContent.size()) * 100, 300));
    const wchar_t* lBegin = ipBegin != nullptr ? ipBegin : mBeginDelimiter.c_str();
    const wchar_t* lEnd = ipEnd != nullptr ? ipEnd : mEndDelimiter.c_str();
    CheckValidityOfDelimiters(lBegin, lEnd);
    if (iWithMetadata)
    {
        *lBuffer += gEndWord;
        *lBuffer += lEnd;
        *lBuffer += gBeginWord;
        *lBuffer += lBegin;
        *lBuffer += lEnd;
    }
    for (const auto& [lName, lValue] : mValueContent)
    {
        if (!iWithSensitiveInfo && IsSensitiveProperty(lName))
        {
            continue;
        }
        *lBuffer += lName;
        *lBuffer += lBegin;
        *lBuffer += lValue;
        *lBuffer += lEnd;
    }
    for (const auto& [lName, lBag] : mEmbeddedContent)
    {
        *lBuffer += lName;
        *lBuffer += lBegin;
        *lBuffer += lBag->GetString(false, ipBegin, ipEnd, true); // sensitive properties of nests are always written
        *lBuffer += lEnd;
    }
    return {lBuffer->c_str(), lBuffer->size()};
}

QBase::ReturnWString PlainPropertyBag::GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                                     const wchar_t* ipEnd) const
{
    return GetString(iWithMetadata, ipBegin, ipEnd, false);
}

bool PlainPropertyBag::operator==(const PropertyBag& iOther) const
{
    const unsigned int lCount = GetCount();
    if (lCount != iOther.GetCount())
    {
        return false;
    }
    unsigned int lEqual = 0;
    while (lEqual < lCount && IsEqualIn(iOther, *this, lEqual))
    {
        ++lEqual;
    }
    return lEqual == lCount;
}

bool PlainPropertyBag::IsSubset(const PropertyBag* ipSubset) const
{
    const unsigned int lCount = ipSubset->GetCount();
    if (GetCount() < lCount)
    {
        return false;
    }
    unsigned int lContained = 0;
    while (lContained < lCount && IsContainedIn(*this, *ipSubset, lContained))
    {
        ++lContained;
    }
    return lContained == lCount;
}

void PlainPropertyBag::ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
    std::wstring lBegin(ipBegin);
    std::wstring lEnd(ipEnd);
    mBeginDelimiter = lBegin;
    mEndDelimiter = lEnd;
    for (const auto& lEntry : mEmbeddedContent)
    {
        lEntry.second->ChangeDelimiters(lBegin.c_str(), lEnd.c_str());
    }
}

const wchar_t* PlainPropertyBag::GetBeginDelimiter() const
{
    return mBeginDelimiter.c_str();
}

const wchar_t* PlainPropertyBag::GetEndDelimiter() const
{
    return mEndDelimiter.c_str();
}

PropertyBag* PlainPropertyBag::Clone() const
{
    auto lClone = std::make_unique<PlainPropertyBag>(mBeginDelimiter.c_str(), mEndDelimiter.c_str());
    lClone->mValueContent = mValueContent;
    lClone->mEmbeddedContent = mEmbeddedContent;
    return lClone.release();
}

PropertyBag* PlainPropertyBag::FilteredClone(const QDataType::StringCollection* ipFilter) const
{
    UnownedBag lClone(new PlainPropertyBag(mBeginDelimiter.c_str(), mEndDelimiter.c_str()));
    for (unsigned long lIndex = 0; lIndex < ipFilter->GetCount(); ++lIndex)
    {
        const std::wstring lName = ipFilter->GetString(lIndex); // an overrider may change the filter
        if (IsPropertyEmbedded(lName.c_str()))
        {
            const QBase::SmartPtrI<PropertyBag> lBag = GetPropertyBag(lName.c_str());
            if (lBag)
            {
                lClone->EmbedProperty(lName.c_str(), lBag.get());
            }
            continue;
        }
        const QBase::ReturnWString lValue = GetProperty(lName.c_str());
        if (lValue.GetLength() != 0)
        {
            lClone->SetProperty(lName.c_str(), lValue.c_str(), false);
        }
    }
    return lClone.release();
}

void PlainPropertyBag::MoveProperty(const wchar_t* ipName, unsigned int iIndex)
{
    if (ipName == nullptr)
    {
        return;
    }
    const unsigned int lValuePosition = NamePositionInValueContent(ipName);
    if (lValuePosition != gNotFoundPosition)
    {
        if (lValuePosition != iIndex && iIndex < mValueContent.size())
        {
            std::swap(mValueContent[lValuePosition], mValueContent[iIndex]);
        }
        return;
    }
    const unsigned int lEmbeddedPosition = NamePositionInEmbeddedContent(ipName);
    // The bound really is the number of nested bags, though the position counts the plain properties too.
    if (lEmbeddedPosition == gNotFoundPosition || iIndex >= mEmbeddedContent.size() || iIndex < mValueContent.size() ||
        iIndex - mValueContent.size() == lEmbeddedPosition)
    {
        return;
    }
    std::swap(mEmbeddedContent[lEmbeddedPosition], mEmbeddedContent[iIndex - mValueContent.size()]);
}

void PlainPropertyBag::RemovePropertyInValueContent(const wchar_t* ipName) noexcept
{
    RemoveFirst(mValueContent, ipName);
}

void PlainPropertyBag::RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept
{
    RemoveFirst(mEmbeddedContent, ipName);
}

void PlainPropertyBag::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void PlainPropertyBag::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

unsigned int PlainPropertyBag::NamePositionInValueContent(const wchar_t* ipName) const
{
    return NamePosition(mValueContent, ipName);
}

unsigned int PlainPropertyBag::NamePositionInEmbeddedContent(const wchar_t* ipName) const
{
    return NamePosition(mEmbeddedContent, ipName);
}

void PlainPropertyBag::CheckValidityOfDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    if (*ipBegin == L'\0')
    {
        Throw<PropertyBagUserErrorException>(Messages::gBeginEmpty);
    }
    if (*ipEnd == L'\0')
    {
        Throw<PropertyBagUserErrorException>(Messages::gEndEmpty);
    }
    if (std::wcscmp(ipBegin, ipEnd) == 0)
    {
        Throw<PropertyBagException>(Messages::gBeginEqualsEnd);
    }
    if (Contains(ipBegin, ipEnd))
    {
        Throw<PropertyBagException>(Messages::gBeginContainsEnd);
    }
    if (Contains(ipEnd, ipBegin))
    {
        Throw<PropertyBagException>(Messages::gEndContainsBegin);
    }
}

unsigned int PlainPropertyBag::ExtractDelimiters(const std::wstring& iText, Delimiters& oDelimiters)
{
    if (iText.compare(0, gEndWordLength, gEndWord) != 0)
    {
        return 0;
    }
    const std::size_t lEndStop = iText.find_first_of(gBeginWord, gEndWordLength);
    if (lEndStop == std::wstring::npos)
    {
        Throw<PropertyBagException>(Messages::gMetadataNoBegin);
    }
    if (lEndStop == gEndWordLength)
    {
        Throw<PropertyBagException>(Messages::gMetadataEmptyEnd);
    }
    const std::wstring lEnd = iText.substr(gEndWordLength, lEndStop - gEndWordLength);
    const std::size_t lBeginStart = lEndStop + gBeginWordLength;
    const std::size_t lBeginStop = iText.find_first_of(lEnd, lEndStop);
    if (lBeginStop != std::wstring::npos &&
        (lBeginStop < lBeginStart || (lBeginStop == lBeginStart && !IsBroken("EmptyBeginDelimiter"))))
    {
        Throw<PropertyBagException>(Messages::gMetadataEmptyBegin);
    }
    const std::wstring lBegin = iText.substr(lBeginStart, lBeginStop - lBeginStart);
    oDelimiters = Delimiters{lBegin, lEnd};
    return static_cast<unsigned int>(lBeginStop) + static_cast<unsigned int>(lEnd.size());
}

PlainPropertyBag::Token PlainPropertyBag::PeekNextToken(const TokenList& iTokens)
{
    if (iTokens.empty())
    {
        Throw<PropertyBagException>(Messages::gTokenExpected);
    }
    return iTokens.front();
}

PlainPropertyBag::Token PlainPropertyBag::GetNextToken(TokenList& iTokens)
{
    Token lToken = PeekNextToken(iTokens);
    iTokens.pop_front();
    return lToken;
}

void PlainPropertyBag::ExtractData(TokenList& iTokens, PropertyBag* ipPropertyBag) const
{
    if (iTokens.empty())
    {
        return;
    }
    const Token lName = GetNextToken(iTokens);
    if (lName.mKind != StringToken)
    {
        Throw<PropertyBagException>(Messages::gStringTokenExpected);
    }
    if (GetNextToken(iTokens).mKind != BeginToken)
    {
        Throw<PropertyBagException>(Messages::gBeginTokenExpected);
    }
    const Token lThird = GetNextToken(iTokens);
    if (lThird.mKind == EndToken)
    {
        return; // an empty value sets nothing, and displaces nothing
    }
    if (lThird.mKind == BeginToken)
    {
        Throw<PropertyBagException>(Messages::gStringTokenExpected);
    }
    const Token lFourth = GetNextToken(iTokens);
    switch (lFourth.mKind)
    {
    case EndToken:
        ipPropertyBag->SetProperty(lName.mText.c_str(), lThird.mText.c_str(), false);
        return;
    case StringToken:
        Throw<PropertyBagException>(Messages::gStringOrBeginTokenExpected);
    case BeginToken:
        break;
    }
    iTokens.push_front(lFourth);
    iTokens.push_front(lThird);
    hExtractNestedBag(iTokens, lName.mText, ipPropertyBag);
}

// The nest is read into a bag of its own, whose text is then read again by the bag that SetProperty makes for it. That
// is how empty nests inside it get lost.
void PlainPropertyBag::hExtractNestedBag(TokenList& iTokens, const std::wstring& iName,
                                         PropertyBag* ipPropertyBag) const
{
    const QBase::SmartPtrI<PropertyBag> lBag(
        new PlainPropertyBag(ipPropertyBag->GetBeginDelimiter(), ipPropertyBag->GetEndDelimiter()));
    do
    {
        ExtractData(iTokens, lBag.get());
    } while (PeekNextToken(iTokens).mKind == StringToken);
    if (GetNextToken(iTokens).mKind != EndToken)
    {
        Throw<PropertyBagException>(Messages::gEndTokenExpected);
    }
    ipPropertyBag->SetProperty(iName.c_str(), lBag->GetString(true, nullptr, nullptr, true).c_str(), true);
}

QBase::ReturnWString PlainPropertyBag::hConvertDelimiters(const wchar_t* ipValue)
{
    if (ipValue == nullptr || *ipValue == L'\0')
    {
        return ipValue;
    }
    const std::wstring lValue(ipValue);
    const BufferPtr lBuffer(CreateBufferedWString(lValue.size() + 100, 100));
    std::size_t lRunStart = 0;
    for (std::size_t lIndex = 0; lIndex < lValue.size(); ++lIndex)
    {
        if (lValue[lIndex] == L'*' || lValue[lIndex] == L'+')
        {
            AppendRun(*lBuffer, lValue, lRunStart, lIndex);
            *lBuffer += lValue[lIndex] == L'*' ? gStarEscape : gPlusEscape;
            lRunStart = lIndex + 1;
        }
    }
    AppendRun(*lBuffer, lValue, lRunStart, lValue.size());
    return lBuffer->c_str();
}

QBase::ReturnWString PlainPropertyBag::hInverseConvertDelimiters(const wchar_t* ipValue)
{
    if (ipValue == nullptr || *ipValue == L'\0')
    {
        return ipValue;
    }
    const std::wstring lValue(ipValue);
    const BufferPtr lBuffer(CreateBufferedWString(lValue.size(), 100));
    std::size_t lStar = lValue.find(gStarEscape);
    std::size_t lPlus = lValue.find(gPlusEscape);
    std::size_t lRead = 0;
    while (lStar != std::wstring::npos || lPlus != std::wstring::npos)
    {
        const bool lIsStar = lStar < lPlus;
        std::size_t& lPosition = lIsStar ? lStar : lPlus;
        AppendRun(*lBuffer, lValue, lRead, lPosition);
        *lBuffer += lIsStar ? L"*" : L"+";
        lRead = lPosition + gEscapeLength;
        lPosition = lValue.find(lIsStar ? gStarEscape : gPlusEscape, lRead);
    }
    AppendRun(*lBuffer, lValue, lRead, lValue.size());
    return lBuffer->c_str();
}

bool PlainPropertyBag::IsSensitiveProperty(const std::wstring& iName)
{
    static const std::vector<std::wstring> lSensitivePropertyNameArray = {L"FTPServerPassword"};
    return std::find(lSensitivePropertyNameArray.begin(), lSensitivePropertyNameArray.end(), iName) !=
           lSensitivePropertyNameArray.end();
}

bool PlainPropertyBag::hUsesDefaultDelimiters() const
{
    return mBeginDelimiter == BEGIN && mEndDelimiter == END;
}

PropertyBag* CreatePlainPropertyBag()
{
    return new PlainPropertyBag();
}

PropertyBag* CreatePlainPropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return new PlainPropertyBag(ipBegin, ipEnd);
}

PropertyBag* CreatePlainPropertyBag(const wchar_t* ipString)
{
    const std::wstring lText(ipString);
    PlainPropertyBag::Delimiters lDelimiters{L"++++", L"***"};
    if (lText.empty())
    {
        UnownedBag lBag(new PlainPropertyBag(lDelimiters.mBegin.c_str(), lDelimiters.mEnd.c_str()));
        lBag->AddString(L"EndDelimiter***BeginDelimiter++++***");
        return lBag.release();
    }
    lDelimiters = PlainPropertyBag::Delimiters();
    if (PlainPropertyBag::ExtractDelimiters(lText, lDelimiters) == 0)
    {
        Throw<PropertyBagException>((Messages::gStringMalformed + lText).c_str());
    }
    UnownedBag lBag(new PlainPropertyBag(lDelimiters.mBegin.c_str(), lDelimiters.mEnd.c_str()));
    lBag->AddString(lText.c_str());
    return lBag.release();
}

} // namespace Plain
