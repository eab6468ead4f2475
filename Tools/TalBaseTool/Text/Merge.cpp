#include "Text/Merge.h"

#include "Text/BagWalk.h"

#include "QDataType/StringCollection.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace TalBaseTool
{

namespace
{

// Two bags of the same path.
struct MergePair
{
    BagPtr mInto;
    BagPtr mFrom;
    std::size_t mParent; // the pair that holds them
    std::wstring mName;
};

Path PathOf(const std::vector<MergePair>& iPairs, std::size_t iPair, const wchar_t* ipName)
{
    Path lPath{ipName};
    for (; iPair != 0; iPair = iPairs[iPair].mParent)
    {
        lPath.push_back(iPairs[iPair].mName);
    }
    std::reverse(lPath.begin(), lPath.end());
    return lPath;
}

} // namespace

std::optional<Path> MergeDeep(const BagPtr& iInto, const BagPtr& iFrom, OtherKind iOther)
{
    std::vector<MergePair> lPairs{{iInto, iFrom, 0, {}}};
    for (std::size_t lPair = 0; lPair < lPairs.size(); ++lPair)
    {
        const BagPtr lInto = lPairs[lPair].mInto;
        const BagPtr lFrom = lPairs[lPair].mFrom;
        const NameIndex lNames(*lInto);
        const std::unique_ptr<QDataType::StringCollection> lOthers(QDataType::CreateStringCollection());
        for (unsigned int lIndex = 0; lIndex < lFrom->GetCount(); ++lIndex)
        {
            const QBase::ReturnWString lName = lFrom->GetName(lIndex);
            const unsigned int lPlace = lNames.Find(lName.c_str());
            const bool lIsBag = lFrom->IsEmbedded(lIndex);
            const bool lIsThere = lPlace != NameIndex::gNone;
            const bool lIsSameKind = lIsThere && lIsBag == lInto->IsEmbedded(lPlace);
            if (lIsThere && !lIsSameKind && iOther == OtherKind::Refused)
            {
                return PathOf(lPairs, lPair, lName.c_str());
            }
            if (lIsSameKind && lIsBag)
            {
                lPairs.push_back(
                    {lInto->GetValuePropertyBag(lPlace), lFrom->GetValuePropertyBag(lIndex), lPair, lName.c_str()});
            }
            else
            {
                lOthers->Insert(lName.c_str());
            }
        }
        if (lOthers->GetCount() > 0)
        {
            const BagPtr lRest(lFrom->FilteredClone(lOthers.get()));
            lInto->AddPropertyBag(lRest.get());
        }
    }
    return {};
}

} // namespace TalBaseTool
