#include "Text/SensitiveNames.h"

#include "Text/Utf8Locale.h"

#include "QBase/Convert.h"
#include "TalBase/SensitiveNames.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cwctype>
#include <wctype.h>

namespace TalBaseTool
{

namespace
{

// What has no shape of its own, and is neither a blank, a control nor a mark to the C library.
bool IsInvisible(unsigned long iCode)
{
    return iCode == 0xA0 || iCode == 0xAD || iCode == 0x61C || iCode == 0x115F || iCode == 0x1160 ||
           (iCode >= 0x180B && iCode <= 0x180F) || (iCode >= 0x2000 && iCode <= 0x200F) ||
           (iCode >= 0x2028 && iCode <= 0x202F) || (iCode >= 0x205F && iCode <= 0x206F) || iCode == 0x2800 ||
           iCode == 0x3164 || (iCode >= 0xFE00 && iCode <= 0xFE0F) || iCode == 0xFEFF || iCode == 0xFFA0 ||
           (iCode >= 0xFFF9 && iCode <= 0xFFFB) || (iCode >= 0xE0000 && iCode <= 0xE0FFF);
}

// Blanks, line ends, controls, marks, and what is invisible.
bool IsPassedOver(wchar_t iCharacter)
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    if (lCode < 0x80)
    {
        return lCode <= 0x20 || lCode == 0x7F;
    }
    static const wctype_t lMark = ::wctype_l("combining", GetUtf8Locale());
    const wint_t lCharacter = static_cast<wint_t>(iCharacter);
    return IsInvisible(lCode) || ::iswspace_l(lCharacter, GetUtf8Locale()) != 0 ||
           ::iswcntrl_l(lCharacter, GetUtf8Locale()) != 0 || ::iswctype_l(lCharacter, lMark, GetUtf8Locale()) != 0;
}

bool IsLetter(wchar_t iCharacter)
{
    return iCharacter == L'_' ||
           (::iswalnum_l(static_cast<wint_t>(iCharacter), GetUtf8Locale()) != 0 && !IsPassedOver(iCharacter));
}

// Upper case first: there are small letters, such as the long s, that only that makes equal to others.
wchar_t WithoutCase(wchar_t iCharacter)
{
    if (static_cast<unsigned int>(iCharacter) < 0x80)
    {
        return iCharacter >= L'A' && iCharacter <= L'Z' ? static_cast<wchar_t>(iCharacter - L'A' + L'a') : iCharacter;
    }
    const wint_t lUpper = ::towupper_l(static_cast<wint_t>(iCharacter), GetUtf8Locale());
    return static_cast<wchar_t>(::towlower_l(lUpper, GetUtf8Locale()));
}

int DigitOf(wchar_t iCharacter)
{
    return iCharacter >= L'0' && iCharacter <= L'9'   ? static_cast<int>(iCharacter - L'0')
           : iCharacter >= L'a' && iCharacter <= L'f' ? static_cast<int>(iCharacter - L'a') + 10
           : iCharacter >= L'A' && iCharacter <= L'F' ? static_cast<int>(iCharacter - L'A') + 10
                                                      : -1;
}

// What an escape of JSON stands for, in a text; nothing where there is none. Several backslashes come from JSON within
// JSON.
struct Escape
{
    wchar_t mCharacter = 0;
    std::size_t mStop = 0; // 0 where there is none
};

std::optional<unsigned int> ReadCode(std::wstring_view iText, std::size_t iPlace)
{
    if (iPlace + 4 > iText.size())
    {
        return {};
    }
    unsigned int lCode = 0;
    for (const wchar_t lCharacter : iText.substr(iPlace, 4))
    {
        const int lDigit = DigitOf(lCharacter);
        if (lDigit < 0)
        {
            return {};
        }
        lCode = lCode * 16 + static_cast<unsigned int>(lDigit);
    }
    return lCode;
}

std::size_t PassBackslashes(std::wstring_view iText, std::size_t iPlace)
{
    return std::min(iText.find_first_not_of(L'\\', iPlace), iText.size());
}

// Two codes in a row may be the halves of one character.
Escape ReadCodes(std::wstring_view iText, std::size_t iPlace)
{
    const std::optional<unsigned int> lCode = ReadCode(iText, iPlace);
    if (!lCode)
    {
        return {};
    }
    const std::size_t lSecond = PassBackslashes(iText, iPlace + 4);
    const bool lMayBePair = *lCode >= 0xD800 && *lCode < 0xDC00 && lSecond > iPlace + 4 && lSecond < iText.size();
    const std::optional<unsigned int> lLow =
        lMayBePair && iText[lSecond] == L'u' ? ReadCode(iText, lSecond + 1) : std::nullopt;
    if (lLow && *lLow >= 0xDC00 && *lLow < 0xE000)
    {
        return {static_cast<wchar_t>(0x10000 + ((*lCode - 0xD800) << 10) + (*lLow - 0xDC00)), lSecond + 5};
    }
    return {static_cast<wchar_t>(*lCode), iPlace + 4};
}

// iPlace: of the first backslash.
Escape ReadEscape(std::wstring_view iText, std::size_t iPlace)
{
    const std::size_t lLetter = PassBackslashes(iText, iPlace);
    if (lLetter == iText.size())
    {
        return {};
    }
    if (iText[lLetter] == L'u')
    {
        return ReadCodes(iText, lLetter + 1);
    }
    if (iText[lLetter] == L'/' || iText[lLetter] == L'"')
    {
        return {iText[lLetter], lLetter + 1};
    }
    const bool lIsBlank = std::wstring_view(L"nrtbf").find(iText[lLetter]) != std::wstring_view::npos;
    return lIsBlank ? Escape{L' ', lLetter + 1} : Escape{};
}

// Reads a text character by character as names are compared.
class NameReader
{
public:
    NameReader(std::wstring_view iText, std::size_t iPlace) : mText(iText), mPlace(iPlace) {}

    // Goes to the next character that counts; returns false where there is none.
    bool Next()
    {
        while (mPlace < mText.size())
        {
            const wchar_t lCharacter = Take();
            if (!IsPassedOver(lCharacter))
            {
                mCharacter = WithoutCase(lCharacter);
                return true;
            }
        }
        return false;
    }

    // The next character, whatever it is.
    wchar_t Take()
    {
        const Escape lEscape = mText[mPlace] == L'\\' ? ReadEscape(mText, mPlace) : Escape{};
        if (lEscape.mStop != 0)
        {
            mPlace = lEscape.mStop;
            return lEscape.mCharacter;
        }
        const wchar_t lCharacter = mText[mPlace];
        mPlace = lCharacter == L'\\' ? PassBackslashes(mText, mPlace) : mPlace + 1;
        return lCharacter;
    }

    // As it is compared.
    wchar_t GetCharacter() const
    {
        return mCharacter;
    }

    // The place behind it.
    std::size_t GetStop() const
    {
        return mPlace;
    }

private:
    std::wstring_view mText;
    std::size_t mPlace;
    wchar_t mCharacter = 0;
};

// Where one of a few characters stands next. In all but short texts they are looked for one by one, since that is what
// the C library does fastest, and block by block, so that one that is not there is not looked for again and again.
class Beginnings
{
public:
    static constexpr std::size_t gBlock = 256;
    static constexpr std::size_t gShort = 64;

    Beginnings(std::wstring_view iText, const std::wstring& iCharacters)
        : mText(iText),
          mCharacters(iCharacters),
          mIsWorth(iText.size() > gShort && iCharacters.size() <= mPlaces.size())
    {
    }

    // The first place from one on, which is never before that of the last call. Where it is not worth it, that one.
    std::size_t Find(std::size_t iFrom)
    {
        while (mIsWorth && iFrom < mText.size())
        {
            const bool lIsNew = iFrom >= mStop;
            mStop = lIsNew ? std::min(iFrom + gBlock, mText.size()) : mStop;
            std::size_t lFirst = std::wstring_view::npos;
            for (std::size_t lIndex = 0; lIndex < mCharacters.size(); ++lIndex)
            {
                if (lIsNew || mPlaces[lIndex] < iFrom)
                {
                    mPlaces[lIndex] = mText.substr(0, mStop).find(mCharacters[lIndex], iFrom);
                }
                lFirst = std::min(lFirst, mPlaces[lIndex]);
            }
            if (lFirst != std::wstring_view::npos)
            {
                return lFirst;
            }
            iFrom = mStop;
        }
        return iFrom;
    }

private:
    std::wstring_view mText;
    const std::wstring& mCharacters;
    std::size_t mStop = 0;              // of the block
    std::array<std::size_t, 8> mPlaces; // of each character from the last call on, in the block
    bool mIsWorth;
};

std::wstring AsCompared(std::wstring_view iName)
{
    std::wstring lName;
    for (NameReader lReader(iName, 0); lReader.Next();)
    {
        lName += lReader.GetCharacter();
    }
    return lName;
}

// Whether a letter, a digit or an underscore stands right before a place. The last character of an escape is none.
bool IsTouchedBefore(std::wstring_view iText, std::size_t iPlace)
{
    constexpr std::size_t lLongest = 12; // "\uXXXX" twice
    if (iPlace == 0 || !IsLetter(iText[iPlace - 1]))
    {
        return false;
    }
    for (std::size_t lStart = iPlace - 1; lStart > 0 && iPlace - lStart < lLongest; --lStart)
    {
        if (iText[lStart - 1] == L'\\')
        {
            const Escape lEscape = ReadEscape(iText.substr(0, iPlace), lStart - 1);
            if (lEscape.mStop == iPlace)
            {
                return IsLetter(lEscape.mCharacter);
            }
        }
    }
    return true;
}

bool IsTouchedBehind(std::wstring_view iText, std::size_t iPlace)
{
    return iPlace < iText.size() && IsLetter(NameReader(iText, iPlace).Take());
}

} // namespace

bool IsWordCharacter(wchar_t iCharacter)
{
    return IsLetter(iCharacter);
}

SensitiveNames::SensitiveNames(const std::vector<std::wstring>& iOthers)
{
    std::vector<std::wstring> lNames = iOthers;
    for (const wchar_t* const* lName = QTalBase::GetSensitiveNames(); *lName != nullptr; ++lName)
    {
        lNames.emplace_back(*lName);
    }
    const char* const lVariable = std::getenv("TALBASE_SENSITIVE_NAMES");
    const std::wstring lLines = QBase::UTF8ToWideChar(lVariable != nullptr ? lVariable : "", false);
    for (std::size_t lStart = 0; lStart < lLines.size();)
    {
        const std::size_t lStop = std::min(lLines.find(L'\n', lStart), lLines.size());
        lNames.push_back(lLines.substr(lStart, lStop - lStart));
        lStart = lStop + 1;
    }
    for (const std::wstring& lName : lNames)
    {
        hAdd(AsCompared(lName));
    }
    for (std::size_t lCode = 0; lCode < mMayBegin.size(); ++lCode)
    {
        mBegins.append(mMayBegin[lCode] ? 1 : 0, static_cast<wchar_t>(lCode));
    }
    mBegins += mOthers;
}

bool SensitiveNames::Is(std::wstring_view iText) const
{
    return std::find(mNames.begin(), mNames.end(), AsCompared(iText)) != mNames.end();
}

std::optional<NamePlace> SensitiveNames::FindWord(std::wstring_view iText) const
{
    return hFind(iText, 0, true);
}

std::optional<NamePlace> SensitiveNames::Find(std::wstring_view iText, std::size_t iFrom) const
{
    return hFind(iText, iFrom, false);
}

void SensitiveNames::hAdd(const std::wstring& iName)
{
    if (iName.empty())
    {
        return;
    }
    mNames.push_back(iName);
    for (std::size_t lCode = 0; lCode < mMayBegin.size(); ++lCode)
    {
        const wchar_t lCharacter = static_cast<wchar_t>(lCode);
        const bool lIsEscape = lCharacter == L'\\';
        mMayBegin[lCode] = mMayBegin[lCode] || lIsEscape || WithoutCase(lCharacter) == iName[0];
        mMayFollow[lCode] = mMayFollow[lCode] || lIsEscape || IsPassedOver(lCharacter) || iName.size() == 1 ||
                            WithoutCase(lCharacter) == iName[1];
    }
    // Beyond ASCII, the letter itself, its large one, and those that are a case of none but themselves: the dotted and
    // the dotless i, the long s, the large sharp s, and the signs of ohm, kelvin and angstrom.
    const wchar_t lUpper = static_cast<wchar_t>(::towupper_l(static_cast<wint_t>(iName[0]), GetUtf8Locale()));
    for (const wchar_t lLetter :
         {iName[0], lUpper, L'\u0130', L'\u0131', L'\u017F', L'\u1E9E', L'\u2126', L'\u212A', L'\u212B'})
    {
        if (WithoutCase(lLetter) == iName[0] && lLetter >= static_cast<wchar_t>(mMayBegin.size()))
        {
            mOthers += lLetter;
        }
    }
}

// Most texts hold no name, so this comes down to a look at each character.
bool SensitiveNames::hMayBegin(wchar_t iCharacter) const
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    return lCode < mMayBegin.size() ? mMayBegin[lCode] : mOthers.find(iCharacter) != std::wstring::npos;
}

bool SensitiveNames::hMayFollow(wchar_t iCharacter) const
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    return lCode >= mMayFollow.size() || mMayFollow[lCode];
}

// A character behind a backslash may be a part of an escape or itself, so a name may begin there in two ways.
std::optional<NamePlace> SensitiveNames::hFind(std::wstring_view iText, std::size_t iFrom, bool iAsWord) const
{
    Beginnings lNext(iText, mBegins);
    for (std::size_t lStart = iFrom; (lStart = lNext.Find(lStart)) < iText.size(); ++lStart)
    {
        if (!hMayBegin(iText[lStart]) ||
            (iText[lStart] != L'\\' && lStart + 1 < iText.size() && !hMayFollow(iText[lStart + 1])))
        {
            continue;
        }
        const std::size_t lStop = hMatch(iText, lStart, iAsWord);
        if (lStop != 0)
        {
            return NamePlace{lStart, lStop};
        }
        if (iText[lStart] == L'\\')
        {
            // The last of several may begin the escape, too, and the others may be anybody's.
            const std::size_t lLast = PassBackslashes(iText, lStart) - 1;
            lStart = lStart < lLast ? lLast - 1 : lLast;
        }
    }
    return {};
}

// The place behind the longest name that begins at a place; 0 where there is none.
std::size_t SensitiveNames::hMatch(std::wstring_view iText, std::size_t iStart, bool iAsWord) const
{
    if (iText[iStart] == L'\\' && IsPassedOver(NameReader(iText, iStart).Take()))
    {
        return 0; // what comes behind the escape begins there
    }
    std::size_t lLongest = 0;
    for (const std::wstring& lName : mNames)
    {
        NameReader lReader(iText, iStart);
        std::size_t lCount = 0;
        while (lCount < lName.size() && lReader.Next() && lReader.GetCharacter() == lName[lCount])
        {
            ++lCount;
        }
        const std::size_t lStop = lReader.GetStop();
        if (lCount == lName.size() && (!iAsWord || (!IsTouchedBefore(iText, iStart) && !IsTouchedBehind(iText, lStop))))
        {
            lLongest = std::max(lLongest, lStop);
        }
    }
    return lLongest;
}

} // namespace TalBaseTool
