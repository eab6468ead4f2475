// Texts with secrets in them, at random: good ones, and damaged ones.

#ifndef TESTS_TOOLS_SECRETTEXTS_H
#define TESTS_TOOLS_SECRETTEXTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace ToolTests
{

struct DelimiterPair
{
    std::wstring mBegin;
    std::wstring mEnd;
};

// A text whose secret consists of characters that nothing else in it has, nor any message.
struct PlantedText
{
    std::wstring mText;
    std::vector<char> mOwners; // for each character: that of the name, of the secret, or of neither
    std::wstring mSecret;
    std::optional<DelimiterPair> mPair; // where it has no header
};
constexpr char gOfNeither = 0;
constexpr char gOfName = 1;
constexpr char gOfSecret = 2;

// A text in good order, what 'redact' makes of it, and a text without secrets that looks as this one is to be shown: it
// has "(hidden)" where something is hidden, hidden bags hold nothing but "GONE", and what a regular expression finds
// that looks like "#1#" is not there.
struct GoodText
{
    std::wstring mText;
    std::wstring mRedacted;
    std::wstring mShown;
    std::optional<DelimiterPair> mPair; // where it has no header
};

class SecretTexts
{
public:
    explicit SecretTexts(std::uint64_t iSeed) : mRandom(iSeed) {}

    PlantedText MakePlanted();
    GoodText MakeGood();

    // Inserts, deletes or replaces one to three characters, none of the name or of the secret.
    void Damage(PlantedText& oText);

    // Inserts a delimiter into the secret. A text under short ones stays as it is.
    void InsertDelimiter(PlantedText& oText);

private:
    // Of a bag or a property, the three texts of GoodText.
    struct Good
    {
        std::wstring mAll;
        std::wstring mRest;
        std::wstring mShown;
    };

    std::size_t hBelow(std::size_t iCount)
    {
        return static_cast<std::size_t>(mRandom() % iCount);
    }

    template <class List>
    const auto& hAnyOf(const List& iList)
    {
        return iList[hBelow(std::size(iList))];
    }

    std::wstring hWord();
    std::wstring hSentence();
    void hAppend(PlantedText& oText, const std::wstring& iPart, char iOwner = gOfNeither);
    void hAppendPlain(PlantedText& oText, const DelimiterPair& iPair);
    void hAppendSecret(PlantedText& oText, const DelimiterPair& iPair);
    void hAppendBag(PlantedText& oText, const DelimiterPair& iPair, std::size_t iDepth, bool iHasSecret);
    std::wstring hFreeOf(const DelimiterPair& iPair, const std::vector<std::wstring>& iList);
    Good hMakeGoodBag(const DelimiterPair& iPair, std::size_t iDepth);
    Good hMakeGoodPlain(const DelimiterPair& iPair, std::size_t iNumber);
    bool hMayTouch(const PlantedText& iText, std::size_t iPlace, bool iInserts) const;

    std::mt19937_64 mRandom;
};

} // namespace ToolTests

#endif
