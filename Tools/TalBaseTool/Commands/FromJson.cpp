#include "Commands/Commands.h"

#include "File/Files.h"
#include "File/Lines.h"
#include "File/Progress.h"
#include "Text/Errors.h"
#include "Text/JsonBags.h"
#include "Text/JsonText.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <algorithm>
#include <sstream>

namespace TalBaseTool
{

namespace
{

std::string ReadBytes(const std::string& iFile)
{
    std::string lBytes;
    const auto lTake = [&](std::string_view iBlock) { lBytes.append(iBlock); };
    ReadBlocks(iFile, lTake, "a JSON document");
    return lBytes;
}

// Whether all of a text can be read.
bool HasNoFault(const std::wstring& iText, const DelimiterTexts& iPair)
{
    using QTalBase::TextRemarkKind;
    const QTalBase::TextCheckResult lResult = CheckText(iText, iPair);
    return lResult.mIsValid &&
           std::all_of(lResult.mRemarks.begin(), lResult.mRemarks.end(), [](const QTalBase::TextRemark& iRemark) {
               return iRemark.mKind == TextRemarkKind::AmbiguousDelimiter;
           });
}

// Writes what was built, if it is as a bag would write it: the bag would take as much memory again.
bool WriteText(const std::wstring& iText, const DelimiterTexts& iPair, bool iHasHeader, const Streams& iStreams)
{
    if (!HasNoFault(iText, iPair))
    {
        return false;
    }
    const Progress lProgress("writing", iText.size());
    const auto lWrite = [&](std::string_view iBytes) { iStreams.mOut << iBytes; };
    EncodeBlocks(iHasHeader ? WriteHeader(iPair) : L"", lWrite);
    EncodeBlocks(iText, lWrite);
    iStreams.mOut << '\n';
    return true;
}

// Writes the bag of a builder.
void WriteBuilt(TextBuilder& oBuilder, const Gate& iGate, bool iHasHeader, const std::wstring& iLineEnd,
                const Streams& iStreams)
{
    Document lDocument;
    lDocument.mBag = oBuilder.MakeBag();
    lDocument.mHasHeader = iHasHeader;
    lDocument.mGate = iGate;
    lDocument.mLineEnd = iLineEnd;
    Save(lDocument, {}, iStreams);
}

// Reads a document from each line, and writes the text form of each as a JSON string on a line of its own.
class LineConverter
{
public:
    LineConverter(const FromJsonOptions& iOptions, const DelimiterTexts& iPair, const Gate& iGate,
                  const Streams& iStreams)
        : mOptions(iOptions), mPair(iPair), mGate(iGate), mStreams(iStreams), mReport(iGate, iOptions.mIsVerbose)
    {
    }

    int Run()
    {
        LineSplitter lSplitter;
        const auto lTakeLine = [&](std::string_view iLine) { hTake(iLine); };
        ReadBlocks(
            mOptions.mFile, [&](std::string_view iBlock) { lSplitter.Split(iBlock, lTakeLine); }, "JSON lines");
        lSplitter.Finish(lTakeLine);
        mReport.Write(mStreams.Remarks());
        return mStatus;
    }

private:
    void hTake(std::string_view iLine)
    {
        ++mNumber;
        if (IsBlankLine(iLine))
        {
            return;
        }
        try
        {
            hConvert(LineName(mOptions.mFile, mNumber), iLine);
        }
        catch (const TextError& lError)
        {
            hTell(lError.what());
        }
        catch (const DataError& lError)
        {
            hTell(std::string("talbase: ") + lError.what());
        }
        catch (const QBase::Message& lMessage)
        {
            hTell("talbase: " + ShowMessage(lMessage.GetMessage()));
        }
    }

    void hConvert(const std::string& iName, std::string_view iLine)
    {
        TextBuilder lBuilder(mPair.mBegin, mPair.mEnd);
        const char* const lLoss = ReadJson(iName, iLine, mGate, lBuilder, mReport);
        if (mOptions.mIsStrict && lLoss != nullptr)
        {
            RefuseLoss(iName, iLine, lLoss);
        }
        std::ostringstream lText;
        WriteBuilt(lBuilder, mGate, mOptions.mHasHeader, L"",
                   {lText, mStreams.mErr, false, false, 0, mStreams.mIsQuiet});
        std::string lLine;
        AppendJsonString(QBase::UTF8ToWideChar(lText.str(), true), lLine);
        mStreams.mOut << lLine << '\n';
    }

    void hTell(const std::string& iText)
    {
        mStreams.mErr << iText << '\n';
        mStatus = ExitBad;
    }

    const FromJsonOptions& mOptions;
    const DelimiterTexts& mPair;
    const Gate& mGate;
    const Streams& mStreams;
    JsonReport mReport; // of all lines
    std::size_t mNumber = 0;
    int mStatus = ExitGood;
};

} // namespace

int FromJson(const FromJsonOptions& iOptions, const Streams& iStreams)
{
    const DelimiterTexts lPair = ReadPair(iOptions.mPair).value_or(DelimiterTexts{BEGIN, END});
    MakeBag(lPair); // refuses a pair that no bag may have before anything is read
    const Gate lGate = Gate::ForNames({});
    if (iOptions.mHasLines)
    {
        return LineConverter(iOptions, lPair, lGate, iStreams).Run();
    }
    TextBuilder lBuilder(lPair.mBegin, lPair.mEnd);
    JsonReport lReport(lGate, iOptions.mIsVerbose);
    {
        const std::string lBytes = ReadBytes(iOptions.mFile);
        const Progress lProgress("parsing " + ShowFile(iOptions.mFile), lBytes.size());
        const auto lEscaped =
            std::count_if(lBytes.begin(), lBytes.end(), [](char iByte) { return iByte == '*' || iByte == '+'; });
        lBuilder.Reserve(lBytes.size() + lBytes.size() / 4 + 4 * static_cast<std::size_t>(lEscaped));
        const char* const lLoss = ReadJson(iOptions.mFile, lBytes, lGate, lBuilder, lReport);
        lReport.Write(iStreams.Remarks());
        if (iOptions.mIsStrict && lReport.HasLoss())
        {
            RefuseLoss(iOptions.mFile, lBytes, lLoss);
        }
    }
    if (!lBuilder.IsAsWritten() || !WriteText(lBuilder.GetText(), lPair, iOptions.mHasHeader, iStreams))
    {
        WriteBuilt(lBuilder, lGate, iOptions.mHasHeader, L"\n", iStreams);
    }
    return ExitGood;
}

} // namespace TalBaseTool
