// What the family throws: a message with a domain, an ID and a wide text, and the wrapper in which it is thrown. The
// exception classes of a library derive from Message, so that one handler can receive them all.

#ifndef QBASE_MESSAGE_H
#define QBASE_MESSAGE_H

#include "QBase/Export.h"

#include <memory>
#include <string>

namespace QBase
{

// The domain of the messages that belong to no domain of their own. Read it where it is used: its value is the
// library's, not the client's.
extern Q8_EXPORT const unsigned short MESSAGE_DOMAIN_UNKNOWN;

// A value. Copies share the text, which nobody changes, so that copying a message, as throwing it does, cannot fail. It
// does not derive from std::exception: a handler for that class receives no message. One thread at a time may use an
// object; copies may be used on different threads.
class Q8_EXPORT Message
{
public:
    // The domain MESSAGE_DOMAIN_UNKNOWN, the ID -1 and the empty text.
    Message() noexcept;
    Message(const Message& iOther) noexcept;
    Message& operator=(const Message& iOther) noexcept;
    virtual ~Message();

    // Sets the domain and the ID, whatever they are.
    void SetDomainAndID(unsigned short iDomain, int iID) noexcept;

    // Copies the text up to its terminator; null gives the empty text. The text may be the message's own. Throws
    // std::bad_alloc, and leaves the message unchanged then.
    void SetMessage(const wchar_t* ipText);

    // Returns the text, never null. Valid until this message is assigned to, its text is set or it dies.
    const wchar_t* GetMessage() const noexcept;

    // Return what was set.
    unsigned short GetDomain() const noexcept;
    int GetID() const noexcept;

private:
    unsigned short mDomain;
    int mID;
    std::shared_ptr<const std::wstring> mText; // null for the empty text
};

// What is thrown for an exception class T, which is Message or derives from it and can be built from a const Message&.
// It derives from T alone and adds nothing: a handler may name this class, T, any base of T, or Message. Throwing and
// copying it does what throwing and copying T does.
template <class T>
class Q8_EXPORT ExceptionImpl : public T
{
public:
    // Takes over domain, ID and text.
    explicit ExceptionImpl(const Message& iMessage) : T(iMessage) {}
};

} // namespace QBase

#endif
