#include "Text/Escaping.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gAnyName = L""; // one that holds no delimiter, whatever that is

// What is known of the default pair, asked once: a bag takes as long to make as a small text to read.
struct DefaultEscapes
{
    std::wstring mStar = hAsk(L"*"); // what stands for these characters
    std::wstring mPlus = hAsk(L"+");

private:
    static std::wstring hAsk(const wchar_t* ipCharacter)
    {
        const BagPtr lProbe(QTalBase::CreatePropertyBag(BEGIN, END));
        lProbe->SetProperty(gAnyName, ipCharacter, false);
        return lProbe->GetValue(0).c_str();
    }
};

const DefaultEscapes& Defaults()
{
    static const DefaultEscapes lDefaults;
    return lDefaults;
}

} // namespace

Escaping::Escaping(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mIsDefaultPair(std::wstring_view(ipBegin) == BEGIN && std::wstring_view(ipEnd) == END)
{
}

std::wstring Escaping::Escape(std::wstring_view iValue) const
{
    std::wstring lValue(iValue);
    EscapeFrom(0, lValue);
    return lValue;
}

std::wstring Escaping::Unescape(std::wstring_view iStored) const
{
    if (!HoldsEscape(iStored))
    {
        return std::wstring(iStored);
    }
    std::wstring lValue;
    lValue.reserve(iStored.size());
    for (std::size_t lStart = 0; lStart < iStored.size();)
    {
        const std::size_t lStop = std::min(iStored.find(L'&', lStart), iStored.size());
        lValue.append(iStored.substr(lStart, lStop - lStart));
        const std::wstring_view lRest = iStored.substr(lStop);
        const bool lIsStar = lRest.starts_with(Defaults().mStar);
        const bool lIsPlus = lRest.starts_with(Defaults().mPlus);
        lValue.append(lIsStar ? L"*" : lIsPlus ? L"+" : lRest.substr(0, 1));
        lStart = lStop + (lIsStar ? Defaults().mStar.size() : lIsPlus ? Defaults().mPlus.size() : 1);
    }
    return lValue;
}

void Escaping::EscapeFrom(std::size_t iStart, std::wstring& oText) const
{
    std::size_t lRead = oText.size();
    oText.resize(lRead + CountGrowth(std::wstring_view(oText).substr(iStart)));
    for (std::size_t lWrite = oText.size(); lWrite != lRead;) // from the end, so that nothing is written over
    {
        const wchar_t lCharacter = oText[--lRead];
        if (const std::wstring* lEscape = hFindEscape(lCharacter))
        {
            lWrite -= lEscape->size();
            lEscape->copy(&oText[lWrite], lEscape->size());
        }
        else
        {
            oText[--lWrite] = lCharacter;
        }
    }
}

std::size_t Escaping::CountGrowth(std::wstring_view iValue) const
{
    std::size_t lGrowth = 0;
    for (const wchar_t lCharacter : iValue)
    {
        const std::wstring* lEscape = hFindEscape(lCharacter);
        lGrowth += lEscape != nullptr ? lEscape->size() - 1 : 0;
    }
    return lGrowth;
}

bool Escaping::hHoldsEscape(std::wstring_view iValue)
{
    return iValue.find(Defaults().mStar) != std::wstring_view::npos ||
           iValue.find(Defaults().mPlus) != std::wstring_view::npos;
}

// Null for a character that stands for itself.
const std::wstring* Escaping::hFindEscape(wchar_t iCharacter) const
{
    if (!mIsDefaultPair)
    {
        return nullptr;
    }
    return iCharacter == L'*' ? &Defaults().mStar : iCharacter == L'+' ? &Defaults().mPlus : nullptr;
}

} // namespace TalBaseTool
