// Copies nests as handing them on as text would leave them, without the text, whose delimiters alone may be longer than
// all that the nests hold.
//
// The text of a nest reads back as the nest itself, less the empty nests in it, where
// - a header can carry the delimiters,
// - the rule for names and values holds (TextRule.h). No name comes twice: nests are read from texts.
// Invariant: a copy is made only where all of this is certain. Otherwise there is none, and the text has to be read.

#ifndef TALBASE_PRIVATESOURCE_NESTCOPIER_H
#define TALBASE_PRIVATESOURCE_NESTCOPIER_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextRule.h"

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
    QBase::SmartPtrI<PropertyBagImpl> CopyWritten(const PropertyBagImpl& iNest);
    QBase::SmartPtrI<PropertyBagImpl> CopyRewritten(const PropertyBagImpl& iNest);

private:
    struct Level
    {
        const PropertyBagImpl* mFrom;
        PropertyBagImpl* mTo;
        std::size_t mNextNest;
    };

    QBase::SmartPtrI<PropertyBagImpl> hCopy(const PropertyBagImpl& iNest, bool iIsWritten);
    QBase::SmartPtrI<PropertyBagImpl> hCopyPlain(const PropertyBagImpl& iBag, bool iIsWritten);
    bool hCopyNextNest(bool iIsWritten);
    void hFinishLevel();

    SharedWString mBegin;
    SharedWString mEnd;
    bool mCanCopy;  // a header can carry the pair
    TextRule mRule; // of the texts above
    std::vector<Level> mLevels;
};

} // namespace QTalBase

#endif
