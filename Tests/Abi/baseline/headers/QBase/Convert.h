#ifndef QBASE_CONVERT_H
#define QBASE_CONVERT_H
#include "QBase/Export.h"
#include "QBase/ReturnWString.h"
#include <string>
#include <string_view>
namespace QBase
{
Q8_EXPORT ReturnWString ToDecimalWString(int iValue);
Q8_EXPORT int DecimalToInt(const wchar_t* ipText);
Q8_EXPORT std::string WideCharToUTF8(const wchar_t* ipText, bool iStrict);
Q8_EXPORT std::wstring UTF8ToWideChar(std::string_view iText, bool iStrict);
} // namespace QBase
#endif
