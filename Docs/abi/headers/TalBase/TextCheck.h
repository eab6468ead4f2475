#ifndef TALBASE_TEXTCHECK_H
#define TALBASE_TEXTCHECK_H
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"
#include <cstddef>
#include <vector>
namespace QTalBase
{
enum class TextRemarkKind
{
    IgnoredTail,
    EmptyValue,
    EmptyBag,
    RepeatedName,
    AmbiguousDelimiter
};
struct TextRemark
{
    TextRemarkKind mKind;
    std::size_t mPosition;
    std::size_t mLength;
};
struct TextCheckResult
{
    bool mIsValid;
    std::size_t mPosition;
    QBase::ReturnWString mMessage;
    std::size_t mContentPosition;
    std::vector<TextRemark> mRemarks;
};
TALBASE_EXPORT TextCheckResult CheckText(const wchar_t* ipText);
TALBASE_EXPORT TextCheckResult CheckText(const wchar_t* ipText, const wchar_t* ipBegin, const wchar_t* ipEnd);
} // namespace QTalBase
#endif
