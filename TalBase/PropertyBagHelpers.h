// Plain values to the wide text that a property holds, and back. No state; any thread may call at any time.
//
// The numbers are formatted and parsed by the C functions named below and do exactly what these do: white space before
// a number is skipped, whatever follows it is ignored, and the current C locale's decimal point is written and expected
// for float and double. A program that calls setlocale and hands texts to another should know that.
//
// Stringize throws only std::bad_alloc. UnStringize reports no bad text: what cannot be read gives 0, false, or leaves
// the target as it was, as told for each type. No text may be null.

#ifndef TALBASE_PROPERTYBAGHELPERS_H
#define TALBASE_PROPERTYBAGHELPERS_H

#include "QBase/Guid.h"
#include "QBase/ReturnWString.h"
#include "QDataType/DateTime.h"
#include "TalBase/Export.h"

namespace QTalBase
{

// Decimal digits with a minus sign for negative values (QBase::ToDecimalWString).
TALBASE_EXPORT QBase::ReturnWString Stringize(int iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(short iValue);

// Decimal digits (swprintf "%u").
TALBASE_EXPORT QBase::ReturnWString Stringize(unsigned int iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(unsigned short iValue);

// "true" or "false".
TALBASE_EXPORT QBase::ReturnWString Stringize(bool iValue);

// Six significant digits (swprintf "%0g"): 0.1, 1e+06, inf, nan.
TALBASE_EXPORT QBase::ReturnWString Stringize(float iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(double iValue);

// The text of QBase::Guid2String and of QDataType::DateTime::ToWString.
TALBASE_EXPORT QBase::ReturnWString Stringize(const _GUID& iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(const QDataType::DateTime& iValue);

// QBase::DecimalToInt: no digits give 0, out of range the nearest int. A short takes its low 16 bits.
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, int& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, short& oValue);

// wcstoul with base 10, cut to the low 32 or 16 bits: no digits give 0, "-1" the largest value.
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, unsigned int& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, unsigned short& oValue);

// True for exactly "true", else false.
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, bool& oValue);

// wcstod: no number gives 0. A float is the double narrowed; beyond its range it becomes infinite.
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, float& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, double& oValue);

// QBase::String2Guid and QDataType::DateTime::FromString: any other text leaves the target unchanged.
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, _GUID& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, QDataType::DateTime& oValue);

} // namespace QTalBase

#endif
