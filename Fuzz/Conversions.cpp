// Values to texts and back: what is written is what the C library writes in narrow characters, what is read is what it
// reads, and values come back as far as their texts carry them.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Convert.h"
#include "TalBase/PropertyBagHelpers.h"
#include "Tests/Support/BrokenRule.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace
{

using QTalBase::Stringize;
using QTalBase::UnStringize;

template <class Value>
std::wstring Formatted(const char* ipFormat, Value iValue)
{
    char lText[500];
    const int lLength = std::snprintf(lText, sizeof(lText), ipFormat, iValue);
    return std::wstring(lText, lText + lLength);
}

// NaN is itself here.
template <class Value>
bool AreSame(Value iLeft, Value iRight)
{
    return iLeft == iRight || (iLeft != iLeft && iRight != iRight);
}

template <class Value>
Value Read(const std::wstring& iText)
{
    Value lValue = {};
    UnStringize(iText.c_str(), lValue);
    return lValue;
}

template <class Value>
void CheckWhole(Value iValue, const std::wstring& iExpected)
{
    Fuzz::RequireEqual(Stringize(iValue).c_str(), iExpected, "a number has another text");
    Fuzz::Require(Read<Value>(iExpected) == iValue, "a number does not come back");
}

template <class Value>
void CheckFloating(Value iValue)
{
    const std::wstring lText = Stringize(iValue).c_str();
    Fuzz::RequireEqual(lText, Formatted("%g", static_cast<double>(iValue)), "a floating number has another text");
    const Value lRead = Read<Value>(lText);
    // Six digits carry so much; outside the range of normal numbers fewer do.
    const Value lMost = static_cast<Value>(std::fabs(iValue) * static_cast<Value>(6e-6));
    Fuzz::Require(AreSame(lRead, iValue) || !std::isnormal(iValue) || std::isinf(lRead) ||
                      std::fabs(lRead - iValue) <= lMost,
                  "a floating number does not come back");
    Fuzz::RequireEqual(Stringize(lRead).c_str(),
                       std::isinf(lRead) && !std::isinf(iValue) ? Stringize(lRead).c_str() : lText,
                       "a floating number that came back has another text");
}

void CheckValues(std::uint64_t iBits)
{
    const int lInt = static_cast<int>(iBits);
    const short lShort = static_cast<short>(iBits);
    const unsigned int lUnsigned = static_cast<unsigned int>(iBits);
    const unsigned short lUnsignedShort = static_cast<unsigned short>(iBits);
    CheckWhole(lInt, Formatted("%d", lInt));
    CheckWhole(lShort, Formatted("%d", lShort));
    CheckWhole(lUnsigned, Formatted("%u", lUnsigned));
    CheckWhole(lUnsignedShort, Formatted("%u", lUnsignedShort));
    CheckWhole((iBits & 1) != 0, (iBits & 1) != 0 ? L"true" : L"false");
    Fuzz::RequireEqual(QBase::ToDecimalWString(lInt).c_str(), Formatted("%d", lInt), "a number has other digits");
    double lDouble = 0;
    std::memcpy(&lDouble, &iBits, sizeof(lDouble));
    CheckFloating(lDouble);
    float lFloat = 0;
    std::memcpy(&lFloat, &lUnsigned, sizeof(lFloat));
    CheckFloating(lFloat);
}

// Characters beyond ASCII end a number, as this one does.
std::string Narrow(const std::wstring& iText)
{
    std::string lText;
    for (const wchar_t lCharacter : iText)
    {
        lText += lCharacter > 0 && lCharacter < 128 ? static_cast<char>(lCharacter) : '\1';
    }
    return lText;
}

int ReadPlainInt(const std::string& iText)
{
    const long long lValue = std::strtoll(iText.c_str(), nullptr, 10);
    const int lSmallest = Plain::IsBroken("SmallestInt") ? INT_MIN + 1 : INT_MIN;
    return static_cast<int>(std::min<long long>(std::max<long long>(lValue, lSmallest), INT_MAX));
}

void CheckText(const std::wstring& iText)
{
    const std::string lNarrow = Narrow(iText);
    const int lInt = ReadPlainInt(lNarrow);
    const unsigned long lUnsigned = std::strtoul(lNarrow.c_str(), nullptr, 10);
    const double lDouble = std::strtod(lNarrow.c_str(), nullptr);
    Fuzz::Require(QBase::DecimalToInt(iText.c_str()) == lInt, "a text is read as another number");
    Fuzz::Require(Read<int>(iText) == lInt, "a text is read as another int");
    Fuzz::Require(Read<short>(iText) == static_cast<short>(lInt), "a text is read as another short");
    Fuzz::Require(Read<unsigned int>(iText) == static_cast<unsigned int>(lUnsigned),
                  "a text is read as another unsigned");
    Fuzz::Require(Read<unsigned short>(iText) == static_cast<unsigned short>(lUnsigned),
                  "a text is read as another unsigned short");
    Fuzz::Require(Read<bool>(iText) == (lNarrow == "true"), "a text is read as another bool");
    Fuzz::Require(AreSame(Read<double>(iText), lDouble), "a text is read as another double");
    Fuzz::Require(AreSame(Read<float>(iText), static_cast<float>(lDouble)), "a text is read as another float");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    if (lInput.Below(2) == 0)
    {
        CheckValues(lInput.UInt64());
    }
    else
    {
        CheckText(lInput.WideRest());
    }
    return 0;
}
