#include "Commands/SetList.h"

#include "File/Files.h"
#include "Text/Errors.h"
#include "Text/Merge.h"
#include "Text/Place.h"

#include <algorithm>

namespace TalBaseTool
{

ListChanges::ListChanges(const std::string& iFile) : mFile(iFile), mList(ReadList(iFile, ReadText(iFile, "a list")))
{
    RefuseHidden(mFile, mList);
}

void ListChanges::Apply(const BagPtr& iBag, const Gate& iGate) const
{
    const BagPtr lChanges = MakeBag(mFile, mList, {iBag->GetBeginDelimiter(), iBag->GetEndDelimiter()});
    if (const std::optional<Path> lRefused = MergeDeep(iBag, lChanges, OtherKind::Refused))
    {
        hRefuse(iBag, iGate, *lRefused);
    }
}

// The line is the first one with that path, or with one that goes through it.
void ListChanges::hRefuse(const BagPtr& iBag, const Gate& iGate, const Path& iPath) const
{
    const auto lLine = std::find_if(mList.mLines.begin(), mList.mLines.end(), [&iPath](const ListLine& iLine) {
        return iLine.mPath.size() >= iPath.size() && std::equal(iPath.begin(), iPath.end(), iLine.mPath.begin());
    });
    throw TextError(
        ShowPlace(mFile, {lLine->mNumber, 1}) + iGate.ShowPath(iPath) +
        (FindKind(iBag, iPath) == Kind::Bag ? " is a bag; remove it first" : " is a plain value, not a bag"));
}

} // namespace TalBaseTool
