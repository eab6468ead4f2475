// How a fuzzer says that a property does not hold: the text goes to standard error and the process aborts, which the
// fuzzing engine takes for a crash and the replay for a failure.

#ifndef TALBASE_FUZZ_SUPPORT_CHECK_H
#define TALBASE_FUZZ_SUPPORT_CHECK_H

#include <string>

namespace Fuzz
{

[[noreturn]] void Fail(const std::string& iWhat);

inline void Require(bool iHolds, const char* ipWhat)
{
    if (!iHolds)
    {
        Fail(ipWhat);
    }
}

// Fails where the two differ, and shows both.
void RequireEqual(const std::wstring& iActual, const std::wstring& iExpected, const char* ipWhat);
void RequireEqual(const std::string& iActual, const std::string& iExpected, const char* ipWhat);

} // namespace Fuzz

#endif
