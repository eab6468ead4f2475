// Identifiers: a text is accepted exactly where a plain look at it finds the form, an identifier comes back from its
// text, and new ones are of the version that they claim.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Guid.h"
#include "TalBase/Guid.h"
#include "TalBase/PropertyBagHelpers.h"
#include "Tests/Support/BrokenRule.h"

#include <cstring>
#include <cwchar>
#include <cwctype>
#include <optional>

namespace
{

// The sixteen bytes in the order of the text.
using Bytes = std::string;

_GUID FromBytes(const Bytes& iBytes)
{
    const auto lByte = [&iBytes](std::size_t iIndex) {
        return static_cast<unsigned int>(static_cast<unsigned char>(iBytes[iIndex]));
    };
    _GUID lGuid = {};
    lGuid.Data1 = lByte(0) * 0x1000000U + lByte(1) * 0x10000U + lByte(2) * 0x100U + lByte(3);
    lGuid.Data2 = static_cast<std::uint16_t>(lByte(4) * 0x100 + lByte(5));
    lGuid.Data3 = static_cast<std::uint16_t>(lByte(6) * 0x100 + lByte(7));
    std::memcpy(lGuid.Data4, iBytes.data() + 8, 8);
    return lGuid;
}

std::wstring WritePlain(const Bytes& iBytes)
{
    const wchar_t lDigits[] = L"0123456789abcdef";
    std::wstring lText;
    for (const char lByte : iBytes)
    {
        lText += lDigits[static_cast<unsigned char>(lByte) / 16];
        lText += lDigits[static_cast<unsigned char>(lByte) % 16];
    }
    for (const std::size_t lDash : {20U, 16U, 12U, 8U})
    {
        lText.insert(lDash, L"-");
    }
    return lText;
}

std::optional<_GUID> ReadPlain(std::wstring iText)
{
    const bool lIsUnclosed = iText.size() == 37 && Plain::IsBroken("ClosingBrace");
    if ((lIsUnclosed || (iText.size() == 38 && iText.back() == L'}')) && iText.front() == L'{')
    {
        iText = iText.substr(1, 36);
    }
    const std::wstring lDigits = L"0123456789abcdefABCDEF";
    if (iText.size() != 36)
    {
        return std::nullopt;
    }
    for (const std::size_t lDash : {23U, 18U, 13U, 8U})
    {
        if (iText[lDash] != L'-')
        {
            return std::nullopt;
        }
        iText.erase(lDash, 1);
    }
    if (iText.find_first_not_of(lDigits) != std::wstring::npos)
    {
        return std::nullopt;
    }
    Bytes lBytes;
    for (std::size_t lIndex = 0; lIndex < iText.size(); lIndex += 2)
    {
        lBytes += static_cast<char>(std::wcstoul(iText.substr(lIndex, 2).c_str(), nullptr, 16));
    }
    return FromBytes(lBytes);
}

void CheckText(const std::wstring& iText)
{
    const _GUID lOld = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    _GUID lGuid = lOld;
    const std::optional<_GUID> lExpected = ReadPlain(iText);
    Fuzz::Require(QBase::String2Guid(lGuid, iText.c_str()) == lExpected.has_value(),
                  "a text is refused or accepted wrongly");
    Fuzz::Require(lGuid == lExpected.value_or(lOld), "a text is read as another identifier");
    _GUID lValue = lOld;
    QTalBase::UnStringize(iText.c_str(), lValue);
    Fuzz::Require(lValue == lGuid, "a property's value is read as another identifier");
}

void CheckIdentifier(Bytes iBytes)
{
    iBytes.resize(16);
    const _GUID lGuid = FromBytes(iBytes);
    const std::wstring lText = WritePlain(iBytes);
    Fuzz::RequireEqual(QBase::Guid2String(lGuid).c_str(), lText, "an identifier has another text");
    Fuzz::RequireEqual(QTalBase::Stringize(lGuid).c_str(), lText, "an identifier has another text as a value");
    CheckText(lText);
    CheckText(L"{" + lText + L"}");
    std::wstring lUpper = lText;
    for (wchar_t& lCharacter : lUpper)
    {
        lCharacter = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(lCharacter)));
    }
    CheckText(lUpper);
    _GUID lOther = lGuid;
    lOther.Data4[7] ^= 1;
    Fuzz::Require(lGuid == lGuid && lGuid != lOther && !(lGuid == lOther), "identifiers are compared wrongly");
}

// A text with some characters changed, removed or added.
std::wstring Damaged(std::wstring iText, Fuzz::Input& iInput)
{
    const wchar_t lCharacters[] = L"0aAfFgG-{}xX \xFF10";
    while (!iInput.IsAtEnd())
    {
        const std::size_t lPlace = iInput.Below(40) % (iText.size() + 1);
        const wchar_t lCharacter = lCharacters[iInput.Below(static_cast<unsigned int>(std::size(lCharacters) - 1))];
        switch (iInput.Below(3))
        {
        case 0:
            iText.erase(lPlace, 1);
            break;
        case 1:
            iText.insert(lPlace, 1, lCharacter);
            break;
        default:
            iText.replace(lPlace, 1, 1, lCharacter);
            break;
        }
    }
    return iText;
}

void CheckNew()
{
    const _GUID lGuid = QTalBase::Guid::GenerateUniqueGUID();
    Fuzz::Require(lGuid.Data3 >> 12 == 4 && lGuid.Data4[0] >> 6 == 2, "a new identifier is not of version 4");
    Fuzz::Require(lGuid != QTalBase::Guid::GenerateUniqueGUID(), "a new identifier is not new");
    const std::wstring lText = QTalBase::Guid::GenerateUniqueString().c_str();
    Fuzz::Require(ReadPlain(lText).has_value() && lText.size() == 36, "a new identifier's text is none");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    switch (lInput.Below(4))
    {
    case 0:
        CheckIdentifier(lInput.Bytes(16));
        break;
    case 1: {
        Bytes lBytes = lInput.Bytes(16);
        lBytes.resize(16);
        const bool lHasBraces = lInput.Below(2) == 0;
        CheckText(Damaged(lHasBraces ? L"{" + WritePlain(lBytes) + L"}" : WritePlain(lBytes), lInput));
        break;
    }
    case 2:
        CheckNew();
        break;
    default:
        CheckText(lInput.WideRest());
        break;
    }
    return 0;
}
