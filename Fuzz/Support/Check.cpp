#include "Fuzz/Support/Check.h"

#include "QBase/Convert.h"

#include <cstdio>
#include <cstdlib>

namespace Fuzz
{

void Fail(const std::string& iWhat)
{
    std::fflush(stdout);
    std::fprintf(stderr, "A RULE IS BROKEN: %s\n", iWhat.c_str());
    std::fflush(stderr);
    std::abort();
}

void RequireEqual(const std::wstring& iActual, const std::wstring& iExpected, const char* ipWhat)
{
    if (iActual != iExpected)
    {
        Fail(std::string(ipWhat) + "\nactual:   " + QBase::WideCharToUTF8(iActual.c_str(), false) +
             "\nexpected: " + QBase::WideCharToUTF8(iExpected.c_str(), false));
    }
}

void RequireEqual(const std::string& iActual, const std::string& iExpected, const char* ipWhat)
{
    if (iActual != iExpected)
    {
        Fail(std::string(ipWhat) + "\nactual:   " + iActual + "\nexpected: " + iExpected);
    }
}

} // namespace Fuzz
