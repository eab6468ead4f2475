#include "QBase/Message.h"

namespace QBase
{

extern const unsigned short MESSAGE_DOMAIN_UNKNOWN = 0xFFFF;

Message::Message() : mDomain(MESSAGE_DOMAIN_UNKNOWN), mID(-1)
{
}

Message::Message(const Message& iOther) noexcept = default;

Message& Message::operator=(const Message& iOther) noexcept = default;

Message::~Message() = default;

void Message::SetDomainAndID(unsigned short iDomain, int iID)
{
    mDomain = iDomain;
    mID = iID;
}

void Message::SetMessage(const wchar_t* ipText)
{
    mText = ipText != nullptr ? std::make_shared<const std::wstring>(ipText) : nullptr;
}

const wchar_t* Message::GetMessage() const
{
    return mText ? mText->c_str() : L"";
}

unsigned short Message::GetDomain() const
{
    return mDomain;
}

int Message::GetID() const
{
    return mID;
}

} // namespace QBase
