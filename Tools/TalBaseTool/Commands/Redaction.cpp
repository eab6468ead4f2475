#include "Commands/Redaction.h"

#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Text.h"

namespace TalBaseTool
{

std::size_t TakeOutSecrets(Document& oDocument, bool iIsForced, const Streams& iStreams)
{
    Gate lGate = oDocument.mGate;
    if (lGate.GetOpening() == Gate::Opening::Nothing && !iIsForced)
    {
        throw RefusedError(ShowFile(oDocument.mFile) +
                           ": a sensitive name is in this text, which is not in good order, so what belongs to it may "
                           "stand anywhere; nothing is written (--force takes out what stands where it should)");
    }
    lGate.TakeForGood();
    const Escaping lEscaping(oDocument.mBag->GetBeginDelimiter(), oDocument.mBag->GetEndDelimiter());
    return LeaveOut(oDocument.mBag, oDocument.mGate, iStreams.Remarks(), [&](const BagWalk& iWalk) {
        return iWalk.GetStep() == Step::Plain ? !lGate.HidesValue(iWalk.GetName(), lEscaping.Unescape(iWalk.GetValue()))
                                              : !lGate.HidesBag(iWalk.GetName());
    });
}

} // namespace TalBaseTool
