// Copies nests as handing them on as text would leave them, without the text, whose delimiters alone may be longer than
// all that the nests hold.
//
// The text of a nest reads back as the nest itself, less the empty nests in it, where
// - a header can carry the delimiters,
// - every run of text ends where the delimiter behind it begins: none begins earlier, in the run or across its end,
// - no value would be escaped, and no name is empty. None comes twice: nests are read from texts.
// Invariant: a copy is made only where all of this is certain. Otherwise there is none, and the text has to be read.

#ifndef TALBASE_PRIVATESOURCE_NESTCOPIER_H
#define TALBASE_PRIVATESOURCE_NESTCOPIER_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextSearch.h"

#include <optional>
#include <string_view>
#include <vector>

namespace QTalBase
{

// Whether runs of text end where their delimiters begin, in time linear in the runs. Holds views of the delimiters, of
// which neither may occur in the other.
class RunGuard
{
public:
    // Throws std::bad_alloc.
    RunGuard(std::wstring_view iBegin, std::wstring_view iEnd);

    // Whether no delimiter begins inside a run that is followed by the begin delimiter (0) or the end delimiter (1).
    bool IsKept(std::wstring_view iRun, std::size_t iFollower);

private:
    struct Delimiter
    {
        explicit Delimiter(std::wstring_view iText) : mText(iText), mSearcher(iText) {}

        std::wstring_view mText;
        TextSearcher mSearcher;
        // For each follower and length: whether a run that ends with so much of this delimiter lets it go on in the
        // follower.
        std::vector<bool> mGoesOn[2];
    };

    static void hFindWhereItGoesOn(Delimiter& oDelimiter, Delimiter& oFollower, std::vector<bool>& oGoesOn);

    Delimiter mDelimiters[2];
};

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

    static bool hMayBeginLikeHeader(const PropertyBagImpl& iNest);
    QBase::SmartPtrI<PropertyBagImpl> hCopy(const PropertyBagImpl& iNest, bool iIsWritten);
    QBase::SmartPtrI<PropertyBagImpl> hCopyPlain(const PropertyBagImpl& iBag, bool iIsWritten);
    bool hCopyNextNest(bool iIsWritten);
    void hFinishLevel();
    bool hIsKept(const ValueContent& iContent);
    bool hIsKept(std::wstring_view iRun, std::size_t iFollower);

    SharedWString mBegin;
    SharedWString mEnd;
    bool mIsDefaultPair;
    bool mCanCopy; // a header can carry the pair
    std::optional<RunGuard> mGuard;
    std::vector<Level> mLevels;
};

} // namespace QTalBase

#endif
