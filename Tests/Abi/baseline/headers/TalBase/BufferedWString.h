#ifndef TALBASE_BUFFEREDWSTRING_H
#define TALBASE_BUFFEREDWSTRING_H
#include "QBase/ReferenceCounted.h"
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"
#include <cstddef>
#include <string>
namespace QTalBase
{
class TALBASE_EXPORT BufferedWString : public virtual QBase::ReferenceCounted
{
public:
    ~BufferedWString() override;
    virtual void operator+=(const wchar_t* ipText) = 0;
    virtual void operator+=(const std::wstring& iText) = 0;
    virtual void operator+=(const QBase::ReturnWString& iText) = 0;
    virtual const wchar_t* c_str() const = 0;
    virtual std::size_t size() const = 0;
    virtual std::size_t capacity() const = 0;
};
TALBASE_EXPORT BufferedWString* CreateBufferedWString();
TALBASE_EXPORT BufferedWString* CreateBufferedWString(std::size_t iInitialSize, std::size_t iIncrement);
} // namespace QTalBase
#endif
