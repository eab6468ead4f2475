#include "QBase/Message.h"

namespace QBase
{

extern const unsigned short MESSAGE_DOMAIN_UNKNOWN = 0xFFFF;

Message::Message() noexcept : mDomain(MESSAGE_DOMAIN_UNKNOWN), mID(-1) {}

Message::Message(const Message& iOther) noexcept = default;

Message& Message::operator=(const Message& iOther) noexcept = default;

Message::~Message() = default;

void Message::SetDomainAndID(unsigned short iDomain, int iID) noexcept
{
    mDomain = iDomain;
    mID = iID;
}

void Message::SetMessage(const wchar_t* ipText)
{
    // Not make_shared: it brings in a unique symbol, after which the library cannot be unloaded any more.
    mText.reset(ipText != nullptr ? new std::wstring(ipText) : nullptr);
}

const wchar_t* Message::GetMessage() const noexcept
{
    return mText ? mText->c_str() : L"";
}

unsigned short Message::GetDomain() const noexcept
{
    return mDomain;
}

int Message::GetID() const noexcept
{
    return mID;
}

} // namespace QBase
