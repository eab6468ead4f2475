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
#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/NestWalk.h"

#include <string>
#include <string_view>

namespace QTalBase
{

class TextWriter
{
public:
    explicit TextWriter(const BagState& iBag) noexcept : mBag(iBag) {}

    // The delimiters to write with at every level; null stands for each bag's own.
    TextWriter& With(const wchar_t* ipBegin, const wchar_t* ipEnd) noexcept;

    // Leaves out the sensitive plain properties of the bag itself; nests are always written whole.
    TextWriter& WithoutSensitiveInfo() noexcept;

    // Return the text. Throw what PropertyBag::GetString throws.
    QBase::ReturnWString Write(bool iWithMetadata);
    std::wstring WriteToString(bool iWithMetadata);

    // Throws what rendering the bag with its own delimiters would throw, without rendering it.
    static void CheckDelimiters(const BagState& iBag);

private:
    DelimiterPair hPairOf(const BagState& iBag) const noexcept;
    std::size_t hMeasure(bool iWithMetadata);
    std::size_t hMeasureBag(const BagState& iBag) const;
    void hCheck(const BagState& iBag, const BagState* ipParent) const;
    void hWrite(bool iWithMetadata, wchar_t* opTarget);
    wchar_t* hWritePlain(const BagState& iBag, wchar_t* opTarget) const;

    const BagState& mBag;
    const wchar_t* mBegin = nullptr;
    const wchar_t* mEnd = nullptr;
    std::wstring_view mBeginView; // of mBegin and mEnd
    std::wstring_view mEndView;
    bool mWithSensitiveInfo = true;
    NestWalk<const BagState> mWalk;
};

// The value of a name: the plain value, unescaped where the bag's values are, or else the text of the nest with its
// header, or else the empty text. Throws what rendering throws.
QBase::ReturnWString ReadProperty(const BagState& iBag, std::wstring_view iName);

bool IsSensitiveName(std::wstring_view iName);

} // namespace QTalBase

#endif
