#include "Text/Escaping.h"

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gAnyName = L""; // one that holds no delimiter, whatever that is

} // namespace

Escaping::Escaping(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mProbe(QTalBase::CreatePropertyBag(ipBegin, ipEnd)),
      mIsDefaultPair(std::wstring_view(ipBegin) == BEGIN && std::wstring_view(ipEnd) == END)
{
}

std::wstring Escaping::Escape(std::wstring_view iValue) const
{
    std::wstring lValue(iValue);
    if (mIsDefaultPair && lValue.find_first_of(L"*+") != std::wstring::npos)
    {
        mProbe->SetProperty(gAnyName, lValue.c_str(), false);
        lValue = mProbe->GetValue(0).c_str();
    }
    return lValue;
}

std::wstring Escaping::Unescape(std::wstring_view iStored) const
{
    std::wstring lStored(iStored);
    if (mIsDefaultPair && lStored.find(L'&') != std::wstring::npos)
    {
        mProbe->SetProperty(gAnyName, lStored.c_str(), false);
        lStored = mProbe->GetProperty(gAnyName).c_str();
    }
    return lStored;
}

} // namespace TalBaseTool
