// Sets many properties of one bag whose names occur once, and whose class overrides nothing, without looking each name
// up in the whole bag. What each setting checks, removes and appends is what SetProperty would.
//
// Setting a name removes what bore it, of either kind, and appends: of "a b c" and the nests "n m", setting b and then
// a nest a leaves the plain properties "c b" and the nests "n m a". One by one each removal would move what stands
// behind it; the merger only kills the entries, a b c -> (a) (b) c b, and a table of names says where each name stands.
// A nest is set through its text; see "What does not survive the text form" in Docs/TextFormat.md.
//
// Invariant: while the merger lives, replaced entries stay, killed, until its end drops them; so nobody may look
// at the bag meanwhile.

#ifndef TALBASE_PRIVATESOURCE_BAGMERGER_H
#define TALBASE_PRIVATESOURCE_BAGMERGER_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/NestCopier.h"
#include "TalBase/PrivateSource/NestWalk.h"
#include "TalBase/PrivateSource/TextSearch.h"

#include <optional>

namespace QDataType
{
class StringCollection;
}

namespace QTalBase
{

class BagMerger
{
public:
    // iCount: about how many properties will be set.
    BagMerger(BagState& oBag, std::size_t iCount);
    ~BagMerger();

    BagMerger(const BagMerger&) = delete;
    BagMerger& operator=(const BagMerger&) = delete;

    // As SetProperty with a plain value that is not empty, or with a text form; the empty text only removes.
    void SetPlain(std::wstring_view iName, std::wstring_view iValue);
    void SetText(std::wstring_view iName, std::wstring_view iText);

    // As SetProperty with any plain value, when the defaults may have changed since the last setting.
    void SetAnswer(std::wstring_view iName, std::wstring_view iValue);

    // As SetText with the text of a nest, with header and each bag's own delimiters; or without header, with the
    // delimiters of the bag.
    void SetWritten(std::wstring_view iName, const BagState& iNest);
    void SetRewritten(std::wstring_view iName, const BagState& iNest);

    // As SetProperty with the text of a final nest (see BagBuilder) that nobody else holds: takes the nest itself and
    // gives it, level by level, the delimiters of the bag.
    void SetNest(std::wstring_view iName, NestPtr&& iNest);

    // Sets all properties of another bag, which may have this one among its nests, at any depth.
    static void SetAll(BagState& oBag, const BagState& iOther);

    // Sets the properties of another bag that a filter names, in its order. Asking the filter may change nothing.
    static void SetNamed(BagState& oBag, const BagState& iOther, const QDataType::StringCollection& iFilter);

    // Merges the bag's own properties into itself: each property in turn goes to the end, and the one that moves up to
    // its position is not visited.
    void SetAllOfItself();

private:
    NestCopier& hCopierFor(const SharedWString& iBegin, const SharedWString& iEnd);
    void hCheckName(std::wstring_view iName);
    std::wstring_view hStoredValue(std::wstring_view iValue, std::wstring& oEscaped);
    std::uint32_t* hRemove(std::wstring_view iName);
    bool hHasName(std::uint32_t iNumber, std::wstring_view iName) const;
    void hKill(std::uint32_t iNumber);
    void hNumber(std::uint32_t* opNumber, std::size_t iIndex, bool iIsNest);
    void hConvert(BagState& oNest);
    void hConvertPlain(BagState& oNest);

    BagState& mBag;
    bool mIsDefaultPair;
    bool mHasKilled = false;
    TextSearcher mBegin;
    TextSearcher mEnd;
    std::optional<NestCopier> mCopier;
    std::optional<NameTable> mTable; // of entry numbers: twice the index, plus 1 for a nest
};

} // namespace QTalBase

#endif
