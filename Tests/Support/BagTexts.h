// Names, values, delimiters and texts that provoke the odd rules of property bags, chosen step by step.

#ifndef TESTS_SUPPORT_BAGTEXTS_H
#define TESTS_SUPPORT_BAGTEXTS_H

#include "Tests/Support/Choices.h"

#include <string>
#include <vector>

namespace Support
{

struct DelimiterPair
{
    std::wstring mBegin;
    std::wstring mEnd;
};

// The pairs to begin with: the defaults first, then pairs that a header cannot carry, letters of the header's words,
// characters of escapes, common prefixes and suffixes, long ones that almost match, and invalid ones.
const std::vector<DelimiterPair>& OddPairs();

class BagTexts
{
public:
    explicit BagTexts(Choices& iChoices) : mChoices(iChoices) {}

    // A name or a value: mostly one of a few words, so that names meet again.
    std::wstring Word();

    // Mostly the defaults or an odd pair, sometimes one made of few characters.
    DelimiterPair Pair();

    // Mostly the shape of a text form, with or without header; with iPair where it has none.
    std::wstring Text(const DelimiterPair& iPair);

    // Many short properties, of which some displace others.
    std::wstring ManyProperties(const DelimiterPair& iPair);

    // The text with some pieces changed, removed, repeated or moved.
    std::wstring Mutated(std::wstring iText);

private:
    unsigned int hBelow(unsigned int iLimit)
    {
        return mChoices.Below(iLimit);
    }

    std::wstring hAlphabet();
    std::wstring hOf(const std::wstring& iAlphabet, unsigned int iLongest);
    std::wstring hWordNear(const DelimiterPair& iPair);
    void hAppendPiece(const DelimiterPair& iPair, std::wstring& oText, unsigned int& oDepth);
    std::size_t hPlace(const std::wstring& iText);

    Choices& mChoices;
};

// What is seen of a text that is read with its header's delimiters or, without one, with iPair: how deep its nests are,
// counting what is opened and never closed, how many begin delimiters it has, and how many characters are behind its
// last delimiter. What the plain implementation does grows with the power of the depth.
struct TextShape
{
    unsigned int mDepth = 0;
    std::size_t mBegins = 0;
    std::size_t mTail = 0;
};

TextShape ShapeOfText(const std::wstring& iText, const DelimiterPair& iPair);

// Returns whether the plain implementation, which takes some five times longer for every level of nests, reads such a
// text in a moment.
bool IsAffordable(const std::wstring& iText, const DelimiterPair& iPair);

} // namespace Support

#endif
