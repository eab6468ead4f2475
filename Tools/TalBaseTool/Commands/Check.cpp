#include "Commands/Commands.h"

#include "File/Files.h"
#include "File/Progress.h"
#include "Text/Damage.h"
#include "Text/Errors.h"
#include "Text/Excerpts.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

using QTalBase::TextCheckResult;
using QTalBase::TextRemark;
using QTalBase::TextRemarkKind;

std::string Describe(const TextRemark& iRemark, Excerpts& oExcerpts)
{
    const bool lIsHidden = oExcerpts.IsHidden(iRemark.mPosition);
    const std::string lName = oExcerpts.ShowName(iRemark.mPosition, iRemark.mLength, 60);
    switch (iRemark.mKind)
    {
    case TextRemarkKind::IgnoredTail:
        return lIsHidden ? "what stands behind the last delimiter is ignored" // not even how long it is
                         : Count(iRemark.mLength, "character") + " behind the last delimiter " +
                               (iRemark.mLength == 1 ? "is" : "are") + " ignored";
    case TextRemarkKind::EmptyValue:
        return lName + " has no value, and a bag cannot hold that";
    case TextRemarkKind::EmptyBag:
        return "the bag " + lName + " has no properties left, and a text cannot hold that";
    case TextRemarkKind::RepeatedName:
        return "another " + lName + " follows in the same bag and takes the place of this one";
    case TextRemarkKind::AmbiguousDelimiter:
        return "the delimiter could also begin further on: what stands before it may have ended with its character";
    }
    return "";
}

// What an editor puts behind a text is nobody's loss.
bool IsLineEnd(const TextRemark& iRemark, const std::wstring& iText)
{
    const std::wstring_view lPart = std::wstring_view(iText).substr(iRemark.mPosition, iRemark.mLength);
    return iRemark.mKind == TextRemarkKind::IgnoredTail && (lPart == L"\n" || lPart == L"\r\n");
}

// The delimiters that a text is read with, where that is known.
std::optional<DelimiterTexts> FindPair(const std::wstring& iText, const TextCheckResult& iResult,
                                       const std::optional<DelimiterTexts>& iGiven)
{
    if (iResult.mContentPosition == 0)
    {
        return iGiven;
    }
    try
    {
        const BagPtr lEmpty(QTalBase::CreatePropertyBag(iText.substr(0, iResult.mContentPosition).c_str()));
        return DelimiterTexts{lEmpty->GetBeginDelimiter(), lEmpty->GetEndDelimiter()};
    }
    catch (const QTalBase::PropertyBagException&) // the header is not closed
    {
        return {};
    }
}

class FileCheck
{
public:
    FileCheck(const CheckOptions& iOptions, Input& oInput, const Streams& iStreams)
        : mOptions(iOptions),
          mInput(oInput),
          mFile(oInput.GetName()),
          mStreams(iStreams),
          mPalette(iOptions.mColor, iStreams.mIsErrTerminal)
    {
    }

    int Run()
    {
        const std::optional<DelimiterTexts> lGiven = ReadPair(mOptions.mInputs.mPair);
        try
        {
            mText = mInput.Read();
        }
        catch (const EncodingError& lError) // not even UTF-8
        {
            hShowUnreadable(lError);
            return ExitBad;
        }
        const TextCheckResult lResult = hCheck(lGiven);
        const std::optional<DelimiterTexts> lPair = FindPair(mText, lResult, lGiven);
        const Gate lGate(mOptions.mInputs.mSecrets, mText, HasHeader(mText) ? std::nullopt : lGiven, lResult.mIsValid);
        Excerpts lExcerpts(mText, lGate, mStreams.mWidth);
        hWarn(lResult, lPair, lExcerpts);
        if (!lResult.mIsValid)
        {
            const std::size_t lPosition = StepBeforeLineEnd(mText, lResult.mPosition);
            mStreams.Remarks() << ShowPlace(mFile, lExcerpts.FindPlace(lPosition))
                               << mPalette.Paint(Style::Error,
                                                 ShowReason(mText, lGiven.has_value(), lResult.mMessage.c_str()))
                               << '\n'
                               << lExcerpts.Make(lPosition, 1, mPalette, Style::Error);
            ReportHidden(mFile, lGate, mStreams.Remarks());
            return ExitBad;
        }
        if (std::min(mWarnings, mOptions.mMaxWarnings) > 0)
        {
            ReportHidden(mFile, lGate, mStreams.Remarks());
        }
        mStreams.mOut << ShowFile(mFile) << ": valid"
                      << (mWarnings > 0 ? ", " + Count(mWarnings, "warning") : std::string()) << '\n';
        return mWarnings > 0 && mOptions.mIsStrict ? ExitBad : ExitGood;
    }

private:
    TextCheckResult hCheck(const std::optional<DelimiterTexts>& iGiven) const
    {
        if (iGiven)
        {
            MakeBag(*iGiven); // a pair that no bag may have is not the text's fault
        }
        const Progress lProgress("checking " + ShowFile(mFile), mText.size());
        return CheckText(mText, iGiven);
    }

    // A sensitive name may stand anywhere around the fault.
    void hShowUnreadable(const EncodingError& iError)
    {
        const Gate lGate(mOptions.mInputs.mSecrets, iError.GetText(), {}, false);
        mStreams.Remarks()
            << mPalette.Paint(Style::Error, iError.what()) << '\n'
            << Excerpts(iError.GetText(), lGate, mStreams.mWidth).Make(iError.GetPlace(), 1, mPalette, Style::Error);
        ReportHidden(mFile, lGate, mStreams.Remarks());
    }

    // Counts the warnings; not all of them are shown.
    void hWarn(const TextCheckResult& iResult, const std::optional<DelimiterTexts>& iPair, Excerpts& oExcerpts)
    {
        if (mText.rfind(L'\uFEFF', 0) == 0)
        {
            hWarnOf(0, 1, oExcerpts,
                    [] { return "the text begins with a byte-order mark, which belongs to no text form"; });
        }
        const std::optional<HeaderDamage> lHeader = iPair ? FindHeaderDamage(mText, iResult, *iPair) : std::nullopt;
        if (lHeader)
        {
            hWarnOf(lHeader->mPosition, lHeader->mLength, oExcerpts, [&] { return lHeader->mDescription; });
        }
        for (const TextRemark& lRemark : iResult.mRemarks)
        {
            if (!IsLineEnd(lRemark, mText))
            {
                hWarnOf(lRemark.mPosition, lRemark.mLength, oExcerpts, [&] { return Describe(lRemark, oExcerpts); });
            }
        }
        if (iResult.mIsValid)
        {
            hWarnOfDamage(iResult, iPair.value_or(DelimiterTexts{BEGIN, END}), oExcerpts);
        }
        if (mWarnings > mOptions.mMaxWarnings && mOptions.mMaxWarnings > 0)
        {
            mStreams.Remarks() << ShowFile(mFile) << ": " << Count(mWarnings - mOptions.mMaxWarnings, "more warning")
                               << '\n';
        }
    }

    void hWarnOfDamage(const TextCheckResult& iResult, const DelimiterTexts& iPair, Excerpts& oExcerpts)
    {
        for (const Damage& lDamage : FindDamage(mText, iResult.mContentPosition, iPair))
        {
            hWarnOf(lDamage.mPosition, lDamage.mLength, oExcerpts,
                    [&] { return TalBaseTool::Describe(lDamage.mKind); });
        }
    }

    template <class Description>
    void hWarnOf(std::size_t iPosition, std::size_t iLength, Excerpts& oExcerpts, const Description& iDescribe)
    {
        if (++mWarnings <= mOptions.mMaxWarnings)
        {
            mStreams.Remarks() << ShowPlace(mFile, oExcerpts.FindPlace(iPosition))
                               << mPalette.Paint(Style::Warning, std::string("warning: ") + iDescribe()) << '\n'
                               << oExcerpts.Make(iPosition, iLength, mPalette, Style::Warning);
        }
    }

    const CheckOptions& mOptions;
    Input& mInput;
    std::string mFile;
    const Streams& mStreams;
    Palette mPalette;
    std::wstring mText;
    std::size_t mWarnings = 0;
};

} // namespace

int Check(const CheckOptions& iOptions, const Streams& iStreams)
{
    int lStatus = ExitGood;
    const int lTrouble = ForEachInput(iOptions.mInputs, iStreams, [&](Input& oInput) {
        lStatus = std::max(lStatus, FileCheck(iOptions, oInput, iStreams).Run());
    });
    return std::max(lStatus, lTrouble);
}

} // namespace TalBaseTool
