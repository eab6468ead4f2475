#include "Commands/Commands.h"

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
    const Document lDocument = LoadToChange(iOptions.mFiles.front(), iOptions.mPair);
    const BagPtr lInto = lDocument.mBag;
    for (std::size_t lIndex = 1; lIndex < iOptions.mFiles.size(); ++lIndex)
    {
        Document lOther = LoadToChange(iOptions.mFiles[lIndex], iOptions.mPair);
        ReportLosses(lOther, iStreams.Remarks());
        LeaveOutEmptyBags(lOther.mBag, iStreams.Remarks());
        const BagPtr lFrom =
            WithDelimiters(std::move(lOther.mBag), lInto->GetBeginDelimiter(), lInto->GetEndDelimiter());
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
    Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, iOptions.mSecrets, iOptions.mTarget);
    const auto lSensitive = ReadSensitiveNames(iOptions.mSecrets);
    std::size_t lCount = 0;
    for (BagWalk lWalk(lDocument.mBag); lWalk.Next();)
    {
        if (!lSensitive->FindWord(lWalk.GetName()))
        {
            continue;
        }
        if (lWalk.GetStep() == Step::Enter)
        {
            lWalk.Skip();
            continue; // taken out when it ends
        }
        lWalk.GetHolder()->RemoveProperty(lWalk.GetName());
        lWalk.Removed();
        ++lCount;
    }
    LeaveOutEmptyBags(lDocument.mBag, iStreams.Remarks());
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
    LeaveOutEmptyBags(lDocument.mBag, iStreams.Remarks());
    lDocument.mBag = WithDelimiters(std::move(lDocument.mBag), lPair.mBegin, lPair.mEnd);
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
