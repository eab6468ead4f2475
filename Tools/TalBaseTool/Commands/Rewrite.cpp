#include "Commands/Commands.h"

#include "Commands/Redaction.h"
#include "File/InPlace.h"
#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Merge.h"
#include "Text/Text.h"
#include "Text/TextBuilder.h"

#include "TalBase/Guid.h"

#include <algorithm>

namespace TalBaseTool
{

int Merge(const MergeOptions& iOptions, const Streams& iStreams)
{
    if (std::count(iOptions.mFiles.begin(), iOptions.mFiles.end(), "-") > 1)
    {
        throw UsageError("standard input can be read only once");
    }
    Document lDocument = LoadToChange(iOptions.mFiles.front(), iOptions.mPair);
    const BagPtr lInto = lDocument.mBag;
    for (std::size_t lIndex = 1; lIndex < iOptions.mFiles.size(); ++lIndex)
    {
        Document lOther = LoadToChange(iOptions.mFiles[lIndex], iOptions.mPair);
        ReportLosses(lOther, iStreams.Remarks());
        LeaveOutEmptyBags(lOther.mBag, lOther.mGate, iStreams.Remarks());
        const BagPtr lFrom =
            WithDelimiters(std::move(lOther.mBag), lInto->GetBeginDelimiter(), lInto->GetEndDelimiter(), lOther.mGate);
        lDocument.mGate.Join(lOther.mGate);
        if (iOptions.mIsDeep)
        {
            MergeDeep(lInto, lFrom, OtherKind::Replaced);
        }
        else
        {
            lInto->AddPropertyBag(lFrom.get());
        }
    }
    Save(lDocument, {}, iStreams);
    return ExitGood;
}

int Redact(const RedactOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    if (iOptions.mTarget.mIsInPlace && !iOptions.mIsForced && HasOtherNames(iOptions.mFile))
    {
        throw RefusedError(ShowFile(iOptions.mFile) +
                           " has other names (hard links), which would keep the old text; nothing is written (--force "
                           "writes it)");
    }
    Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, iOptions.mSecrets, iOptions.mTarget);
    const std::size_t lCount = TakeOutSecrets(lDocument, iOptions.mIsForced, iStreams);
    iStreams.Remarks() << "talbase: " << Count(lCount, "property", "properties") << " taken out\n";
    Save(std::move(lDocument), iOptions.mTarget, iStreams);
    return ExitGood;
}

int Delimiters(const DelimitersOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    const DelimiterTexts lPair{ReadArgument(iOptions.mBegin, "--begin"), ReadArgument(iOptions.mEnd, "--end")};
    MakeBag(lPair); // refuses a pair that no bag may have before anything is read
    Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, {}, iOptions.mTarget);
    LeaveOutEmptyBags(lDocument.mBag, lDocument.mGate, iStreams.Remarks());
    lDocument.mBag = WithDelimiters(std::move(lDocument.mBag), lPair.mBegin, lPair.mEnd, lDocument.mGate);
    Save(std::move(lDocument), iOptions.mTarget, iStreams);
    return ExitGood;
}

int Guids(unsigned int iCount, const Streams& iStreams)
{
    for (unsigned int lIndex = 0; lIndex < iCount; ++lIndex)
    {
        iStreams.mOut << ToUtf8(QTalBase::Guid::GenerateUniqueString()) << '\n';
    }
    return ExitGood;
}

} // namespace TalBaseTool
