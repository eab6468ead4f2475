#include "TalBase/PrivateSource/TextCutters.h"

namespace QTalBase
{

Found LongCutter::hFound(Found iFound, std::size_t iStop, std::size_t iLength) noexcept
{
    mRun = mText.substr(0, iStop - iLength);
    mText.remove_prefix(iStop);
    return iFound;
}

Found LongCutter::Next()
{
    // A delimiter longer than what is left cannot occur; its table would cost more than the text justifies.
    const bool lMayBegin = mBegin.size() <= mText.size();
    const bool lMayEnd = mEnd.size() <= mText.size();
    if (lMayBegin)
    {
        mBeginSearcher.Prepare();
    }
    if (lMayEnd)
    {
        mEndSearcher.Prepare();
    }
    std::size_t lBeginMatched = 0;
    std::size_t lEndMatched = 0;
    for (std::size_t lIndex = 0; lIndex < mText.size(); ++lIndex)
    {
        if (lMayBegin && (lBeginMatched = mBeginSearcher.Step(lBeginMatched, mText[lIndex])) == mBegin.size())
        {
            return hFound(Found::Begin, lIndex + 1, mBegin.size());
        }
        if (lMayEnd && (lEndMatched = mEndSearcher.Step(lEndMatched, mText[lIndex])) == mEnd.size())
        {
            return hFound(Found::End, lIndex + 1, mEnd.size());
        }
    }
    return Found::Nothing;
}

} // namespace QTalBase
