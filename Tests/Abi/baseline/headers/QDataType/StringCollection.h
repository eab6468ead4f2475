#ifndef QDATATYPE_STRINGCOLLECTION_H
#define QDATATYPE_STRINGCOLLECTION_H
#include "QBase/Export.h"
namespace QDataType
{
class Q8_EXPORT StringCollection
{
public:
    virtual ~StringCollection();
    virtual void Insert(const wchar_t* ipString) = 0;
    virtual void Insert(const StringCollection& iStrings) = 0;
    virtual unsigned long GetCount() const = 0;
    virtual const wchar_t* GetString(unsigned long iIndex) const = 0;
    virtual void Clear() = 0;
};
Q8_EXPORT StringCollection* CreateStringCollection();
} // namespace QDataType
#endif
