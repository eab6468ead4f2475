#include "TalBase/PrivateSource/Delimiters.h"

#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/TextPrimitives.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PropertyBag.h"

#include <algorithm>
#include <stdexcept>

namespace QTalBase
{

namespace
{

using Messages::Throw;

constexpr std::wstring_view gStarEscape = L"&#42;";
constexpr std::wstring_view gPlusEscape = L"&#43;";

// A set of characters, for a search that must stay linear when the set is as long as the text.
class CharacterSet
{
public:
    explicit CharacterSet(std::wstring_view iCharacters) : mCharacters(iCharacters)
    {
        if (mCharacters.size() > gSmall)
        {
            mSorted = mCharacters;
            std::sort(mSorted.begin(), mSorted.end());
            mSorted.erase(std::unique(mSorted.begin(), mSorted.end()), mSorted.end());
        }
    }

    bool Contains(wchar_t iCharacter) const
    {
        return mSorted.empty() ? mCharacters.find(iCharacter) != std::wstring_view::npos
                               : std::binary_search(mSorted.begin(), mSorted.end(), iCharacter);
    }

    std::size_t FindFirstIn(std::wstring_view iText, std::size_t iFrom) const
    {
        for (std::size_t lIndex = iFrom; lIndex < iText.size(); ++lIndex)
        {
            if (Contains(iText[lIndex]))
            {
                return lIndex;
            }
        }
        return std::wstring_view::npos;
    }

private:
    static constexpr std::size_t gSmall = 16;

    std::wstring_view mCharacters;
    std::wstring mSorted;
};

void PointAt(std::size_t iPosition, std::size_t* opPosition) noexcept
{
    if (opPosition != nullptr)
    {
        *opPosition = iPosition;
    }
}

[[noreturn]] void RefuseHeader(const wchar_t* ipText, std::size_t iPosition, std::size_t* opPosition)
{
    PointAt(iPosition, opPosition);
    Throw<PropertyBagException>(ipText);
}

bool IsEscapable(wchar_t iCharacter) noexcept
{
    return iCharacter == L'*' || iCharacter == L'+';
}

} // namespace

void CheckValidityOfDelimiters(const DelimiterPair& iPair)
{
    if (iPair.mBegin.empty())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBeginEmpty);
    }
    if (iPair.mEnd.empty())
    {
        Throw<PropertyBagUserErrorException>(Messages::gEndEmpty);
    }
    if (iPair.mBegin == iPair.mEnd)
    {
        Throw<PropertyBagException>(Messages::gBeginEqualsEnd);
    }
    if (Contains(iPair.mBegin, iPair.mEnd))
    {
        Throw<PropertyBagException>(Messages::gBeginContainsEnd);
    }
    if (Contains(iPair.mEnd, iPair.mBegin))
    {
        Throw<PropertyBagException>(Messages::gEndContainsBegin);
    }
}

bool AreDefaultDelimiters(const DelimiterPair& iPair) noexcept
{
    // The texts of a bag are terminated, so one that lies where the default lies is equal to it. Mostly both do.
    return (iPair.mBegin.data() == BEGIN || AreEqualTexts(iPair.mBegin, BEGIN)) &&
           (iPair.mEnd.data() == END || AreEqualTexts(iPair.mEnd, END));
}

std::size_t CountEscapable(std::wstring_view iValue) noexcept
{
    return static_cast<std::size_t>(std::count_if(iValue.begin(), iValue.end(), IsEscapable));
}

void WriteEscaped(std::wstring_view iValue, wchar_t* opTarget) noexcept
{
    for (const wchar_t lCharacter : iValue)
    {
        if (IsEscapable(lCharacter))
        {
            const std::wstring_view lEscape = lCharacter == L'*' ? gStarEscape : gPlusEscape;
            opTarget = std::copy(lEscape.begin(), lEscape.end(), opTarget);
        }
        else
        {
            *opTarget++ = lCharacter;
        }
    }
}

std::wstring Escaped(std::wstring_view iValue)
{
    std::wstring lEscaped(iValue.size() + (gStarEscape.size() - 1) * CountEscapable(iValue), L'\0');
    WriteEscaped(iValue, lEscaped.data());
    return lEscaped;
}

// The semicolon is not asked for: without one, unescaping finds nothing to replace.
bool ContainsEscapeStart(std::wstring_view iValue) noexcept
{
    for (std::size_t lPosition = FindCharacter(iValue, L'&'); lPosition < iValue.size();
         lPosition += 1 + FindCharacter(iValue.substr(lPosition + 1), L'&'))
    {
        const std::wstring_view lFour = iValue.substr(lPosition, 4);
        if (lFour == gStarEscape.substr(0, 4) || lFour == gPlusEscape.substr(0, 4))
        {
            return true;
        }
    }
    return false;
}

// One pass from left to right: what was replaced is not looked at again.
std::wstring Unescaped(std::wstring_view iValue)
{
    std::wstring lUnescaped;
    lUnescaped.reserve(iValue.size());
    while (!iValue.empty())
    {
        const std::size_t lPosition = std::min(iValue.find(L'&'), iValue.size());
        lUnescaped.append(iValue.substr(0, lPosition));
        iValue.remove_prefix(lPosition);
        const std::wstring_view lFive = iValue.substr(0, gStarEscape.size());
        const bool lIsEscape = lFive == gStarEscape || lFive == gPlusEscape;
        if (lIsEscape)
        {
            lUnescaped.push_back(lFive == gStarEscape ? L'*' : L'+');
        }
        else
        {
            lUnescaped.append(iValue.substr(0, 1));
        }
        iValue.remove_prefix(lIsEscape ? gStarEscape.size() : std::min<std::size_t>(1, iValue.size()));
    }
    return lUnescaped;
}

// The end delimiter is read up to any character of the word behind it, the begin delimiter up to any character of the
// end delimiter.
bool CanHeaderCarry(const DelimiterPair& iPair)
{
    return CharacterSet(gHeaderBeginWord).FindFirstIn(iPair.mEnd, 0) == std::wstring_view::npos &&
           CharacterSet(iPair.mEnd).FindFirstIn(iPair.mBegin, 0) == std::wstring_view::npos;
}

bool IsNeutralToEscapes(const DelimiterPair& iPair) noexcept
{
    const std::wstring_view lCharacters = L"&#423;";
    return iPair.mBegin.find_first_of(lCharacters) == std::wstring_view::npos &&
           iPair.mEnd.find_first_of(lCharacters) == std::wstring_view::npos;
}

bool IsEveryNestFinal(const DelimiterPair& iPair)
{
    return CanHeaderCarry(iPair) && (!AreDefaultDelimiters(iPair) || IsNeutralToEscapes(iPair));
}

// Loose on purpose: both searches are for any character of a set, the 14 characters where "BeginDelimiter" should stand
// are skipped unseen, and a header that ends too early makes the copy of the begin delimiter fail as a string's does.
unsigned int ReadHeader(std::wstring_view iText, DelimiterPair& oPair, std::size_t* opPosition)
{
    if (!AreEqualTexts(iText.substr(0, gHeaderEndWord.size()), gHeaderEndWord))
    {
        return 0;
    }
    // Most headers are this one, and are compared in one piece.
    constexpr std::wstring_view lUsual = L"EndDelimiter***BeginDelimiter++++***";
    if (iText.size() >= lUsual.size() && AreEqualTexts(iText.substr(0, lUsual.size()), lUsual))
    {
        oPair = DelimiterPair{lUsual.substr(29, 4), lUsual.substr(12, 3)};
        return static_cast<unsigned int>(lUsual.size());
    }
    const std::size_t lEndStart = gHeaderEndWord.size();
    const std::size_t lEndStop = iText.find_first_of(gHeaderBeginWord, lEndStart);
    if (lEndStop == std::wstring_view::npos)
    {
        RefuseHeader(Messages::gMetadataNoBegin, iText.size(), opPosition);
    }
    if (lEndStop == lEndStart)
    {
        RefuseHeader(Messages::gMetadataEmptyEnd, lEndStart, opPosition);
    }
    const std::wstring_view lEnd = iText.substr(lEndStart, lEndStop - lEndStart);
    const std::size_t lBeginStart = lEndStop + gHeaderBeginWord.size();
    const std::size_t lBeginStop = CharacterSet(lEnd).FindFirstIn(iText, lEndStop);
    if (lBeginStop != std::wstring_view::npos && lBeginStop <= lBeginStart)
    {
        RefuseHeader(Messages::gMetadataEmptyBegin, lBeginStop, opPosition);
    }
    if (lBeginStart > iText.size())
    {
        PointAt(iText.size(), opPosition);
        throw std::out_of_range("QTalBase::PropertyBag: the header ends too early");
    }
    oPair = DelimiterPair{iText.substr(lBeginStart, lBeginStop - lBeginStart), lEnd};
    return static_cast<unsigned int>(lBeginStop) + static_cast<unsigned int>(lEnd.size());
}

} // namespace QTalBase
