#include "TalBase/PropertyBagHelpers.h"

#include "QBase/Convert.h"

#include <cwchar>
#include <string>

namespace QTalBase
{

namespace
{

const std::size_t gBufferLength = 100; // no number in these formats is that long

template <class Value>
QBase::ReturnWString Format(const wchar_t* ipFormat, Value iValue)
{
    wchar_t lBuffer[gBufferLength];
    std::swprintf(lBuffer, gBufferLength, ipFormat, iValue);
    return lBuffer;
}

// As the C library reads numbers: blanks before are skipped, what follows the digits is ignored, and no digits are 0.
// A minus sign wraps around.
unsigned long ParseUnsigned(const wchar_t* ipText)
{
    wchar_t* lEnd = nullptr;
    return std::wcstoul(ipText, &lEnd, 10);
}

double ParseDouble(const wchar_t* ipText)
{
    wchar_t* lEnd = nullptr;
    return std::wcstod(ipText, &lEnd);
}

} // namespace

QBase::ReturnWString Stringize(int iValue)
{
    return QBase::ToDecimalWString(iValue);
}

QBase::ReturnWString Stringize(short iValue)
{
    return QBase::ToDecimalWString(iValue);
}

QBase::ReturnWString Stringize(unsigned int iValue)
{
    return Format(L"%u", iValue);
}

QBase::ReturnWString Stringize(unsigned short iValue)
{
    return Format(L"%u", static_cast<unsigned int>(iValue));
}

QBase::ReturnWString Stringize(bool iValue)
{
    return iValue ? L"true" : L"false";
}

QBase::ReturnWString Stringize(float iValue)
{
    return Format(L"%0g", static_cast<double>(iValue));
}

QBase::ReturnWString Stringize(double iValue)
{
    return Format(L"%0g", iValue);
}

QBase::ReturnWString Stringize(const _GUID& iValue)
{
    return QBase::Guid2String(iValue);
}

QBase::ReturnWString Stringize(const QDataType::DateTime& iValue)
{
    return iValue.ToWString();
}

void UnStringize(const wchar_t* ipText, int& oValue)
{
    oValue = QBase::DecimalToInt(ipText);
}

// Values beyond the range wrap around, as those of the unsigned types do.
void UnStringize(const wchar_t* ipText, short& oValue)
{
    oValue = static_cast<short>(QBase::DecimalToInt(ipText));
}

void UnStringize(const wchar_t* ipText, unsigned int& oValue)
{
    oValue = static_cast<unsigned int>(ParseUnsigned(ipText));
}

void UnStringize(const wchar_t* ipText, unsigned short& oValue)
{
    oValue = static_cast<unsigned short>(ParseUnsigned(ipText));
}

// Everything else is false, "TRUE" and "1" included.
void UnStringize(const wchar_t* ipText, bool& oValue)
{
    oValue = std::wcscmp(ipText, L"true") == 0;
}

void UnStringize(const wchar_t* ipText, float& oValue)
{
    oValue = static_cast<float>(ParseDouble(ipText));
}

void UnStringize(const wchar_t* ipText, double& oValue)
{
    oValue = ParseDouble(ipText);
}

void UnStringize(const wchar_t* ipText, _GUID& oValue)
{
    QBase::String2Guid(oValue, ipText);
}

void UnStringize(const wchar_t* ipText, QDataType::DateTime& oValue)
{
    const std::string lText = QBase::WideCharToUTF8(ipText, false);
    oValue.FromString(lText);
}

} // namespace QTalBase
