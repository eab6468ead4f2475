// How the libraries of the family throw: always QBase::ExceptionImpl of an exception class, in the domain
// MESSAGE_DOMAIN_UNKNOWN and with the ID -1. Not installed.

#ifndef PRIVATESOURCE_THROW_H
#define PRIVATESOURCE_THROW_H

#include "QBase/Message.h"

namespace QBase
{

template <class T>
[[noreturn]] void Throw(const wchar_t* ipText)
{
    Message lMessage;
    lMessage.SetDomainAndID(MESSAGE_DOMAIN_UNKNOWN, -1);
    lMessage.SetMessage(ipText);
    throw ExceptionImpl<T>(lMessage);
}

} // namespace QBase

#endif
