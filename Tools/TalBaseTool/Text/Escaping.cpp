#include "Text/Escaping.h"

namespace TalBaseTool
{

namespace
{

constexpr const wchar_t* gAnyName = L""; // one that holds no delimiter, whatever that is

// No characters, so that no sensitive name holds one.
constexpr std::wstring_view gProbeDelimiters = L"\U0010FFFE\U0010FFFF";

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

SensitiveNames::SensitiveNames(std::set<std::wstring> iOthers)
    : mProbe(QTalBase::CreatePropertyBag(L"\U0010FFFE", L"\U0010FFFF")), mOthers(std::move(iOthers))
{
}

// A text without sensitive properties is asked for, and whether it lacks this one is seen.
bool SensitiveNames::IsSensitive(const wchar_t* ipName) const
{
    const std::wstring lName(ipName);
    if (lName.empty() || mOthers.count(lName) != 0 || lName.find_first_of(gProbeDelimiters) != std::wstring::npos)
    {
        return !lName.empty() && mOthers.count(lName) != 0;
    }
    mProbe->SetProperty(ipName, L"x", false);
    const bool lIsLeftOut = mProbe->GetStringWithoutSensitiveInfo(false, nullptr, nullptr).GetLength() == 0;
    mProbe->RemoveProperty(ipName);
    return lIsLeftOut;
}

} // namespace TalBaseTool
