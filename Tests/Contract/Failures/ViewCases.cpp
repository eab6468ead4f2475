// What stands on the operations of bags: values by type and by path, loops, output, and the check of a text. All but
// the last is compiled into its callers, so no table of a library names it.

#include "Tests/Contract/Failures/Subjects.h"

#include "QDataType/DateTime.h"
#include "TalBase/TextCheck.h"
#include "TalBase/Views.h"

#include <ostream>
#include <streambuf>

namespace Failures
{

namespace
{

// Counts what is written and keeps nothing, so that all that fails is the library's: a stream would keep a failure of
// its own buffer from its caller.
class CountingBuffer : public std::streambuf
{
public:
    long GetCount() const
    {
        return mCount;
    }

protected:
    int_type overflow(int_type iCharacter) override
    {
        ++mCount;
        return traits_type::not_eof(iCharacter);
    }

    std::streamsize xsputn(const char*, std::streamsize iCount) override
    {
        mCount += iCount;
        return iCount;
    }

private:
    long mCount = 0;
};

template <class Object>
long CountOutput(const Object& iObject)
{
    CountingBuffer lBuffer;
    std::ostream lStream(&lBuffer);
    lStream << iObject;
    return lBuffer.GetCount();
}

void AddValues(Cases& oCases)
{
    const char* const lGet = "QTalBase::Get<T>(const PropertyBag&, const wchar_t*, T)";
    oCases.push_back(OnBag(lGet, "text", Filled, [](BagSubject& oSubject) {
        oSubject.mText = QTalBase::Get<std::wstring>(*oSubject.mBag, LONG_A);
    }));
    oCases.push_back(OnBag(lGet, "a date", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = QTalBase::Get<QDataType::DateTime>(*oSubject.mBag, LONG_A) == QDataType::DateTime() ? 1 : 0;
    }));
    const char* const lSet = "QTalBase::Set(PropertyBag&, const wchar_t*, const T&)";
    oCases.push_back(OnBag(lSet, "text", Filled, [](BagSubject& oSubject) {
        QTalBase::Set(*oSubject.mBag, LONG_A, std::wstring_view(LONG_V));
    }));
    oCases.push_back(
        OnBag(lSet, "a number", Filled, [](BagSubject& oSubject) { QTalBase::Set(*oSubject.mBag, LONG_C, -1000000); }));
}

void AddPaths(Cases& oCases)
{
    const char* const lBagAt = "QTalBase::GetBagAt(const PropertyBag&, const wchar_t*)";
    const char* const lValueAt = "QTalBase::GetValueAt(const PropertyBag&, const wchar_t*)";
    oCases.push_back(OnBag(lBagAt, "found", Filled, [](BagSubject& oSubject) {
        oSubject.mAnswer = QTalBase::GetBagAt(*oSubject.mBag, L"n/m");
    }));
    oCases.push_back(OnBag(lBagAt, "unknown", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = QTalBase::GetBagAt(*oSubject.mBag, L"n/x"); });
    }));
    oCases.push_back(OnBag(lValueAt, "found", Filled, [](BagSubject& oSubject) {
        oSubject.mText = QTalBase::GetValueAt(*oSubject.mBag, L"n/m/l");
    }));
    oCases.push_back(OnBag(lValueAt, "unknown", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mText = QTalBase::GetValueAt(*oSubject.mBag, L"n/m/x"); });
    }));
    oCases.push_back(OnBag("QTalBase::AsPathStep(std::wstring_view)", "", Filled,
                           [](BagSubject& oSubject) { oSubject.mText = QTalBase::AsPathStep(LONG_A L"/" LONG_B); }));
}

void AddLoops(Cases& oCases)
{
    oCases.push_back(OnBag("QTalBase::begin(PropertyBag&)", "a whole loop", Filled, [](BagSubject& oSubject) {
        long lLength = 0;
        for (const QTalBase::Property& lProperty : *oSubject.mBag)
        {
            lLength += static_cast<long>(lProperty.GetName().GetLength());
        }
        oSubject.mNumber = lLength;
    }));
    oCases.push_back(OnBag("operator<<(std::ostream&, const PropertyBag&)", "", Many,
                           [](BagSubject& oSubject) { oSubject.mNumber = CountOutput(*oSubject.mBag); }));
}

// Everything of a result but its message, remarks in their order; made without memory.
long NumberOf(const QTalBase::TextCheckResult& iResult)
{
    unsigned long lNumber = iResult.mIsValid ? 1 : 0;
    const auto lAdd = [&](std::size_t iPart) { lNumber = lNumber * 1000003 + iPart; };
    lAdd(iResult.mPosition);
    lAdd(iResult.mContentPosition);
    for (const QTalBase::TextRemark& lRemark : iResult.mRemarks)
    {
        lAdd(static_cast<std::size_t>(lRemark.mKind) + 1); // no remark is another than one of the first kind
        lAdd(lRemark.mPosition);
        lAdd(lRemark.mLength);
    }
    return static_cast<long>(lNumber >> 1);
}

void AddTextChecks(Cases& oCases)
{
    const char* const lCheck = "QTalBase::CheckText(wchar_t const*)";
    const char* const lCheckWithPair = "QTalBase::CheckText(wchar_t const*, wchar_t const*, wchar_t const*)";
    const auto lChecked = [](const std::wstring& iText, bool iWithPair) {
        return [=](BagSubject& oSubject) {
            QTalBase::TextCheckResult lResult =
                iWithPair ? QTalBase::CheckText(iText.c_str(), L"++++", L"***") : QTalBase::CheckText(iText.c_str());
            oSubject.mText = std::move(lResult.mMessage);
            oSubject.mNumber = NumberOf(lResult);
        };
    };
    const std::wstring lHeader = Support::gHeader;
    // Sorting the remarks takes longer without a buffer.
    for (const std::wstring& lText :
         {Support::FullText(*Filled()), Support::FullText(*Many()),
          lHeader + L"a++++***a++++1***a++++2***b++++c++++******tail", lHeader + L"a++++b",
          std::wstring(L"a text without a header"), lHeader + L"***", std::wstring(L"EndDelimiter***Begin")})
    {
        oCases.push_back(OnBag(lCheck, "", Nothing, lChecked(lText, false)).MayDoWithout());
        oCases.push_back(OnBag(lCheckWithPair, "", Nothing, lChecked(lText, true)).MayNotAllocate().MayDoWithout());
    }
}

} // namespace

Cases MakeViewCases()
{
    Cases lCases;
    AddValues(lCases);
    AddPaths(lCases);
    AddLoops(lCases);
    AddTextChecks(lCases);
    return lCases;
}

} // namespace Failures
