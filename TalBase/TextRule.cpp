#include "TalBase/PrivateSource/TextRule.h"

#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include <algorithm>

namespace QTalBase
{

RunGuard::RunGuard(std::wstring_view iBegin, std::wstring_view iEnd) : mDelimiters{Delimiter(iBegin), Delimiter(iEnd)}
{
    for (Delimiter& lDelimiter : mDelimiters)
    {
        lDelimiter.mSearcher.Prepare();
    }
    for (Delimiter& lDelimiter : mDelimiters)
    {
        hFindWhereItGoesOn(lDelimiter, mDelimiters[0], lDelimiter.mGoesOn[0]);
        hFindWhereItGoesOn(lDelimiter, mDelimiters[1], lDelimiter.mGoesOn[1]);
    }
}

// What is left of the delimiter has to be a beginning of the follower. The automaton of the follower finds the longest
// end of the delimiter that is one; its borders are the others.
void RunGuard::hFindWhereItGoesOn(Delimiter& oDelimiter, Delimiter& oFollower, std::vector<bool>& oGoesOn)
{
    const std::wstring_view lText = oDelimiter.mText;
    oGoesOn.resize(lText.size(), false);
    std::size_t lMatched = 0;
    for (std::size_t lIndex = &oDelimiter == &oFollower ? 1 : 0; lIndex < lText.size(); ++lIndex)
    {
        lMatched = oFollower.mSearcher.Step(lMatched, lText[lIndex]);
    }
    for (; lMatched != 0; lMatched = oFollower.mSearcher.GetBorder(lMatched))
    {
        oGoesOn[lText.size() - lMatched] = true;
    }
}

// A run is kept where no delimiter occurs in it, and none begins in it that the follower completes. Only the last
// characters can begin one, as many as the delimiter has but one.
bool RunGuard::IsKept(std::wstring_view iRun, std::size_t iFollower)
{
    for (Delimiter& lDelimiter : mDelimiters)
    {
        if (lDelimiter.mSearcher.OccursIn(iRun))
        {
            return false;
        }
        std::size_t lMatched = 0;
        for (const wchar_t lCharacter : iRun.substr(iRun.size() - std::min(iRun.size(), lDelimiter.mText.size() - 1)))
        {
            lMatched = lDelimiter.mSearcher.Step(lMatched, lCharacter);
        }
        for (; lMatched != 0; lMatched = lDelimiter.mSearcher.GetBorder(lMatched))
        {
            if (lDelimiter.mGoesOn[iFollower][lMatched])
            {
                return false;
            }
        }
    }
    return true;
}

bool TextRule::IsValueKept(std::wstring_view iValue)
{
    return hIsKept(iValue, gEndFollows) && !(mIsDefault && CountEscapable(iValue) != 0);
}

// Mostly the characters of all entries, which lie together, say that none needs to be looked at.
bool TextRule::IsKept(const ValueContent& iContent)
{
    const bool lHasInitialStarts = mBegin[0] == L'+' && mEnd[0] == L'*'; // which are what is escaped
    const bool lIsUnsuspicious =
        !iContent.MayContain(mBegin[0]) && !iContent.MayContain(mEnd[0]) &&
        (!mIsDefault || lHasInitialStarts || (!iContent.MayContain(L'*') && !iContent.MayContain(L'+')));
    for (std::size_t lIndex = 0; lIndex < iContent.GetCount(); ++lIndex)
    {
        const std::wstring_view lName = iContent.GetName(lIndex);
        if (lName.empty() || (!lIsUnsuspicious && (!IsNameKept(lName) || !IsValueKept(iContent.GetValue(lIndex)))))
        {
            return false;
        }
    }
    return true;
}

TextFaultKind TextRule::CheckName(std::wstring_view iName)
{
    return hCheck(iName, gBeginFollows);
}

TextFaultKind TextRule::CheckValue(std::wstring_view iValue)
{
    const TextFaultKind lKind = hCheck(iValue, gEndFollows);
    return lKind == TextFaultKind::None && !IsValueKept(iValue) ? TextFaultKind::NotEscaped : lKind;
}

// Whether name and delimiter begin with the first word of a header, as far as they go: a name may be shorter than the
// word, and the delimiter complete it.
bool TextRule::MayBeginLikeHeader(std::wstring_view iFirstName) const noexcept
{
    const std::wstring_view lBehind = gHeaderEndWord.substr(std::min(iFirstName.size(), gHeaderEndWord.size()));
    return iFirstName.substr(0, gHeaderEndWord.size()) == gHeaderEndWord.substr(0, iFirstName.size()) &&
           lBehind.substr(0, mBegin.size()) == mBegin.substr(0, lBehind.size());
}

// Mostly no character of the run begins a delimiter, and the guard, which costs tables, is never made.
bool TextRule::hIsKept(std::wstring_view iRun, std::size_t iFollower)
{
    if (!Contains(iRun, mBegin[0]) && !Contains(iRun, mEnd[0]))
    {
        return !iRun.empty();
    }
    if (!mGuard)
    {
        mGuard.emplace(mBegin, mEnd);
    }
    return mGuard->IsKept(iRun, iFollower);
}

TextFaultKind TextRule::hCheck(std::wstring_view iRun, std::size_t iFollower)
{
    if (iRun.empty())
    {
        return TextFaultKind::Empty;
    }
    if (Contains(iRun, L'\0'))
    {
        return TextFaultKind::HoldsZero;
    }
    if (hIsKept(iRun, iFollower))
    {
        return TextFaultKind::None;
    }
    return Contains(iRun, mBegin) || Contains(iRun, mEnd) ? TextFaultKind::HoldsDelimiter
                                                          : TextFaultKind::RunsIntoDelimiter;
}

} // namespace QTalBase
