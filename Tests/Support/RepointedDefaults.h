// Points BEGIN and END elsewhere for the length of a scope.

#ifndef TESTS_SUPPORT_REPOINTEDDEFAULTS_H
#define TESTS_SUPPORT_REPOINTEDDEFAULTS_H

#include "TalBase/PropertyBag.h"

namespace Support
{

class RepointedDefaults
{
public:
    RepointedDefaults(const wchar_t* ipBegin, const wchar_t* ipEnd) : mBegin(BEGIN), mEnd(END)
    {
        BEGIN = ipBegin;
        END = ipEnd;
    }

    ~RepointedDefaults()
    {
        BEGIN = mBegin;
        END = mEnd;
    }

    RepointedDefaults(const RepointedDefaults&) = delete;
    RepointedDefaults& operator=(const RepointedDefaults&) = delete;

private:
    const wchar_t* mBegin;
    const wchar_t* mEnd;
};

} // namespace Support

#endif
