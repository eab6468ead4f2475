// Does the same random operations on bags of the library and on bags of the plain implementation, and says where the
// two can be told apart: by a result, an exception's class or text, or the state of any live bag afterwards.

#ifndef TESTS_SUPPORT_DIFFERENTIAL_H
#define TESTS_SUPPORT_DIFFERENTIAL_H

#include "Tests/Support/Choices.h"

#include <cstddef>
#include <string>

namespace Support
{

// When the states of all live bags are compared. Looking at a bag may hide what it forgot to bring up to date, so a
// test should also do its operations unwatched.
enum class Look
{
    AfterEachStep,
    AtTheEnd
};

// Does up to iOperations operations. Returns the empty text, or what was done and where the two differ. BEGIN and END
// point where they did before.
std::string FindDifference(Choices& iChoices, std::size_t iOperations, Look iLook = Look::AfterEachStep);

} // namespace Support

#endif
