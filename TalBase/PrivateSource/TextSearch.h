// Searching for one text in texts that come from the network, in time linear in both whatever these contain: short
// texts are compared character by character, long ones, for which that product could hurt, go through the
// Knuth-Morris-Pratt automaton.

#ifndef TALBASE_PRIVATESOURCE_TEXTSEARCH_H
#define TALBASE_PRIVATESOURCE_TEXTSEARCH_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace QTalBase
{

inline constexpr std::size_t gShortDelimiter = 16; // up to here comparing at every character is cheap

// One needle, for any number of haystacks. Holds a view: the needle must outlive the searcher.
class TextSearcher
{
public:
    explicit TextSearcher(std::wstring_view iNeedle) noexcept : mNeedle(iNeedle) {}

    // Returns whether the needle occurs; the empty needle occurs everywhere. Throws std::bad_alloc for a long needle.
    bool OccursIn(std::wstring_view iText);

    // The automaton: how many characters of the needle match after one more character. Needs Prepare.
    std::size_t Step(std::size_t iMatched, wchar_t iCharacter) const noexcept;

    // Makes the automaton's table, once. Throws std::bad_alloc.
    void Prepare();

    // How much of the needle is matched at least where so much of it is, but not by the same characters of the text:
    // what the first iMatched characters of the needle both begin and end with. Needs Prepare.
    std::size_t GetBorder(std::size_t iMatched) const noexcept
    {
        return mBorders[iMatched];
    }

    // The length of the longest text, other than the needle, that the needle both begins and ends with. Throws
    // std::bad_alloc.
    std::size_t GetLongestBorder()
    {
        Prepare();
        return mBorders.back();
    }

private:
    std::wstring_view mNeedle;
    std::vector<std::size_t> mBorders; // empty until it is needed
};

// Whether iPart occurs in iText, for a single question.
bool Contains(std::wstring_view iText, std::wstring_view iPart);

} // namespace QTalBase

#endif
