// A rule that the plain implementations break on request, to see that whoever compares with them notices.

#ifndef TESTS_SUPPORT_BROKENRULE_H
#define TESTS_SUPPORT_BROKENRULE_H

#include <string_view>

namespace Plain
{

// Its name, and empty for none. Each place that can break a rule asks for it by name.
inline std::string_view gBrokenRule;

inline bool IsBroken(std::string_view iRule)
{
    return iRule == gBrokenRule;
}

} // namespace Plain

#endif
