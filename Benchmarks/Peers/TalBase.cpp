#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Bytes.h"
#include "TalBase/PropertyBag.h"

namespace Bench
{

namespace
{

using QTalBase::PropertyBag;
using BagPtr = QBase::SmartPtrI<PropertyBag>;

void AddBagTotals(const PropertyBag& iBag, Totals& oTotals)
{
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = iBag.GetName(lIndex);
        ++oTotals.mProperties;
        oTotals.mCharacters += lName.GetLength();
        if (iBag.IsEmbedded(lIndex))
        {
            AddBagTotals(*iBag.GetValuePropertyBag(lIndex), oTotals);
        }
        else
        {
            oTotals.mCharacters += iBag.GetProperty(lName.c_str()).GetLength();
        }
    }
}

// Adds a bag of the plain values for every bag of the tree.
void AddFlatBags(const PropertyBag& iBag, std::vector<BagPtr>& oFlatBags)
{
    const BagPtr lFlat(QTalBase::CreatePropertyBag());
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        if (iBag.IsEmbedded(lIndex))
        {
            AddFlatBags(*iBag.GetValuePropertyBag(lIndex), oFlatBags);
        }
        else
        {
            lFlat->SetProperty(iBag.GetName(lIndex).c_str(), iBag.GetValue(lIndex).c_str(), false);
        }
    }
    oFlatBags.push_back(lFlat);
}

struct TalBaseTraits
{
    using Text = std::wstring;
    using Name = std::wstring;
    struct Document
    {
        BagPtr mBag;
        BagPtr mComparable; // where mBag holds escapes, which make a bag unequal to itself: the same, not escaping
        std::vector<BagPtr> mFlatBags;
        std::unique_ptr<QDataType::StringCollection> mNames;
    };

    static constexpr bool gCountsBytes = false;

    static Text MakeText(const Record& iRecord)
    {
        return MakeBagText(iRecord);
    }

    static Name MakeName(const std::wstring& iName)
    {
        return iName;
    }

    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.mBag = QTalBase::CreatePropertyBag(iText.c_str());
    }

    static void Prepare(const Text& iText, Document& oDocument)
    {
        oDocument.mNames.reset(QDataType::CreateStringCollection());
        for (unsigned int lIndex = 0; lIndex < oDocument.mBag->GetCount(); ++lIndex)
        {
            oDocument.mNames->Insert(oDocument.mBag->GetName(lIndex).c_str());
        }
        AddFlatBags(*oDocument.mBag, oDocument.mFlatBags);
        oDocument.mComparable = oDocument.mBag;
        if (iText.find(L"&#4") != Text::npos)
        {
            oDocument.mComparable = QTalBase::CreatePropertyBag(iText.c_str());
            oDocument.mComparable->ChangeDelimiters(L"\uE000", L"\uE001");
        }
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddBagTotals(*iDocument.mBag, oTotals);
    }

    static QBase::ReturnWString Render(const Document& iDocument)
    {
        return iDocument.mBag->GetString(true, nullptr, nullptr, true);
    }

    static Text ToText(QBase::ReturnWString&& iText)
    {
        return {iText.c_str(), iText.GetLength()};
    }

    static std::string ToBytes(const Document& iDocument)
    {
        return QTalBase::PropertyBagToUTF8(*iDocument.mBag);
    }

    static void FromBytes(const std::string& iBytes, Document& oDocument)
    {
        oDocument.mBag = QTalBase::CreatePropertyBagFromUTF8(iBytes);
    }

    static QBase::ReturnWString LookUp(const Document& iDocument, const Name& iName)
    {
        return iDocument.mBag->GetProperty(iName.c_str());
    }

    static void Clone(const Document& iDocument)
    {
        for (const BagPtr& lFlat : iDocument.mFlatBags)
        {
            const BagPtr lClone(lFlat->Clone());
            Keep(lClone);
        }
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy.mBag = iDocument.mBag->FilteredClone(iDocument.mNames.get());
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return *iLeft.mComparable == *iRight.mComparable;
    }

    static void Merge(const Document& iDocument, Document& oTarget)
    {
        oTarget.mBag->AddPropertyBag(iDocument.mBag.get());
    }

    static QSerialization::MemoryWriteDataStream Write(const Document& iDocument)
    {
        QSerialization::MemoryWriteDataStream lStream;
        iDocument.mBag->Serialize(lStream);
        return lStream;
    }

    static void Read(const QSerialization::MemoryWriteDataStream& iWritten, Document& oDocument)
    {
        QSerialization::MemoryReadDataStream lStream(iWritten.GetBytes().data(), iWritten.GetBytes().size());
        oDocument.mBag = QTalBase::CreatePropertyBag();
        oDocument.mBag->DeSerialize(lStream);
    }
};

} // namespace

Library MakeTalBase()
{
    return MakeLibrary<TalBaseTraits>("TalBase");
}

} // namespace Bench
