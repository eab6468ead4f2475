#include "QBase/Guid.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace
{

using QBase::CreateGUID;
using QBase::Guid2String;
using QBase::String2Guid;

// The examples of versions 1 and 4 to 7 in RFC 9562, its nil and its max, and a value that shows the order of the
// bytes.
struct Example
{
    _GUID mGuid;
    const wchar_t* mText;
};

const Example gExamples[] = {
    {{0xC232AB00, 0x9414, 0x11EC, {0xB3, 0xC8, 0x9F, 0x6B, 0xDE, 0xCE, 0xD8, 0x46}},
     L"c232ab00-9414-11ec-b3c8-9f6bdeced846"},
    {{0x919108F7, 0x52D1, 0x4320, {0x9B, 0xAC, 0xF8, 0x47, 0xDB, 0x41, 0x48, 0xA8}},
     L"919108f7-52d1-4320-9bac-f847db4148a8"},
    {{0x2ED6657D, 0xE927, 0x568B, {0x95, 0xE1, 0x26, 0x65, 0xA8, 0xAE, 0xA6, 0xA2}},
     L"2ed6657d-e927-568b-95e1-2665a8aea6a2"},
    {{0x1EC9414C, 0x232A, 0x6B00, {0xB3, 0xC8, 0x9F, 0x6B, 0xDE, 0xCE, 0xD8, 0x46}},
     L"1ec9414c-232a-6b00-b3c8-9f6bdeced846"},
    {{0x017F22E2, 0x79B0, 0x7CC3, {0x98, 0xC4, 0xDC, 0x0C, 0x0C, 0x07, 0x39, 0x8F}},
     L"017f22e2-79b0-7cc3-98c4-dc0c0c07398f"},
    {{0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}}, L"00000000-0000-0000-0000-000000000000"},
    {{0xFFFFFFFF, 0xFFFF, 0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
     L"ffffffff-ffff-ffff-ffff-ffffffffffff"},
    {{0x00112233, 0x4455, 0x6677, {0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}},
     L"00112233-4455-6677-8899-aabbccddeeff"},
};

const _GUID gOther = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

TEST(QBaseGuid, Guid2StringWritesTheExamples)
{
    for (const Example& lExample : gExamples)
    {
        EXPECT_STREQ(lExample.mText, Guid2String(lExample.mGuid).c_str());
    }
}

TEST(QBaseGuid, String2GuidReadsTheExamplesInEveryForm)
{
    for (const Example& lExample : gExamples)
    {
        std::wstring lUpper = lExample.mText;
        for (wchar_t& lCharacter : lUpper)
        {
            lCharacter -= lCharacter >= L'a' ? L'a' - L'A' : 0;
        }
        for (const std::wstring& lText :
             {std::wstring(lExample.mText), L"{" + std::wstring(lExample.mText) + L"}", lUpper, L"{" + lUpper + L"}"})
        {
            _GUID lGuid = gOther;
            EXPECT_TRUE(String2Guid(lGuid, lText.c_str())) << Support::Readable(lText);
            EXPECT_EQ(lExample.mGuid, lGuid);
        }
    }
    _GUID lMixed = gOther;
    EXPECT_TRUE(String2Guid(lMixed, L"C232ab00-9414-11eC-B3c8-9f6BDECEd846"));
    EXPECT_EQ(gExamples[0].mGuid, lMixed);
}

const wchar_t* const gNoGuids[] = {
    L"",
    L"{",
    L"}",
    L"{}",
    L"-",
    L"c232ab00",
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84",       // a digit short
    L"c232ab00-9414-11ec-b3c8-9f6bdeced8466",     // a digit long
    L"c232ab00941411ecb3c89f6bdeced846",          // no dashes
    L"c232ab00-9414-11ec-b3c89f6bdeced846",       // a dash short
    L"c232ab00-9414-11ec-b3c8-9f6b-deced846",     // a dash long
    L"c232ab0-09414-11ec-b3c8-9f6bdeced846",      // a dash too early
    L"c232ab00-9414-11ec-b3c8_9f6bdeced846",      // something else for a dash
    L"-232ab00-9414-11ec-b3c8-9f6bdeced846",      // a dash for a digit
    L"g232ab00-9414-11ec-b3c8-9f6bdeced846",      // the letter after the last digit
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84G",      //
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84@",      // the characters around the digits
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84`",      //
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84/",      //
    L"c232ab00-9414-11ec-b3c8-9f6bdeced84:",      //
    L"\uFF10232ab00-9414-11ec-b3c8-9f6bdeced846", // a full-width zero
    L" c232ab00-9414-11ec-b3c8-9f6bdeced846",     // something before
    L"c232ab00-9414-11ec-b3c8-9f6bdeced846 ",     // something after
    L"c232ab00-9414-11ec-b3c8-9f6bdeced846\n",    //
    L"0xc232ab00-9414-11ec-b3c8-9f6bdeced846",    //
    L"urn:uuid:c232ab00-9414-11ec-b3c8-9f6bdeced846",
    L"{c232ab00-9414-11ec-b3c8-9f6bdeced846",    // half a pair of braces
    L"c232ab00-9414-11ec-b3c8-9f6bdeced846}",    //
    L"{c232ab00-9414-11ec-b3c8-9f6bdeced846)",   // another bracket
    L"(c232ab00-9414-11ec-b3c8-9f6bdeced846)",   //
    L"{{c232ab00-9414-11ec-b3c8-9f6bdeced846}}", // two pairs
    L"{c232ab00-9414-11ec-b3c8-9f6bdeced846}}",  //
    L"{c232ab00-9414-11ec-b3c8-9f6bdeced846} ",  //
    L"{ c232ab00-9414-11ec-b3c8-9f6bdeced846}",  //
    L"{c232ab00-9414-11ec-b3c8-9f6bdeced84}",    //
};

TEST(QBaseGuid, String2GuidOfAnythingElseReturnsFalseAndLeavesTheTarget)
{
    for (const wchar_t* lText : gNoGuids)
    {
        _GUID lGuid = gOther;
        EXPECT_FALSE(String2Guid(lGuid, lText)) << Support::Readable(lText);
        EXPECT_EQ(gOther, lGuid) << Support::Readable(lText);
    }
}

TEST(QBaseGuid, String2GuidReadsNothingBehindTheTerminator)
{
    const std::wstring lWhole = L"{c232ab00-9414-11ec-b3c8-9f6bdeced846}";
    for (std::size_t lLength = 0; lLength < lWhole.size(); ++lLength)
    {
        const std::vector<wchar_t> lCut = [&] {
            std::vector<wchar_t> lCharacters(lWhole.begin(), lWhole.begin() + static_cast<std::ptrdiff_t>(lLength));
            lCharacters.push_back(L'\0');
            lCharacters.shrink_to_fit();
            return lCharacters;
        }();
        _GUID lGuid = gOther;
        EXPECT_FALSE(String2Guid(lGuid, lCut.data())) << lLength;
        EXPECT_EQ(gOther, lGuid);
    }
}

TEST(QBaseGuid, EqualWhereEveryByteIs)
{
    _GUID lGuid = gOther;
    EXPECT_TRUE(lGuid == gOther);
    EXPECT_FALSE(lGuid != gOther);
    auto* lBytes = reinterpret_cast<unsigned char*>(&lGuid);
    for (std::size_t lIndex = 0; lIndex < sizeof(_GUID); ++lIndex)
    {
        lBytes[lIndex] ^= 0x80;
        EXPECT_FALSE(lGuid == gOther) << lIndex;
        EXPECT_TRUE(lGuid != gOther) << lIndex;
        lBytes[lIndex] ^= 0x80;
    }
    static_assert(sizeof(_GUID) == 16);
    static_assert(std::is_trivially_copyable_v<_GUID>);
}

TEST(QBaseGuid, CreateGUIDSetsVersionAndVariantAndMakesEachOneOnce)
{
    std::set<std::wstring> lTexts;
    for (int lRound = 0; lRound < 1000; ++lRound)
    {
        _GUID lGuid = gOther;
        CreateGUID(lGuid);
        EXPECT_EQ(0x4000, lGuid.Data3 & 0xF000);
        EXPECT_EQ(0x80, lGuid.Data4[0] & 0xC0);
        lTexts.insert(Support::Text(Guid2String(lGuid)));
    }
    EXPECT_EQ(1000U, lTexts.size());
}

TEST(QBaseGuid, CreateGUIDLeavesEveryOtherBitToChance)
{
    _GUID lSet = {};     // the bits that were 1 at least once
    _GUID lCleared = {}; // the bits that were 0 at least once
    const auto lCollect = [](_GUID& oSeen, const _GUID& iGuid, unsigned char iMask) {
        const auto* lBytes = reinterpret_cast<const unsigned char*>(&iGuid);
        auto* lSeen = reinterpret_cast<unsigned char*>(&oSeen);
        for (std::size_t lIndex = 0; lIndex < sizeof(_GUID); ++lIndex)
        {
            lSeen[lIndex] = static_cast<unsigned char>(lSeen[lIndex] | (lBytes[lIndex] ^ iMask));
        }
    };
    for (int lRound = 0; lRound < 1000; ++lRound)
    {
        _GUID lGuid = gOther;
        CreateGUID(lGuid);
        lCollect(lSet, lGuid, 0x00);
        lCollect(lCleared, lGuid, 0xFF);
    }
    EXPECT_STREQ(L"ffffffff-ffff-4fff-bfff-ffffffffffff", Guid2String(lSet).c_str());
    EXPECT_STREQ(L"ffffffff-ffff-bfff-7fff-ffffffffffff", Guid2String(lCleared).c_str());
}

} // namespace
