#include "Tests/Tools/SecretTexts.h"

#include <algorithm>

namespace ToolTests
{

namespace
{

const std::vector<DelimiterPair> gPairs{{L"<", L">"},      {L"=", L";"},      {L"[", L"]"},       {L":", L"|"},
                                        {L"<<", L">>"},    {L"[=", L"]="},    {L"::", L";;"},     {L"=", L"\r\n"},
                                        {L"++++", L"***"}, {L"++++", L"***"}, {L"<<<<", L">>>>"}, {L"::::", L";;;;"}};

// What may stand around a name, without another word: where an edit cuts a name of several words in two, it becomes a
// value and the property behind it, and nothing tells that from a mail and the property behind that.
const std::vector<std::wstring> gBefore{L"", L"", L"", L"", L"", L"", L"\uFEFF", L" ", L"\n", L"\\n"};
const std::vector<std::wstring> gBehind{L"", L"", L"", L"", L"", L"", L" ", L"\t", L"\u0301", L"."};
const std::vector<std::wstring> gNames{
    L"FTPServerPassword",       L"FTPServerPassword",      L"FTPServerPassword",
    L"FTPServerPassword",       L"ftpserverpassword",      L"FTPSERVERPASSWORD",
    L"FTP Server Password",     L"FTPServer\nPassword",    L"FTP\u200BServer\u00ADPassword",
    L"\\u0046TPServerPassword", L"FTPServerPasswor\\u0064"};

constexpr wchar_t gSecretLetters[] = L"QXZJKVWY";

// Nothing for a pair that no header can carry.
std::wstring HeaderOf(const DelimiterPair& iPair)
{
    if (iPair.mBegin.find_first_of(iPair.mEnd) != std::wstring::npos)
    {
        return L"";
    }
    return L"EndDelimiter" + iPair.mEnd + L"BeginDelimiter" + iPair.mBegin + iPair.mEnd;
}

} // namespace

PlantedText SecretTexts::MakePlanted()
{
    PlantedText lText;
    const DelimiterPair lPair = hAnyOf(gPairs);
    for (std::size_t lLength = 5 + hBelow(6); lLength > 0; --lLength)
    {
        lText.mSecret += gSecretLetters[hBelow(8)];
    }
    hAppend(lText, hBelow(3) > 0 ? HeaderOf(lPair) : L"");
    if (lText.mText.empty())
    {
        lText.mPair = lPair;
    }
    hAppendBag(lText, lPair, 0, true);
    return lText;
}

void SecretTexts::hAppend(PlantedText& oText, const std::wstring& iPart, char iOwner)
{
    oText.mText += iPart;
    oText.mOwners.insert(oText.mOwners.end(), iPart.size(), iOwner);
}

std::wstring SecretTexts::hWord()
{
    std::wstring lWord;
    for (std::size_t lLength = 1 + hBelow(5); lLength > 0; --lLength)
    {
        lWord += static_cast<wchar_t>(L'a' + hBelow(26));
    }
    return lWord;
}

void SecretTexts::hAppendPlain(PlantedText& oText, const DelimiterPair& iPair)
{
    hAppend(oText, hWord() + iPair.mBegin + (hBelow(12) > 0 ? hWord() : L"") + iPair.mEnd);
}

void SecretTexts::hAppendSecret(PlantedText& oText, const DelimiterPair& iPair)
{
    hAppend(oText, hAnyOf(gBefore));
    hAppend(oText, hAnyOf(gNames), gOfName);
    hAppend(oText, hAnyOf(gBehind) + iPair.mBegin);
    if (hBelow(2) == 0)
    {
        hAppend(oText, oText.mSecret, gOfSecret);
    }
    else
    {
        hAppend(oText, hWord() + iPair.mBegin);
        hAppend(oText, oText.mSecret, gOfSecret);
        hAppend(oText, iPair.mEnd);
        hBelow(2) == 0 ? hAppendPlain(oText, iPair) : void();
    }
    hAppend(oText, iPair.mEnd);
}

// With the secret in it, or in a bag in it.
void SecretTexts::hAppendBag(PlantedText& oText, const DelimiterPair& iPair, std::size_t iDepth, bool iHasSecret)
{
    const std::size_t lCount = hBelow(3) + (iDepth > 0 ? 1 : 0);
    const bool lIsDeeper = iHasSecret && iDepth < 3 && hBelow(3) == 0;
    const std::size_t lPlace = iHasSecret ? hBelow(lCount + 1) : lCount + 1;
    for (std::size_t lIndex = 0; lIndex <= lCount; ++lIndex)
    {
        if (lIndex == lPlace && lIsDeeper)
        {
            hAppend(oText, hWord() + iPair.mBegin);
            hAppendBag(oText, iPair, iDepth + 1, true);
            hAppend(oText, iPair.mEnd);
        }
        else if (lIndex == lPlace)
        {
            hAppendSecret(oText, iPair);
        }
        else if (lIndex < lCount || lPlace > lCount)
        {
            hAppendPlain(oText, iPair);
        }
    }
}

// What is between two characters of the name, or of the secret, belongs to it.
bool SecretTexts::hMayTouch(const PlantedText& iText, std::size_t iPlace, bool iInserts) const
{
    if (iInserts)
    {
        return iPlace == 0 || iPlace == iText.mText.size() || iText.mOwners[iPlace] == gOfNeither ||
               iText.mOwners[iPlace] != iText.mOwners[iPlace - 1];
    }
    return iPlace < iText.mText.size() && iText.mOwners[iPlace] == gOfNeither;
}

void SecretTexts::Damage(PlantedText& oText)
{
    const std::wstring lOthers = L"ab1_ =\\/\"&-\n\u200B\u00E9";
    const std::wstring lOfText = oText.mText;
    for (std::size_t lLeft = 1 + hBelow(3); lLeft > 0;)
    {
        const std::size_t lKind = hBelow(3);
        const std::size_t lPlace = hBelow(oText.mText.size() + 1);
        if (!hMayTouch(oText, lPlace, lKind == 0))
        {
            continue;
        }
        --lLeft;
        wchar_t lNew = hAnyOf(lOthers);
        if (hBelow(2) == 0) // mostly one of the delimiters, which nothing else in the text has
        {
            const wchar_t lAny = hAnyOf(lOfText);
            lNew =
                (lAny >= L'A' && lAny <= L'Z') || (lAny >= L'a' && lAny <= L'z') ? hAnyOf(hAnyOf(gPairs).mEnd) : lAny;
        }
        const auto lWhere = static_cast<std::ptrdiff_t>(lPlace);
        if (lKind == 0)
        {
            oText.mText.insert(lPlace, 1, lNew);
            oText.mOwners.insert(oText.mOwners.begin() + lWhere, gOfNeither);
        }
        else if (lKind == 1)
        {
            oText.mText.erase(lPlace, 1);
            oText.mOwners.erase(oText.mOwners.begin() + lWhere);
        }
        else
        {
            oText.mText[lPlace] = lNew;
        }
    }
}

void SecretTexts::InsertDelimiter(PlantedText& oText)
{
    const DelimiterPair lPair = hAnyOf(gPairs);
    const std::wstring lDelimiter = hBelow(2) == 0 ? lPair.mBegin : lPair.mEnd;
    if (lDelimiter.size() >= 3 && oText.mText.find(lDelimiter) != std::wstring::npos)
    {
        oText.mText.insert(oText.mText.find(oText.mSecret) + 1 + hBelow(oText.mSecret.size() - 1), lDelimiter);
    }
}

std::wstring SecretTexts::hSentence()
{
    std::wstring lText = hWord();
    for (std::size_t lCount = hBelow(6); lCount > 0; --lCount)
    {
        lText += L" " + hWord();
    }
    return lText;
}

GoodText SecretTexts::MakeGood()
{
    GoodText lText;
    const DelimiterPair lPair = hAnyOf(gPairs);
    const Good lBag = hMakeGoodBag(lPair, HeaderOf(lPair).empty() ? 3 : 0); // a nest would be read as something else
    const std::wstring lHeader = hBelow(3) > 0 ? HeaderOf(lPair) : L"";
    if (lHeader.empty())
    {
        lText.mPair = lPair;
    }
    lText.mText = lHeader + lBag.mAll;
    lText.mRedacted = lHeader + lBag.mRest;
    lText.mShown = lHeader + lBag.mShown;
    return lText;
}

// One of a list that a text with these delimiters can hold.
std::wstring SecretTexts::hFreeOf(const DelimiterPair& iPair, const std::vector<std::wstring>& iList)
{
    std::wstring lPart = hAnyOf(iList);
    while (lPart.find_first_of(iPair.mBegin + iPair.mEnd) != std::wstring::npos)
    {
        lPart = hAnyOf(iList);
    }
    return lPart;
}

SecretTexts::Good SecretTexts::hMakeGoodPlain(const DelimiterPair& iPair, std::size_t iNumber)
{
    const std::wstring lWord = hWord() + std::to_wstring(iNumber);
    const std::wstring lMark = L"#" + std::to_wstring(iNumber) + L"#";
    const auto lMake = [&](const std::wstring& iName, const std::wstring& iValue) {
        return iName + iPair.mBegin + iValue + iPair.mEnd;
    };
    switch (hBelow(8))
    {
    case 0: // a sensitive name, or one that holds it
    {
        const std::wstring lName = (hBelow(2) == 0 ? L"my " : hFreeOf(iPair, gBefore)) + hFreeOf(iPair, gNames);
        const bool lIsLonger = iNumber > 1 || hBelow(2) == 0;
        return {lMake(lName + (lIsLonger ? L" " + lWord : L""), hSentence()), L"",
                lMake(lName + (lIsLonger ? L"(hidden)" : L"") + lMark, L"(hidden)")};
    }
    case 1: // a mail that speaks of it
        return {lMake(lWord, hSentence() + L" " + hFreeOf(iPair, gNames) + L" " + hSentence()), L"",
                lMake(lWord, L"(hidden)")};
    case 2: // others
    {
        const std::wstring lText = lMake(L"FTPServerPassword2" + lWord, hSentence() + L"FTPServerPassword" + hWord());
        return {lText, lText, lText};
    }
    default: {
        const std::wstring lText = lMake(lWord, hSentence());
        return {lText, lText, lText};
    }
    }
}

SecretTexts::Good SecretTexts::hMakeGoodBag(const DelimiterPair& iPair, std::size_t iDepth)
{
    Good lBag;
    std::size_t lNumber = 0; // makes every name another one
    for (std::size_t lCount = hBelow(5) + 1; lCount > 0; --lCount)
    {
        const Good lPlain = hMakeGoodPlain(iPair, ++lNumber);
        lBag.mAll += lPlain.mAll;
        lBag.mRest += lPlain.mRest;
        lBag.mShown += lPlain.mShown;
    }
    for (std::size_t lCount = iDepth < 3 ? hBelow(3) : 0; lCount > 0; --lCount)
    {
        const bool lIsHidden = hBelow(4) == 0;
        const std::wstring lName = hWord() + std::to_wstring(++lNumber);
        const std::wstring lSensitive = L"FTPServerPassword";
        const Good lNest = hMakeGoodBag(iPair, iDepth + 1);
        lBag.mAll += (lIsHidden ? lSensitive + L"/" : L"") + lName + iPair.mBegin + lNest.mAll + iPair.mEnd;
        lBag.mRest += lIsHidden || lNest.mRest.empty() ? L"" : lName + iPair.mBegin + lNest.mRest + iPair.mEnd;
        lBag.mShown += lIsHidden ? lSensitive + L"(hidden)#" + std::to_wstring(lNumber) + L"#" + iPair.mBegin +
                                       L"GONE" + iPair.mBegin + L"1" + iPair.mEnd + iPair.mEnd
                                 : lName + iPair.mBegin + lNest.mShown + iPair.mEnd;
    }
    return lBag;
}

} // namespace ToolTests
