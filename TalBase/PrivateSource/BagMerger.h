// Sets many properties of one bag that is exactly a PropertyBagImpl and holds no name twice, without looking each name
// up in the whole bag. What each setting checks, removes and appends is what SetProperty would.
//
// Invariant: while the merger lives, replaced entries stay as marked places, which its end closes; so nobody may look
// at the bag meanwhile.

#ifndef TALBASE_PRIVATESOURCE_BAGMERGER_H
#define TALBASE_PRIVATESOURCE_BAGMERGER_H

#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/NestCopier.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextSearch.h"

#include <optional>

namespace QTalBase
{

class BagMerger
{
public:
    // iCount: about how many properties will be set.
    BagMerger(PropertyBagImpl& oBag, std::size_t iCount);
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
    void SetWritten(std::wstring_view iName, const PropertyBagImpl& iNest);
    void SetRewritten(std::wstring_view iName, const PropertyBagImpl& iNest);

    // As SetProperty with the text of a clean nest (see TextReader) that nobody else holds: takes the nest itself and
    // gives it, level by level, the delimiters of the bag.
    void SetNest(std::wstring_view iName, const QBase::SmartPtrI<PropertyBagImpl>& iNest);

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
    void hNumber(std::uint32_t* ipPlace, std::size_t iIndex, bool iIsNest);
    void hConvert(PropertyBagImpl& oNest);
    void hConvertPlain(PropertyBagImpl& oNest);

    PropertyBagImpl& mBag;
    bool mIsDefaultPair;
    bool mHasKilled = false;
    TextSearcher mBegin;
    TextSearcher mEnd;
    std::optional<NestCopier> mCopier;
    std::optional<NameTable> mTable; // of entry numbers: twice the index, plus 1 for a nest
};

} // namespace QTalBase

#endif
