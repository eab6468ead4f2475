// What CheckText says beside what reading throws, in one form for both.

#ifndef TESTS_SUPPORT_TEXTCHECKS_H
#define TESTS_SUPPORT_TEXTCHECKS_H

#include "TalBase/PropertyBag.h"
#include "TalBase/TextCheck.h"

#include <stdexcept>
#include <string>

namespace Support
{

// "read", or "refused: " and the text of the exception that reading throws.
template <class Read>
std::wstring DescribeReading(const Read& iRead)
{
    try
    {
        iRead();
        return L"read";
    }
    catch (const QTalBase::PropertyBagException& lException)
    {
        return std::wstring(L"refused: ") + lException.GetMessage();
    }
    catch (const std::out_of_range& lException)
    {
        const std::string lWhat = lException.what();
        return L"refused: " + std::wstring(lWhat.begin(), lWhat.end());
    }
}

inline std::wstring DescribeCheck(const QTalBase::TextCheckResult& iResult)
{
    return iResult.mIsValid ? L"read" : std::wstring(L"refused: ") + iResult.mMessage.c_str();
}

// Whether all places that a check names lie inside the text, those of the remarks in order.
inline bool IsInside(const QTalBase::TextCheckResult& iResult, const std::wstring& iText)
{
    bool lIsInside = iResult.mPosition <= iText.size() && (!iResult.mIsValid || iResult.mPosition == 0) &&
                     iResult.mContentPosition <= iText.size();
    std::size_t lLast = 0;
    for (const QTalBase::TextRemark& lRemark : iResult.mRemarks)
    {
        lIsInside = lIsInside && lRemark.mLength > 0 && lRemark.mPosition >= lLast &&
                    lRemark.mPosition <= iText.size() && lRemark.mLength <= iText.size() - lRemark.mPosition;
        lLast = lRemark.mPosition;
    }
    return lIsInside;
}

} // namespace Support

#endif
