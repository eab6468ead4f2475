// Renders a bag and all its nests as text, without recursion and into memory that is sized once.
//
//   text   = [ "EndDelimiter" E "BeginDelimiter" B E ] bag
//   bag    = { name B value E } { name B bag E }            plain properties first, then the nests
//
// Invariant: measuring and writing walk the nests in the same order, and every pair of delimiters has been checked, in
// that order, before anything is written.

#ifndef TALBASE_PRIVATESOURCE_TEXTWRITER_H
#define TALBASE_PRIVATESOURCE_TEXTWRITER_H

#include "QBase/ReturnWString.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include <string>
#include <vector>

namespace QTalBase
{

class TextWriter
{
public:
    explicit TextWriter(const PropertyBagImpl& iBag) noexcept : mBag(iBag) {}

    // The delimiters to write with at every level; null stands for each bag's own.
    TextWriter& With(const wchar_t* ipBegin, const wchar_t* ipEnd) noexcept;

    // Leaves out the sensitive plain properties of the bag itself; nests are always written whole.
    TextWriter& WithoutSensitiveInfo() noexcept;

    // Return the text. Throw what PropertyBag::GetString throws.
    QBase::ReturnWString Write(bool iWithMetadata);
    std::wstring WriteToString(bool iWithMetadata);

    // Throws what rendering the bag with its own delimiters would throw, without rendering it.
    static void CheckDelimiters(const PropertyBagImpl& iBag);

private:
    struct Level
    {
        const PropertyBagImpl* mBag;
        std::size_t mNextNest;
    };

    DelimiterPair hPairOf(const PropertyBagImpl& iBag) const noexcept;
    std::size_t hMeasure(bool iWithMetadata);
    std::size_t hMeasureBag(const PropertyBagImpl& iBag) const;
    void hCheck(const PropertyBagImpl& iBag, const PropertyBagImpl* ipParent) const;
    void hWrite(bool iWithMetadata, wchar_t* opTarget);
    wchar_t* hWritePlain(const PropertyBagImpl& iBag, wchar_t* opTarget) const;

    const PropertyBagImpl& mBag;
    const wchar_t* mBegin = nullptr;
    const wchar_t* mEnd = nullptr;
    std::wstring_view mBeginView; // of mBegin and mEnd
    std::wstring_view mEndView;
    bool mWithSensitiveInfo = true;
    std::vector<Level> mLevels;
};

} // namespace QTalBase

#endif
