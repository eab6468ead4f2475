// Random bags that their text form carries faithfully: delimiters that a header can name, names and values that hold
// no character of a delimiter (values may under the default delimiters, which escape them), no empty nested bags, no
// name that looks like a header. The same seed gives the same bags on every machine.

#ifndef TESTS_SUPPORT_BAGGENERATOR_H
#define TESTS_SUPPORT_BAGGENERATOR_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"

#include <iterator>
#include <random>
#include <string>

namespace Support
{

class BagGenerator
{
public:
    explicit BagGenerator(unsigned int iSeed) : mEngine(iSeed) {}

    BagPtr Next()
    {
        static const wchar_t* const gPairs[][2] = {
            {L"++++", L"***"}, {L"++++", L"***"}, {L"[[", L"]]"}, {L"(", L")"}, {L"\x2190", L"\x2192\x2192"},
            {L"ab", L"yz"},
        };
        const auto& lPair = gPairs[hBelow(std::size(gPairs))];
        mForbidden = std::wstring(lPair[0]) + lPair[1];
        mEscaped = mForbidden == L"++++***";
        return hBag(lPair[0], lPair[1], 0);
    }

private:
    static const unsigned int gMaxDepth = 4;

    BagBuilder hBag(const wchar_t* ipBegin, const wchar_t* ipEnd, unsigned int iDepth)
    {
        BagBuilder lBuilder(ipBegin, ipEnd);
        const unsigned int lMinimum = iDepth == 0 ? 0 : 1;
        const unsigned int lCount = lMinimum + hBelow(5);
        for (unsigned int lEntry = 0; lEntry < lCount; ++lEntry)
        {
            const std::wstring lName = L"p" + std::to_wstring(lEntry) + hText(6, mForbidden);
            if (iDepth + 1 < gMaxDepth && hBelow(3) == 0)
            {
                lBuilder.Nest(lName.c_str(), hBag(ipBegin, ipEnd, iDepth + 1));
            }
            else
            {
                const std::wstring lValue = L"v" + hText(12, mEscaped ? std::wstring() : mForbidden);
                lBuilder.Set(lName.c_str(), lValue.c_str());
            }
        }
        return lBuilder;
    }

    std::wstring hText(unsigned int iMaxLength, const std::wstring& iForbidden)
    {
        static const std::wstring gAlphabet = L"abcXYZyz019 &#;&#42;*+[]()<>\n\t\"\\\xE4\x20AC\x4E16\x1F600";
        std::wstring lText;
        for (unsigned int lLeft = hBelow(iMaxLength + 1); lLeft > 0; --lLeft)
        {
            const wchar_t lCharacter = gAlphabet[hBelow(gAlphabet.size())];
            if (iForbidden.find(lCharacter) == std::wstring::npos)
            {
                lText += lCharacter;
            }
        }
        return lText;
    }

    unsigned int hBelow(std::size_t iLimit)
    {
        return static_cast<unsigned int>(mEngine() % iLimit);
    }

    std::mt19937 mEngine;
    std::wstring mForbidden;
    bool mEscaped = false;
};

} // namespace Support

#endif
