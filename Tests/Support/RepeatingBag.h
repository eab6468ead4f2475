// Bags in which a name occurs more than once.

#ifndef TESTS_SUPPORT_REPEATINGBAG_H
#define TESTS_SUPPORT_REPEATINGBAG_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/Describe.h"

namespace Support
{

// Keeps an old entry when its name is set again, so that a name can occur twice.
class RepeatingBag : public QTalBase::PropertyBagImpl
{
public:
    using PropertyBagImpl::PropertyBagImpl;

    void RemoveProperty(const wchar_t*) override {}

    // Both append, whatever there is.
    RepeatingBag& Plain(const wchar_t* ipName, const wchar_t* ipValue)
    {
        SetProperty(ipName, ipValue, false);
        return *this;
    }

    RepeatingBag& Nest(const wchar_t* ipName, const wchar_t* ipText)
    {
        SetProperty(ipName, ipText, true);
        return *this;
    }

    // The same entries in a bag of the library's own class, whose calls nobody can see.
    BagPtr Cloned() const
    {
        return Clone();
    }
};

} // namespace Support

#endif
