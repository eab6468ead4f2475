#include "MemoryCases.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include <stdexcept>

namespace Bench
{

namespace
{

void Expect(bool iRight)
{
    if (!iRight)
    {
        throw std::runtime_error("the operation had the wrong result");
    }
}

// Streams of the fewest bytes for each element.

MeteredCase DeSerializeStrings(std::size_t iCharacters)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteUInt64(iCharacters);
    for (std::size_t lIndex = 0; lIndex < iCharacters; ++lIndex)
    {
        lStream->WriteWString(L"");
    }
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lStrings(
        QTalBase::CreateSerializableStringCollection());
    return {lStream->GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(lStream->GetBytes().data(), lStream->GetBytes().size());
                 lStrings->DeSerialize(lRead);
             },
             [=] { Expect(lStrings->GetCount() == iCharacters); }}};
}

MeteredCase ReadBags(const std::shared_ptr<QSerialization::MemoryWriteDataStream>& iStream, std::size_t iCount)
{
    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    return {iStream->GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(iStream->GetBytes().data(), iStream->GetBytes().size());
                 lBags->DeSerialize(lRead);
             },
             [=] { Expect(lBags->GetCount() == iCount); }}};
}

MeteredCase DeSerializeNoBags(std::size_t iCharacters)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteUInt32(static_cast<unsigned int>(iCharacters));
    for (std::size_t lIndex = 0; lIndex < iCharacters; ++lIndex)
    {
        lStream->WriteWString(L"");
        lStream->WriteBool(false);
    }
    return ReadBags(lStream, iCharacters);
}

MeteredCase DeSerializeEmptyBags(std::size_t iCharacters)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteUInt32(static_cast<unsigned int>(iCharacters));
    for (std::size_t lIndex = 0; lIndex < iCharacters; ++lIndex)
    {
        lStream->WriteWString(L"");
        lStream->WriteBool(true);
        lStream->WriteWString(L"(");
        lStream->WriteWString(L")");
        lStream->WriteWString(L"");
    }
    return ReadBags(lStream, iCharacters);
}

} // namespace

std::vector<MemoryCase> MakeStreamMemoryCases()
{
    return {{"a collection of empty strings", "DeSerialize", DeSerializeStrings},
            {"a collection of no bags", "DeSerialize", DeSerializeNoBags},
            {"a collection of empty bags", "DeSerialize", DeSerializeEmptyBags}};
}

} // namespace Bench
