#include "Text/SensitiveNames.h"

#include "QBase/Convert.h"
#include "TalBase/SensitiveNames.h"

#include <algorithm>
#include <cstdlib>
#include <cwctype>
#include <locale.h>
#include <wctype.h>

namespace TalBaseTool
{

namespace
{

// Letters are known to the C library only in a locale that has them; this one is always there.
locale_t LetterLocale()
{
    static const locale_t lLocale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return lLocale;
}

bool IsWordCharacter(wchar_t iCharacter)
{
    return iCharacter == L'_' || ::iswalnum_l(static_cast<wint_t>(iCharacter), LetterLocale()) != 0;
}

// Blanks, line ends, controls, marks, and what has no shape of its own.
bool IsPassedOver(wchar_t iCharacter)
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    if (lCode < 0x80)
    {
        return lCode <= 0x20 || lCode == 0x7F;
    }
    return lCode == 0xA0 || lCode == 0xAD || (lCode >= 0x80 && lCode <= 0x9F) || (lCode >= 0x300 && lCode <= 0x36F) ||
           lCode == 0x61C || lCode == 0x1680 || (lCode >= 0x180B && lCode <= 0x180F) ||
           (lCode >= 0x2000 && lCode <= 0x200F) || (lCode >= 0x2028 && lCode <= 0x202F) ||
           (lCode >= 0x205F && lCode <= 0x206F) || (lCode >= 0x20D0 && lCode <= 0x20FF) || lCode == 0x3000 ||
           (lCode >= 0xFE00 && lCode <= 0xFE0F) || (lCode >= 0xFE20 && lCode <= 0xFE2F) || lCode == 0xFEFF ||
           (lCode >= 0xFFF9 && lCode <= 0xFFFB) || (lCode >= 0xE0000 && lCode <= 0xE0FFF);
}

int DigitOf(wchar_t iCharacter)
{
    return iCharacter >= L'0' && iCharacter <= L'9'   ? static_cast<int>(iCharacter - L'0')
           : iCharacter >= L'a' && iCharacter <= L'f' ? static_cast<int>(iCharacter - L'a') + 10
           : iCharacter >= L'A' && iCharacter <= L'F' ? static_cast<int>(iCharacter - L'A') + 10
                                                      : -1;
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
            mStart = mPlace;
            const wchar_t lCharacter = hTake();
            if (lCharacter != 0 && !IsPassedOver(lCharacter))
            {
                mCharacter = static_cast<wchar_t>(::towlower_l(static_cast<wint_t>(lCharacter), LetterLocale()));
                return true;
            }
        }
        return false;
    }

    wchar_t GetCharacter() const
    {
        return mCharacter;
    }

    // Where the character begins, and the place behind it.
    std::size_t GetStart() const
    {
        return mStart;
    }

    std::size_t GetStop() const
    {
        return mPlace;
    }

private:
    // A character, or what an escape of JSON stands for; 0 for one that stands for a blank or for nothing. Several
    // backslashes come from JSON within JSON.
    wchar_t hTake()
    {
        if (mText[mPlace] != L'\\')
        {
            return mText[mPlace++];
        }
        std::size_t lPlace = mPlace;
        while (lPlace < mText.size() && mText[lPlace] == L'\\')
        {
            ++lPlace;
        }
        const wchar_t lLetter = lPlace < mText.size() ? mText[lPlace] : L'\0';
        const std::optional<wchar_t> lCode = lLetter == L'u' ? hReadCode(lPlace + 1) : std::nullopt;
        if (lCode)
        {
            mPlace = lPlace + 5;
            return *lCode;
        }
        const bool lIsBlank = lLetter != 0 && std::wstring_view(L"nrtbf").find(lLetter) != std::wstring_view::npos;
        const bool lIsItself = lLetter == L'/' || lLetter == L'"';
        mPlace = lIsBlank || lIsItself ? lPlace + 1 : lPlace;
        return lIsItself ? lLetter : lIsBlank ? L'\0' : L'\\';
    }

    std::optional<wchar_t> hReadCode(std::size_t iPlace) const
    {
        if (iPlace + 4 > mText.size())
        {
            return {};
        }
        int lCode = 0;
        for (std::size_t lIndex = iPlace; lIndex < iPlace + 4; ++lIndex)
        {
            const int lDigit = DigitOf(mText[lIndex]);
            if (lDigit < 0)
            {
                return {};
            }
            lCode = lCode * 16 + lDigit;
        }
        return static_cast<wchar_t>(lCode);
    }

    std::wstring_view mText;
    std::size_t mPlace;
    std::size_t mStart = 0;
    wchar_t mCharacter = 0;
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

} // namespace

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
        mNames.push_back(AsCompared(lName));
    }
    mNames.erase(std::remove(mNames.begin(), mNames.end(), std::wstring()), mNames.end());
}

bool SensitiveNames::Is(std::wstring_view iText) const
{
    return std::find(mNames.begin(), mNames.end(), AsCompared(iText)) != mNames.end();
}

std::optional<NamePlace> SensitiveNames::FindWord(std::wstring_view iText) const
{
    return hFind(iText, true);
}

bool SensitiveNames::IsIn(std::wstring_view iText) const
{
    return hFind(iText, false).has_value();
}

std::optional<NamePlace> SensitiveNames::hFind(std::wstring_view iText, bool iAsWord) const
{
    for (NameReader lFirst(iText, 0); lFirst.Next();)
    {
        for (const std::wstring& lName : mNames)
        {
            NameReader lReader = lFirst;
            std::size_t lCount = 0;
            while (lReader.GetCharacter() == lName[lCount] && ++lCount < lName.size() && lReader.Next())
            {
            }
            const std::size_t lStart = lFirst.GetStart();
            const std::size_t lStop = lReader.GetStop();
            if (lCount == lName.size() && (!iAsWord || ((lStart == 0 || !IsWordCharacter(iText[lStart - 1])) &&
                                                        (lStop == iText.size() || !IsWordCharacter(iText[lStop])))))
            {
                return NamePlace{lStart, lStop};
            }
        }
    }
    return {};
}

} // namespace TalBaseTool
