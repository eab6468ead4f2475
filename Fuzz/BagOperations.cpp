// Random sequences of all operations of property bags, done to bags of the library and to bags of the plain
// implementation: nothing may tell the two apart. The first byte says how often to look; then each record is a step.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Target.h"
#include "Tests/Support/Differential.h"

namespace
{

const std::size_t gMostSteps = 100;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    if (iSize == 0)
    {
        return 0;
    }
    using Support::Look;
    Support::RecordChoices lChoices(ipBytes + 1, iSize - 1);
    const Look lLook = ipBytes[0] % 4 == 0 ? Look::AtTheEnd : Look::AfterEachStep;
    const std::string lDifference = Support::FindDifference(lChoices, gMostSteps, lLook);
    if (!lDifference.empty())
    {
        Fuzz::Fail("the library and the plain implementation differ\n" + lDifference);
    }
    return 0;
}
