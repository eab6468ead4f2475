// Wide texts to UTF-8 and back, strict and not, against the plain implementation.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Convert.h"
#include "QBase/Message.h"
#include "Tests/Support/PlainUtf8.h"

#include <typeinfo>

namespace
{

// The text of the exception that the operation throws, empty where it throws none.
template <class Operation>
std::wstring ThrownBy(const Operation& iOperation)
{
    try
    {
        iOperation();
    }
    catch (const QBase::Message& lMessage)
    {
        Fuzz::Require(typeid(lMessage) == typeid(QBase::ExceptionImpl<QBase::Message>),
                      "an exception of another class");
        return lMessage.GetMessage();
    }
    return L"";
}

void CheckWide(const std::wstring& iText)
{
    const auto lExpected = Plain::EncodeUtf8(iText);
    Fuzz::RequireEqual(QBase::WideCharToUTF8(iText.c_str(), false), lExpected.mText, "a text has other UTF-8");
    std::string lStrict = lExpected.mText;
    const std::wstring lThrown = ThrownBy([&] { lStrict = QBase::WideCharToUTF8(iText.c_str(), true); });
    Fuzz::RequireEqual(lThrown,
                       lExpected.mFirstBad == std::string::npos
                           ? L""
                           : L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index " +
                                 std::to_wstring(lExpected.mFirstBad),
                       "a text is refused wrongly");
    Fuzz::RequireEqual(lStrict, lExpected.mText, "a text has other strict UTF-8");
    Fuzz::RequireEqual(QBase::UTF8ToWideChar(lExpected.mText, true), Plain::DecodeUtf8(lExpected.mText).mText,
                       "a text does not come back from UTF-8");
    if (lThrown.empty())
    {
        Fuzz::RequireEqual(QBase::UTF8ToWideChar(lStrict, true), iText, "a text comes back as another one");
    }
}

void CheckBytes(const std::string& iBytes)
{
    const auto lExpected = Plain::DecodeUtf8(iBytes);
    Fuzz::Require(QBase::UTF8ToWideChar(iBytes, false) == lExpected.mText, "bytes are read as another text");
    std::wstring lStrict = lExpected.mText;
    const std::wstring lThrown = ThrownBy([&] { lStrict = QBase::UTF8ToWideChar(iBytes, true); });
    Fuzz::RequireEqual(lThrown,
                       lExpected.mFirstBad == std::string::npos
                           ? L""
                           : L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " +
                                 std::to_wstring(lExpected.mFirstBad),
                       "bytes are refused wrongly");
    Fuzz::Require(lStrict == lExpected.mText, "bytes are read strictly as another text");
    if (lThrown.empty() && iBytes.find('\0') == std::string::npos)
    {
        Fuzz::RequireEqual(QBase::WideCharToUTF8(lStrict.c_str(), true), iBytes, "well-formed bytes do not come back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    if (lInput.Below(2) == 0)
    {
        CheckWide(lInput.WideRest());
    }
    else
    {
        CheckBytes(lInput.Rest());
    }
    return 0;
}
