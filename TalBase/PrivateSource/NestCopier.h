// Copies nests that are handed on as text, as that text would leave them, but without writing it: its delimiters alone
// may be longer than all that is in the nests.
//
// The text of a nest reads back as the nest itself, less the empty nests in it, where
// - a header can carry the delimiters,
// - names and values keep the rule (TextRule.h). No name comes twice: nests are read from texts.
//
// For example: a nest with "a" = "1" has the text "a++++1***" and is copied. One with "a+" = "1" has "a+++++1***", in
// which the first "++++" begins a character early, so that it reads back as "a" = "+1" (then escaped): no copy. An
// empty nest e in it, whose text is "e++++***", is left out, see "Empty nested bags" in Docs/TextFormat.md.
//
// Invariant: a copy is made only where all of this is certain. Otherwise there is none, and the text has to be read.

#ifndef TALBASE_PRIVATESOURCE_NESTCOPIER_H
#define TALBASE_PRIVATESOURCE_NESTCOPIER_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/NestWalk.h"
#include "TalBase/PrivateSource/TextRule.h"

#include <cstddef>
#include <vector>

namespace QTalBase
{

class NestCopier
{
public:
    // For texts that are written and read with a pair, which must be allowed. Copies get the handles iBegin and iEnd.
    NestCopier(const SharedWString& iBegin, const SharedWString& iEnd);

    bool HasPair(const SharedWString& iBegin, const SharedWString& iEnd) const noexcept
    {
        return mBegin.IsSame(iBegin) && mEnd.IsSame(iEnd);
    }

    // Return a new bag, with one reference that the pointer holds, or null where it is not certain what the text would
    // read back as. Throw std::bad_alloc.
    // Written: the text with a header, every bag written with its own delimiters, which must be the pair.
    // Rewritten: the text without a header, every bag written with the pair whatever it has. The nest is not empty.
    NestPtr CopyWritten(const BagState& iNest);
    NestPtr CopyRewritten(const BagState& iNest);

private:
    NestPtr hCopy(const BagState& iNest, bool iIsWritten);
    NestPtr hCopyPlain(const BagState& iBag, bool iIsWritten);
    bool hCopyNest(const BagState& iParent, std::size_t iIndex, bool iIsWritten);
    void hFinishNest(const BagState& iParent, std::size_t iIndex);

    SharedWString mBegin;
    SharedWString mEnd;
    bool mCanCopy;  // a header can carry the pair
    TextRule mRule; // of the texts above
    NestWalk<const BagState> mWalk;
    std::vector<BagState*> mCopies; // of the nests that the walk is in
};

} // namespace QTalBase

#endif
