// What the family throws: a message with a domain, an ID and a wide text, and the wrapper in which it is thrown.

#ifndef QBASE_MESSAGE_H
#define QBASE_MESSAGE_H

#include "QBase/Export.h"

#include <memory>
#include <string>

namespace QBase
{

// The domain of messages that belong to no domain of their own.
extern Q8_EXPORT const unsigned short MESSAGE_DOMAIN_UNKNOWN;

// A value. Copies share the text, so copying one (as throwing does) never fails. Different objects may be used on
// different threads, also where they share their text.
class Q8_EXPORT Message
{
public:
    // The domain MESSAGE_DOMAIN_UNKNOWN, the ID -1 and the empty text.
    Message();
    Message(const Message& iOther) noexcept;
    Message& operator=(const Message& iOther) noexcept;
    virtual ~Message();

    void SetDomainAndID(unsigned short iDomain, int iID);

    // Copies the text; null gives the empty one. Throws std::bad_alloc, the message unchanged.
    void SetMessage(const wchar_t* ipText);

    // Returns the text, never null; valid until the text is set or this object and its copies are gone.
    const wchar_t* GetMessage() const;

    unsigned short GetDomain() const;
    int GetID() const;

private:
    unsigned short mDomain;
    int mID;
    std::shared_ptr<const std::wstring> mText;
};

// What is thrown for an exception class T: it derives from T alone and adds nothing, so that a handler may name this
// class, T, any base of T, or Message.
template <class T>
class Q8_EXPORT ExceptionImpl : public T
{
public:
    explicit ExceptionImpl(const Message& iMessage) : T(iMessage)
    {
    }
};

} // namespace QBase

#endif
