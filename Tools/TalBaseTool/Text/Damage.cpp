#include "Text/Damage.h"

#include "Text/Escaping.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gBlanks = L" \t\r\n";
constexpr const wchar_t* gHeaderStart = L"EndDelimiter";
constexpr const wchar_t* gHeaderMiddle = L"BeginDelimiter";

// Whether a text has at least one property with these delimiters, and nothing but properties.
bool IsContent(const std::wstring& iText, const DelimiterTexts& iPair)
{
    if (iText.find(iPair.mBegin) == std::wstring::npos || iText.find(iPair.mEnd) == std::wstring::npos)
    {
        return false;
    }
    const QTalBase::TextCheckResult lResult = CheckText(iText, iPair);
    return lResult.mIsValid && std::none_of(lResult.mRemarks.begin(), lResult.mRemarks.end(), [](const auto& iRemark) {
               return iRemark.mKind == QTalBase::TextRemarkKind::IgnoredTail;
           });
}

class DamageSearch
{
public:
    DamageSearch(const std::wstring& iText, const DelimiterTexts& iPair)
        : mText(iText), mPair(iPair), mHeader(WriteHeader(iPair)), mEscaping(iPair.mBegin.c_str(), iPair.mEnd.c_str())
    {
    }

    // The runs between delimiters: one before a begin delimiter is a name, one between that and an end delimiter its
    // value.
    std::vector<Damage> Run(std::size_t iContent)
    {
        std::size_t lNext[2] = {0, 0}; // the begin and the end delimiter that come next
        Part lName{iContent, 0};
        bool lHasName = false;
        for (std::size_t lPlace = iContent;;)
        {
            const std::size_t lBegin = hFind(mPair.mBegin, lPlace, lNext[0]);
            const std::size_t lEnd = hFind(mPair.mEnd, lPlace, lNext[1]);
            if (std::min(lBegin, lEnd) == std::wstring::npos)
            {
                return std::move(mFound);
            }
            const Part lPart{lPlace, std::min(lBegin, lEnd) - lPlace};
            if (lHasName && (lBegin < lEnd || lPart.mLength > 0)) // a value that is empty is told elsewhere
            {
                hLookAtName(lName);
            }
            if (lHasName && lEnd < lBegin)
            {
                hLookAtValue(lPart);
            }
            lHasName = lBegin < lEnd;
            lName = lPart;
            lPlace = lHasName ? lBegin + mPair.mBegin.size() : lEnd + mPair.mEnd.size();
        }
    }

private:
    struct Part
    {
        std::size_t mStart;
        std::size_t mLength;
    };

    // oNext: what the last search found, which is still right where it stands behind the place.
    std::size_t hFind(const std::wstring& iDelimiter, std::size_t iPlace, std::size_t& oNext) const
    {
        if (oNext < iPlace || oNext == 0)
        {
            oNext = mText.find(iDelimiter, iPlace);
        }
        return oNext;
    }

    void hLookAtName(const Part& iName)
    {
        if (mText[iName.mStart] == L'\n' || mText[iName.mStart] == L'\r')
        {
            mFound.push_back({DamageKind::LineEndInName, iName.mStart, iName.mLength});
        }
    }

    void hLookAtValue(const Part& iValue)
    {
        const std::wstring_view lStored = std::wstring_view(mText).substr(iValue.mStart, iValue.mLength);
        const bool lMayBeContent = lStored.find(L"&#4") != lStored.npos || lStored.find(BEGIN) != lStored.npos;
        const bool lMayHaveHeader = lStored.find(gHeaderStart) != lStored.npos;
        if ((lMayBeContent || lMayHaveHeader) && hIsBag(mEscaping.Unescape(lStored)))
        {
            mFound.push_back({DamageKind::NestAsText, iValue.mStart, iValue.mLength});
        }
    }

    // Whether a value reads as a bag's text: with a header, or without one and with this bag's delimiters or the usual.
    bool hIsBag(const std::wstring& iValue) const
    {
        const std::size_t lStart = std::min(iValue.find_first_not_of(gBlanks), iValue.size());
        const bool lHasHeader = iValue.compare(lStart, std::wstring_view(gHeaderStart).size(), gHeaderStart) == 0 &&
                                iValue.find(gHeaderMiddle, lStart) != std::wstring::npos;
        return lHasHeader || iValue.find(mHeader) != std::wstring::npos || IsContent(iValue, mPair) ||
               IsContent(iValue, {BEGIN, END});
    }

    const std::wstring& mText;
    const DelimiterTexts& mPair;
    std::wstring mHeader;
    Escaping mEscaping;
    std::vector<Damage> mFound;
};

} // namespace

std::vector<Damage> FindDamage(const std::wstring& iText, std::size_t iContent, const DelimiterTexts& iPair)
{
    if (iText.find_first_not_of(gBlanks) == std::wstring::npos)
    {
        return {{DamageKind::EmptyText, 0, std::min<std::size_t>(iText.size(), 1)}};
    }
    return DamageSearch(iText, iPair).Run(iContent);
}

std::optional<HeaderDamage> FindHeaderDamage(const std::wstring& iText, const QTalBase::TextCheckResult& iResult,
                                             const DelimiterTexts& iPair)
{
    const HeaderKind lKind = FindHeaderKind(iText, iResult, iPair);
    const std::wstring lWritten = WriteHeader(iPair);
    if (lKind == HeaderKind::NotAsWritten)
    {
        const auto lDifferent = std::mismatch(iText.begin(), iText.end(), lWritten.begin(), lWritten.end()).first;
        return HeaderDamage{static_cast<std::size_t>(lDifferent - iText.begin()), 1,
                            "the header is not as it would be written"};
    }
    const bool lIsAll = iText.find_first_not_of(L"\r\n", iResult.mContentPosition) == std::wstring::npos;
    if (lKind == HeaderKind::Swallowing && lIsAll)
    {
        return HeaderDamage{lWritten.size() - iPair.mEnd.size() - iPair.mBegin.size(), iPair.mBegin.size(),
                            "the header's begin delimiter takes what may have been properties"};
    }
    return {};
}

const char* Describe(DamageKind iKind)
{
    switch (iKind)
    {
    case DamageKind::EmptyText:
        return "the text is empty: it has neither a header nor a property";
    case DamageKind::LineEndInName:
        return "the name begins with a line end, as if one had been put between two properties";
    case DamageKind::NestAsText:
        return "the value reads as the text of a bag, as if a nested one had become plain text";
    }
    return "";
}

} // namespace TalBaseTool
