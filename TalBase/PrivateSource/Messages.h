// Every text that the library throws, once, and the one way to throw it. Callers log and compare these texts, so they
// are part of the interface: spelling, capitals and the operations that some of them borrow stay as they are.

#ifndef TALBASE_PRIVATESOURCE_MESSAGES_H
#define TALBASE_PRIVATESOURCE_MESSAGES_H

#include "QBase/Message.h"
#include "TalBase/PropertyBag.h"

#include <string>
#include <string_view>

namespace QTalBase::Messages
{

#define TALBASE_MESSAGE(iName, iText) inline constexpr const wchar_t iName[] = L"QTalBase::" iText

TALBASE_MESSAGE(gSetTimeBlockHour, L"DeliveryWindowImpl::SetTimeBlock; Time of day may not be greater than 23");
TALBASE_MESSAGE(gWindowMalformed,
                L"DeliveryWindowImpl::DeSerializeFromPropertyBag; PropertyBag Serialization is malformed");

TALBASE_MESSAGE(gGuid, L"Guid::Generate; Cannot create Guid");

// Followed by the whole text.
TALBASE_MESSAGE(gStringMalformed, L"CreatePropertyBag; String must be malformed - lPropertyString: ");

// Followed by the offset.
TALBASE_MESSAGE(gZeroByte, L"CreatePropertyBagFromUTF8; Zero byte at offset ");

TALBASE_MESSAGE(gMetadataNoBegin,
                L"PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. It must contain "
                L"BeginDelimiter");
TALBASE_MESSAGE(gMetadataEmptyEnd, L"PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
                                   L"EndDelimiter cannot be empty");
TALBASE_MESSAGE(gMetadataEmptyBegin, L"PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
                                     L"BeginDelimiter cannot be empty");

TALBASE_MESSAGE(gBeginEmpty, L"PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty");
TALBASE_MESSAGE(gEndEmpty, L"PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty");
TALBASE_MESSAGE(gBeginEqualsEnd, L"PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
TALBASE_MESSAGE(gBeginContainsEnd, L"PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End");
TALBASE_MESSAGE(gEndContainsBegin, L"PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin");

TALBASE_MESSAGE(gNameNull, L"PropertyBagImpl::SetProperty; ipName may not be NULL");
TALBASE_MESSAGE(gNameHasDelimiter, L"PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
TALBASE_MESSAGE(gValueNull, L"PropertyBagImpl::SetProperty; ipValue may not be NULL");

// Followed by the value, gLabelBegin, the begin delimiter, gLabelEnd and the end delimiter.
TALBASE_MESSAGE(gValueHasDelimiter, L"PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: ");
inline constexpr const wchar_t gLabelBegin[] = L", begin delimiter: ";
inline constexpr const wchar_t gLabelEnd[] = L", end delimiter: ";

TALBASE_MESSAGE(gNameUnknown, L"PropertyBagImpl::GetPropertyBag; ipName does not exist");
TALBASE_MESSAGE(gNameNotEmbedded, L"PropertyBagImpl::GetPropertyBag; ipName is not embedded");
TALBASE_MESSAGE(gValueIndex, L"PropertyBagImpl::GetValue; iIndex is out of range"); // IsEmbedded's too
TALBASE_MESSAGE(gNameIndex, L"PropertyBagImpl::GetName; iIndex is out of range");
TALBASE_MESSAGE(gBagIndex, L"PropertyBagImpl::GetPropertyBag; iIndex is out of range");
TALBASE_MESSAGE(gIndexNotEmbedded, L"PropertyBagImpl::GetPropertyBag; Value at iIndex is not Embedded");

TALBASE_MESSAGE(gTokenExpected, L"PropertyBagImpl::GetNextToken; A token was expected"); // PeekNextToken's too
TALBASE_MESSAGE(gStringTokenExpected, L"PropertyBagImpl::ExtractData; A string token was expected");
TALBASE_MESSAGE(gBeginTokenExpected, L"PropertyBagImpl::ExtractData; A Begin token was expected");
TALBASE_MESSAGE(gStringOrBeginTokenExpected, L"PropertyBagImpl::ExtractData; A string or Begin token was expected");
TALBASE_MESSAGE(gEndTokenExpected, L"PropertyBagImpl::ExtractData; A mEnd token was expected");

TALBASE_MESSAGE(gBagsAddNull, L"PropertyBagsImpl::Add; ipPropertyBag cannot be NULL");
TALBASE_MESSAGE(gBagsNameIndex, L"PropertyBagsImpl::GetName; index is out of range");
TALBASE_MESSAGE(gBagsBagIndex, L"PropertyBagsImpl::GetPropertyBag; index is out of range");

#undef TALBASE_MESSAGE

// Throws QBase::ExceptionImpl<C> with the text.
template <class C>
[[noreturn]] void Throw(const wchar_t* ipText)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(QBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    lMessage.SetMessage(ipText);
    throw QBase::ExceptionImpl<C>(lMessage);
}

[[noreturn]] inline void ThrowValueHasDelimiter(std::wstring_view iValue, std::wstring_view iBegin,
                                                std::wstring_view iEnd)
{
    std::wstring lText(gValueHasDelimiter);
    lText.append(iValue).append(gLabelBegin).append(iBegin).append(gLabelEnd).append(iEnd);
    Throw<PropertyBagException>(lText.c_str());
}

} // namespace QTalBase::Messages

#endif
