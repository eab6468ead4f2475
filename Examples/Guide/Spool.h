// The spool of the guide: all jobs in one file, as the fifth step makes it.

#ifndef GUIDE_SPOOL_H
#define GUIDE_SPOOL_H

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBags.h"

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using BagsPtr = QBase::SmartPtrI<QTalBase::PropertyBags>;

// [spool]
inline void WriteSpool(const std::string& iPath, const QTalBase::PropertyBags& iJobs)
{
    QSerialization::MemoryWriteDataStream lStream;
    iJobs.Serialize(lStream);
    const std::vector<std::byte>& lBytes = lStream.GetBytes();
    std::ofstream lFile(iPath, std::ios::binary);
    lFile.write(reinterpret_cast<const char*>(lBytes.data()), static_cast<std::streamsize>(lBytes.size()));
}

// Returns no jobs where there is no file. Throws what the stream throws for a damaged one.
inline BagsPtr ReadSpool(const std::string& iPath)
{
    std::ifstream lFile(iPath, std::ios::binary);
    const std::vector<char> lBytes{std::istreambuf_iterator<char>(lFile), {}};
    BagsPtr lJobs(QTalBase::CreatePropertyBags());
    if (!lBytes.empty())
    {
        QSerialization::MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
        lJobs->DeSerialize(lStream);
    }
    return lJobs;
}
// [spool]

#endif
