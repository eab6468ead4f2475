// How the library's collections of named bags travel through a stream, and how they are copied. The forms carry no
// header, version or length of their own: a reader must read exactly what was written, in the same order.
//
// What a stream or a bag throws passes through everything here unchanged. Nothing here locks or keeps state:
// a stream and a collection belong to one thread at a time, different ones need no care.

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

// An entry of a collection: a name and a shared bag that nobody changes through the collection.
using NamedPropertyBag = std::pair<std::wstring, QBase::SmartPtrI<const PropertyBag>>;

} // namespace QTalBase

namespace QSerialization
{

// Reads a flag and, where it is true, a new bag, which oBag then holds instead of what it held; otherwise leaves oBag
// null. A bag that fails while it is read stays held as far as it was read. Returns the stream.
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

// Removes all entries, from the last to the first, so that bags die in the reverse order of their filing.
template <class Entry>
void Clear(std::vector<Entry>& oEntries)
{
    while (!oEntries.empty())
    {
        oEntries.pop_back();
    }
}

// Replaces the content of oDestination by copies of the entries of iSource, in order; the bags themselves are shared.
// iSource is taken by value, so it may be the destination. After a failure the entries copied so far stay.
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

// Writes a 32-bit count (the size cut to 32 bits) and then, for each entry in order, its name, a flag that says whether
// its bag is present, and the bag. Returns the stream.
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

// Empties oEntries from the last to the first, then reads what the writer wrote. The count is believed but nothing is
// reserved for it, so a false one fails at the first read that finds nothing. After a failure the entries read so far
// stay. Returns the stream.
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
