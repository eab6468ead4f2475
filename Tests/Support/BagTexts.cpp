#include "Tests/Support/BagTexts.h"

#include "QBase/Message.h"
#include "Tests/Support/PlainPropertyBag.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace Support
{

namespace
{

const std::size_t gLongestText = 160; // the plain implementation is exponential in the depth that a text can have
const unsigned int gDeepest = 5;

const wchar_t* const gWords[] = {
    L"a",
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
    L"long value with more text",
    L"a value longer than what is copied, compared and searched in short steps, whatever these are"};

// Few characters each, so that what is made of them collides.
const wchar_t* const gAlphabets[] = {
    L"+*", L"ab", L"&#;423+*", L"BeginDlmtr", L"[]<>/\\", L"aB*+;", L"\x1F600\x10FFFF\xD800x"};

template <class Array>
constexpr unsigned int CountOf(const Array& iArray)
{
    return static_cast<unsigned int>(std::size(iArray));
}

std::wstring Header(const DelimiterPair& iPair)
{
    return L"EndDelimiter" + iPair.mEnd + L"BeginDelimiter" + iPair.mBegin + iPair.mEnd;
}

bool IsAt(const std::wstring& iText, std::size_t iPosition, const std::wstring& iPart)
{
    return !iPart.empty() && iText.compare(iPosition, iPart.size(), iPart) == 0;
}

} // namespace

const std::vector<DelimiterPair>& OddPairs()
{
    static const std::vector<DelimiterPair> gPairs = {
        {L"++++", L"***"},
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
        {L"*", L"+"},
        {L"++++", L"**"},
        {L"+++", L"***"},
        {L"***", L"++++"},
        {L"+++++", L"****"},
        {L"0123456789abcdef", L"0123456789abcdeg"},
        {L"0123456789abcdefX", L"0123456789abcdefY"},
        {std::wstring(60, L'+') + L"-", L"***"},
        {L"++++", std::wstring(40, L'*') + L"="},
    };
    return gPairs;
}

// Choices are made in statements of their own: in one expression each compiler would make them in another order, and
// the same bytes would be another test.

std::wstring BagTexts::hAlphabet()
{
    return gAlphabets[hBelow(CountOf(gAlphabets))];
}

std::wstring BagTexts::hOf(const std::wstring& iAlphabet, unsigned int iLongest)
{
    const unsigned int lLimit = static_cast<unsigned int>(std::min(iAlphabet.size(), std::size_t{256}));
    std::wstring lText;
    for (unsigned int lLeft = lLimit == 0 ? 0 : 1 + hBelow(iLongest); lLeft > 0; --lLeft)
    {
        lText += iAlphabet[hBelow(lLimit)];
    }
    return lText;
}

std::wstring BagTexts::Word()
{
    const unsigned int lChoice = hBelow(CountOf(gWords) + 4);
    if (lChoice < CountOf(gWords))
    {
        std::wstring lWord = gWords[lChoice];
        if (mChoices.Once(8))
        {
            lWord += gWords[hBelow(CountOf(gWords))];
        }
        return lWord;
    }
    if (lChoice == CountOf(gWords))
    {
        return L"n" + std::to_wstring(hBelow(256));
    }
    const std::wstring lAlphabet = hAlphabet();
    return hOf(lAlphabet, mChoices.Once(10) ? 40 : 5);
}

DelimiterPair BagTexts::Pair()
{
    const unsigned int lKind = hBelow(6);
    if (lKind < 3)
    {
        return OddPairs()[hBelow(3)];
    }
    if (lKind < 5)
    {
        return OddPairs()[hBelow(static_cast<unsigned int>(OddPairs().size()))];
    }
    const std::wstring lAlphabet = hAlphabet();
    const unsigned int lLongest = mChoices.Once(4) ? 20 : 3;
    DelimiterPair lPair;
    lPair.mBegin = hOf(lAlphabet, lLongest);
    lPair.mEnd = hOf(lAlphabet, lLongest);
    switch (hBelow(6))
    {
    case 0:
        lPair.mEnd = lPair.mBegin.substr(1) + lPair.mEnd[0]; // the end of the one begins the other
        break;
    case 1:
        lPair.mEnd = lPair.mEnd[0] + lPair.mBegin.substr(0, lPair.mBegin.size() - 1);
        break;
    case 2:
        lPair.mEnd = std::wstring(lPair.mBegin.rbegin(), lPair.mBegin.rend());
        break;
    default:
        break;
    }
    return lPair;
}

// A word, or one of the delimiters' own characters.
std::wstring BagTexts::hWordNear(const DelimiterPair& iPair)
{
    return mChoices.Once(12) ? hOf(iPair.mBegin + iPair.mEnd, 4) : Word();
}

// Appends the next piece to a text that is open oDepth levels deep.
void BagTexts::hAppendPiece(const DelimiterPair& iPair, std::wstring& oText, unsigned int& oDepth)
{
    const unsigned int lKind = hBelow(7);
    if (lKind < 4)
    {
        oText += hWordNear(iPair);
        oText += iPair.mBegin;
        oText += lKind < 3 ? hWordNear(iPair) : L"";
        oText += iPair.mEnd;
    }
    else if (lKind == 4 && oDepth < gDeepest)
    {
        oText += hWordNear(iPair);
        oText += iPair.mBegin;
        ++oDepth;
    }
    else if (lKind == 5 && oDepth > 0)
    {
        oText += iPair.mEnd;
        --oDepth;
    }
    else if (lKind == 6 && mChoices.Once(4))
    {
        oText += hWordNear(iPair);
    }
}

std::wstring BagTexts::Text(const DelimiterPair& iPair)
{
    DelimiterPair lPair = iPair;
    std::wstring lText;
    if (mChoices.Once(2))
    {
        lPair = mChoices.Once(3) ? Pair() : OddPairs()[0];
        lText = Header(lPair);
    }
    unsigned int lDepth = 0;
    const unsigned int lPieces = hBelow(14);
    for (unsigned int lPiece = 0; lPiece < lPieces && lText.size() < gLongestText; ++lPiece)
    {
        hAppendPiece(lPair, lText, lDepth);
    }
    while (lDepth > 0)
    {
        lText += mChoices.Once(40) ? L"" : lPair.mEnd;
        --lDepth;
    }
    return mChoices.Once(30) ? lText.substr(0, lText.size() / 2) : lText;
}

std::wstring BagTexts::ManyProperties(const DelimiterPair& iPair)
{
    const bool lIsInNest = mChoices.Once(4);
    const unsigned int lNames = 1 + hBelow(200);
    const unsigned int lPropertiesToANest = mChoices.Once(4) ? 2 : 20;
    std::wstring lText = mChoices.Once(3) ? Header(iPair) : L"";
    lText += lIsInNest ? L"many" + iPair.mBegin : L"";
    for (unsigned int lLeft = hBelow(150); lLeft > 0; --lLeft)
    {
        const std::wstring lProperty = iPair.mBegin + std::to_wstring(lLeft) + iPair.mEnd;
        lText += L"n" + std::to_wstring(hBelow(lNames));
        lText += mChoices.Once(lPropertiesToANest) ? iPair.mBegin + L"k" + lProperty + iPair.mEnd : lProperty;
    }
    return lIsInNest ? lText + iPair.mEnd : lText;
}

std::size_t BagTexts::hPlace(const std::wstring& iText)
{
    const std::size_t lHigh = hBelow(256);
    const std::size_t lLow = hBelow(256);
    return (lHigh * 256 + lLow) % (iText.size() + 1);
}

std::wstring BagTexts::Mutated(std::wstring iText)
{
    for (unsigned int lLeft = 1 + hBelow(3); lLeft > 0; --lLeft)
    {
        const std::size_t lPlace = hPlace(iText);
        const unsigned int lLongest = mChoices.Once(4) ? 100 : 6;
        const std::size_t lLength = hBelow(lLongest);
        const std::wstring lPiece = iText.substr(lPlace, lLength);
        switch (hBelow(6))
        {
        case 0:
            iText.erase(lPlace, lLength);
            break;
        case 1:
            iText.insert(lPlace, lPiece);
            break;
        case 2:
            iText.insert(hPlace(iText), lPiece);
            break;
        case 3:
            iText.replace(lPlace, lLength, Word());
            break;
        case 4:
            iText.insert(lPlace, Word());
            break;
        default:
            iText.resize(lPlace);
            break;
        }
    }
    return iText;
}

TextShape ShapeOfText(const std::wstring& iText, const DelimiterPair& iPair)
{
    TextShape lShape;
    Plain::PlainPropertyBag::Delimiters lDelimiters{iPair.mBegin, iPair.mEnd};
    std::size_t lPosition = 0;
    try
    {
        lPosition = Plain::PlainPropertyBag::ExtractDelimiters(iText, lDelimiters);
    }
    catch (const QBase::Message&)
    {
        return lShape;
    }
    catch (const std::out_of_range&)
    {
        return lShape;
    }
    unsigned int lDepth = 0;
    while (lPosition < iText.size())
    {
        const bool lIsBegin = IsAt(iText, lPosition, lDelimiters.mBegin);
        const bool lIsEnd = !lIsBegin && IsAt(iText, lPosition, lDelimiters.mEnd);
        lDepth = lIsBegin ? lDepth + 1 : lDepth - (lIsEnd && lDepth > 0 ? 1 : 0);
        lShape.mDepth = std::max(lShape.mDepth, lDepth);
        lShape.mBegins += lIsBegin ? 1 : 0;
        lPosition += lIsBegin ? lDelimiters.mBegin.size() : lIsEnd ? lDelimiters.mEnd.size() : 1;
        lShape.mTail = lIsBegin || lIsEnd ? 0 : lShape.mTail + 1;
    }
    return lShape;
}

bool IsAffordable(const std::wstring& iText, const DelimiterPair& iPair)
{
    const std::size_t lLimit = 1000000;
    std::size_t lCost = iText.size();
    for (unsigned int lDepth = ShapeOfText(iText, iPair).mDepth; lDepth > 0 && lCost < lLimit; --lDepth)
    {
        lCost *= 5;
    }
    return lCost < lLimit;
}

} // namespace Support
