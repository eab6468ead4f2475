#ifndef TALBASE_PROPERTYBAGHELPERS_H
#define TALBASE_PROPERTYBAGHELPERS_H
#include "QBase/Guid.h"
#include "QBase/ReturnWString.h"
#include "QDataType/DateTime.h"
#include "TalBase/Export.h"
namespace QTalBase
{
TALBASE_EXPORT QBase::ReturnWString Stringize(int iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(short iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(unsigned int iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(unsigned short iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(bool iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(float iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(double iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(const _GUID& iValue);
TALBASE_EXPORT QBase::ReturnWString Stringize(const QDataType::DateTime& iValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, int& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, short& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, unsigned int& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, unsigned short& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, bool& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, float& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, double& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, _GUID& oValue);
TALBASE_EXPORT void UnStringize(const wchar_t* ipText, QDataType::DateTime& oValue);
} // namespace QTalBase
#endif
