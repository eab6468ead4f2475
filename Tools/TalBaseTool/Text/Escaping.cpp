#include "Text/Escaping.h"

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gAnyName = L""; // one that holds no delimiter, whatever that is

// What is known of the default pair, asked once: a bag takes as long to make as a small text to read.
struct DefaultEscapes
{
    DefaultEscapes() : mProbe(QTalBase::CreatePropertyBag(BEGIN, END)), mStar(hAsk(L'*')), mPlus(hAsk(L'+')) {}

    BagPtr mProbe;
    std::wstring mStar; // what stands for these characters
    std::wstring mPlus;

private:
    std::wstring hAsk(wchar_t iCharacter) const
    {
        mProbe->SetProperty(gAnyName, std::wstring(1, iCharacter).c_str(), false);
        return mProbe->GetValue(0).c_str();
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
    std::wstring lStored(iStored);
    if (HoldsEscape(lStored))
    {
        const BagPtr& lProbe = Defaults().mProbe;
        lProbe->SetProperty(gAnyName, lStored.c_str(), false);
        lStored = lProbe->GetProperty(gAnyName).c_str();
    }
    return lStored;
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

bool Escaping::HoldsEscape(std::wstring_view iValue) const
{
    return mIsDefaultPair && iValue.find(L'&') != std::wstring_view::npos &&
           (iValue.find(Defaults().mStar) != std::wstring_view::npos ||
            iValue.find(Defaults().mPlus) != std::wstring_view::npos);
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
