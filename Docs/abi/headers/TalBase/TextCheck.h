#ifndef TALBASE_TEXTCHECK_H
#define TALBASE_TEXTCHECK_H
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>
namespace QTalBase
{
class PropertyBag;
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
enum class TextFaultPart
{
    Delimiters,
    Name,
    Value
};
enum class TextFaultKind
{
    None,
    Empty,
    HoldsZero,
    HoldsDelimiter,
    RunsIntoDelimiter,
    NotEscaped,
    Repeated,
    LikeHeader,
    Refused,
    NotCarried,
    Different
};
struct TextFault
{
    bool IsNone() const noexcept
    {
        return mKind == TextFaultKind::None;
    }
    TextFaultKind mKind = TextFaultKind::None;
    TextFaultPart mPart = TextFaultPart::Delimiters;
    unsigned int mPosition = 0;
    std::vector<QBase::ReturnWString> mPath;
};
TALBASE_EXPORT TextFault FindTextFault(const PropertyBag& iBag, bool iWithMetadata, const wchar_t* ipBegin,
                                       const wchar_t* ipEnd);
class TALBASE_EXPORT PropertyTextCheck
{
public:
    PropertyTextCheck(const wchar_t* ipBegin, const wchar_t* ipEnd);
    ~PropertyTextCheck();
    PropertyTextCheck(const PropertyTextCheck&) = delete;
    PropertyTextCheck& operator=(const PropertyTextCheck&) = delete;
    TextFaultKind CheckName(std::wstring_view iName);
    TextFaultKind CheckStoredValue(std::wstring_view iValue);

private:
    class Pair;
    std::unique_ptr<Pair> mPair;
};
} // namespace QTalBase
#endif
