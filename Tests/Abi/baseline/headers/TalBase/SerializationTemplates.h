#ifndef TALBASE_SERIALIZATIONTEMPLATES_H
#define TALBASE_SERIALIZATIONTEMPLATES_H
#include "QBase/SmartPtrI.h"
#include "QSerialization/DataStream.h"
#include "TalBase/PropertyBag.h"
#include <string>
#include <utility>
#include <vector>
namespace QTalBase
{
using NamedPropertyBag = std::pair<std::wstring, QBase::SmartPtrI<const PropertyBag>>;
}
namespace QSerialization
{
inline ReadDataStream& operator>>(ReadDataStream& iStream, QBase::SmartPtrI<const QTalBase::PropertyBag>& oBag)
{
    bool lIsPresent = false;
    iStream.ReadBool(lIsPresent);
    if (!lIsPresent)
    {
        oBag = nullptr;
        return iStream;
    }
    QBase::SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag());
    oBag = lBag;
    lBag->DeSerialize(iStream);
    return iStream;
}
} // namespace QSerialization
namespace QClone
{
template <class Entry>
void Clear(std::vector<Entry>& oEntries)
{
    while (!oEntries.empty())
    {
        oEntries.pop_back();
    }
}
template <class Entry>
void Deep(std::vector<Entry>& oDestination, std::vector<Entry> iSource)
{
    Clear(oDestination);
    for (const Entry& lEntry : iSource)
    {
        oDestination.push_back(lEntry);
    }
}
} // namespace QClone
template <class Entry>
QSerialization::WriteDataStream& operator<<(QSerialization::WriteDataStream& iStream,
                                            const std::vector<Entry>& iEntries)
{
    iStream.WriteUInt32(static_cast<unsigned int>(iEntries.size()));
    for (const Entry& lEntry : iEntries)
    {
        iStream.WriteWString(lEntry.first.c_str());
        iStream.WriteBool(static_cast<bool>(lEntry.second));
        if (lEntry.second)
        {
            lEntry.second->Serialize(iStream);
        }
    }
    return iStream;
}
template <class Entry>
QSerialization::ReadDataStream& operator>>(QSerialization::ReadDataStream& iStream, std::vector<Entry>& oEntries)
{
    using QSerialization::operator>>;
    QClone::Clear(oEntries);
    unsigned int lCount = 0;
    iStream.ReadUInt32(lCount);
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        Entry lEntry;
        const QBase::ReturnWString lName = iStream.ReadWString();
        lEntry.first.assign(lName.c_str(), lName.GetLength());
        iStream >> lEntry.second;
        oEntries.push_back(lEntry);
    }
    return iStream;
}
#endif
