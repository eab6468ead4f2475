#include "TalBase/PrivateSource/TextReader.h"

#include "TalBase/PrivateSource/BagBuilder.h"
#include "TalBase/PrivateSource/BagMerger.h"
#include "TalBase/PrivateSource/TextParser.h"

namespace QTalBase
{

namespace
{

struct SharedPair
{
    SharedWString mBegin;
    SharedWString mEnd;
};

// The pair that a text for a bag is read with, which is checked first. One that equals the bag's own becomes that.
SharedPair CheckedPair(BagState& oBag, const DelimiterPair& iPair)
{
    if (oBag.HasPair(iPair))
    {
        oBag.AcceptPair();
        return {oBag.mBegin, oBag.mEnd};
    }
    CheckValidityOfDelimiters(iPair);
    return {SharedWString(iPair.mBegin), SharedWString(iPair.mEnd)};
}

} // namespace

// What was read becomes the bag's own where that gives what merging gives: the bag has nothing yet, and no name or
// value has to be looked at again. Everything else is merged, entry by entry.
bool AddText(BagState& oBag, std::wstring_view iText)
{
    DelimiterPair lHeaderPair = oBag.GetPair();
    const unsigned int lPosition = ReadHeader(iText, lHeaderPair);
    const SharedPair lPair = CheckedPair(oBag, lHeaderPair);
    BagBuilder lBuilder(lPair.mBegin, lPair.mEnd, iText.data() + iText.size());
    ParseText(ContentOf(iText, lPosition), lHeaderPair, lBuilder);
    const bool lAreNestsFinal = lBuilder.AreNestsFinal();
    if (lAreNestsFinal && oBag.IsEmpty() && oBag.mBegin.IsSame(lPair.mBegin) && oBag.mEnd.IsSame(lPair.mEnd))
    {
        lBuilder.MoveTo(oBag);
        return true;
    }
    const NestPtr lRead = lBuilder.MakeBag();
    std::size_t lEntry = 0;
    MergeRead(oBag, *lRead, lAreNestsFinal, lEntry);
    return lAreNestsFinal;
}

// As if the text were added to an empty bag.
NestPtr ReadNew(std::wstring_view iText, unsigned int iPosition, const DelimiterPair& iPair)
{
    CheckValidityOfDelimiters(iPair);
    const SharedWString lBegin(iPair.mBegin);
    const SharedWString lEnd(iPair.mEnd);
    BagBuilder lBuilder(lBegin, lEnd, iText.data() + iText.size());
    ParseText(ContentOf(iText, iPosition), iPair, lBuilder);
    const bool lAreNestsFinal = lBuilder.AreNestsFinal();
    NestPtr lRead = lBuilder.MakeBag();
    if (lAreNestsFinal)
    {
        return lRead;
    }
    NestPtr lBag = MakeNest({}, lBegin, lEnd, {});
    std::size_t lEntry = 0;
    MergeRead(*lBag, *lRead, false, lEntry);
    return lBag;
}

void MergeRead(BagState& oBag, const BagState& iRead, bool iAreNestsFinal, std::size_t& oEntry)
{
    BagMerger lMerger(oBag, iRead.GetCount());
    for (std::size_t lIndex = 0; lIndex < iRead.mValues.GetCount(); ++lIndex, ++oEntry)
    {
        lMerger.SetPlain(iRead.mValues.GetName(lIndex), iRead.mValues.GetValue(lIndex));
    }
    for (std::size_t lIndex = 0; lIndex < iRead.mNests.GetCount(); ++lIndex, ++oEntry)
    {
        BagState& lNest = iRead.mNests.GetNest(lIndex);
        if (iAreNestsFinal)
        {
            lMerger.SetNest(iRead.mNests.GetName(lIndex), NestPtr(&lNest));
        }
        else
        {
            lMerger.SetWritten(iRead.mNests.GetName(lIndex), lNest);
        }
    }
}

// Not merged: overriders may see that, or names repeat, so the caller does it by calls.
NestPtr ReadApart(BagState& oBag, std::wstring_view iText)
{
    DelimiterPair lHeaderPair = oBag.GetPair();
    const unsigned int lPosition = ReadHeader(iText, lHeaderPair);
    const SharedPair lPair = CheckedPair(oBag, lHeaderPair);
    BagBuilder lBuilder(lPair.mBegin, lPair.mEnd, iText.data() + iText.size());
    ParseText(ContentOf(iText, lPosition), lHeaderPair, lBuilder);
    return lBuilder.MakeBag();
}

NestPtr ReadNest(BagState& oBag, std::wstring_view iName, std::wstring_view iText)
{
    oBag.AcceptPair();
    NestPtr lNest = MakeNest(iName, oBag.mBegin, oBag.mEnd, {});
    AddText(*lNest, iText);
    return lNest;
}

} // namespace QTalBase
