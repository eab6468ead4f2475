#ifndef QBASE_MESSAGE_H
#define QBASE_MESSAGE_H
#include "QBase/Export.h"
#include <memory>
#include <string>
namespace QBase
{
extern Q8_EXPORT const unsigned short MESSAGE_DOMAIN_UNKNOWN;
class Q8_EXPORT Message
{
public:
    Message() noexcept;
    Message(const Message& iOther) noexcept;
    Message& operator=(const Message& iOther) noexcept;
    virtual ~Message();
    void SetDomainAndID(unsigned short iDomain, int iID) noexcept;
    void SetMessage(const wchar_t* ipText);
    const wchar_t* GetMessage() const noexcept;
    unsigned short GetDomain() const noexcept;
    int GetID() const noexcept;

private:
    unsigned short mDomain;
    int mID;
    std::shared_ptr<const std::wstring> mText;
};
template <class T>
class Q8_EXPORT ExceptionImpl : public T
{
public:
    explicit ExceptionImpl(const Message& iMessage) : T(iMessage) {}
};
} // namespace QBase
#endif
