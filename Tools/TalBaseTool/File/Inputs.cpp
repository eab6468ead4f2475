#include "File/Inputs.h"

#include "File/Files.h"
#include "File/Lines.h"
#include "Text/Errors.h"
#include "Text/JsonBags.h"
#include "Text/JsonText.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <stdexcept>

namespace TalBaseTool
{

namespace
{

namespace fs = std::filesystem;

// Most strings have no escapes.
std::optional<std::wstring> DecodeString(std::string_view iQuoted)
{
    const std::string_view lInside = iQuoted.substr(1, std::max<std::size_t>(iQuoted.size(), 2) - 2);
    unsigned int lOthers = 0;
    for (const char lByte : lInside) // to the end, whatever comes, so that the compiler takes many at a time
    {
        lOthers |= static_cast<unsigned int>(lByte == '"') | static_cast<unsigned int>(lByte == '\\') |
                   static_cast<unsigned int>(static_cast<unsigned char>(lByte) < 0x20);
    }
    const bool lIsPlain = iQuoted.size() > 1 && iQuoted.back() == '"' && lOthers == 0;
    try
    {
        return lIsPlain ? QBase::UTF8ToWideChar(lInside, true) : ReadJsonString(iQuoted);
    }
    catch (const QBase::Message&) // not UTF-8
    {
        return {};
    }
}

// The text form of the bag that a JSON object is.
std::wstring DecodeObject(const std::string& iName, std::string_view iObject, const Gate& iGate, JsonReport& oReport)
{
    TextBuilder lBuilder(BEGIN, END);
    ReadJson(iName, iObject, iGate, lBuilder, oReport);
    return lBuilder.MakeBag()->GetString(true, nullptr, nullptr, true).c_str();
}

// The text form in a line of JSON.
std::wstring DecodeLine(const std::string& iName, std::string_view iLine, const Gate& iGate, JsonReport& oReport)
{
    const std::size_t lStart = iLine.find_first_not_of(" \t");
    const std::string_view lValue = iLine.substr(lStart, iLine.find_last_not_of(" \t\r") + 1 - lStart);
    if (lValue.front() == '{')
    {
        return DecodeObject(iName, lValue, iGate, oReport);
    }
    std::optional<std::wstring> lText = lValue.front() == '"' ? DecodeString(lValue) : std::nullopt;
    if (!lText)
    {
        throw TextError(ShowFile(iName) + ": this line is no JSON string with a text form, and no JSON object");
    }
    if (lText->find(L'\0') != std::wstring::npos)
    {
        throw TextError(ShowFile(iName) + ": a zero character, which ends a text form");
    }
    return std::move(*lText);
}

bool IsFolder(const std::string& iFile)
{
    std::error_code lIgnored; // who reads it will tell
    return fs::is_directory(iFile, lIgnored);
}

class InputReader
{
public:
    InputReader(const InputOptions& iOptions, const Streams& iStreams, const std::function<void(Input&)>& iTake)
        : mOptions(iOptions),
          mStreams(iStreams),
          mTake(iTake),
          mGate(Gate::ForNames(iOptions.mSecrets)),
          mReport(mGate, false)
    {
    }

    int Read()
    {
        const std::vector<std::string> lInput{"-"};
        const std::vector<std::string>& lFiles = mOptions.mFiles.empty() ? lInput : mOptions.mFiles;
        if (std::count(lFiles.begin(), lFiles.end(), "-") > 1)
        {
            throw UsageError("standard input can be read only once");
        }
        mIsMany = lFiles.size() > 1;
        for (const std::string& lFile : lFiles)
        {
            hReadNamed(lFile);
        }
        mReport.Write(mStreams.Remarks());
        return mStatus;
    }

private:
    void hReadNamed(const std::string& iFile)
    {
        if (iFile == "-")
        {
            hTell([&] { mOptions.mHasLines ? hReadLines(iFile) : hReadStandardInput(); });
        }
        else if (mOptions.mIsRecursive && IsFolder(iFile))
        {
            mIsMany = true;
            hReadFolder(iFile);
        }
        else if (!mOptions.mIsRecursive && IsFolder(iFile))
        {
            hTell([&] { throw IoError(ShowFile(iFile) + " is a folder; --recursive reads the files in it"); });
        }
        else
        {
            hReadFile(iFile);
        }
    }

    void hReadFile(const std::string& iFile)
    {
        hTell([&] {
            if (mOptions.mHasLines)
            {
                hReadLines(iFile);
                return;
            }
            Input lInput(iFile, mIsMany, [&] { return ReadText(iFile); });
            mTake(lInput);
        });
    }

    // Folders within it follow in their places. They are kept in a list, so that their depth takes no stack.
    void hReadFolder(const std::string& iFolder)
    {
        std::vector<std::pair<std::string, bool>> lLeft{{iFolder, true}}; // the next one last; whether it is a folder
        while (!lLeft.empty())
        {
            const auto [lName, lIsFolder] = std::move(lLeft.back());
            lLeft.pop_back();
            if (!lIsFolder)
            {
                hReadFile(lName);
                continue;
            }
            const std::size_t lFirst = lLeft.size();
            hTell([&, &lIn = lName] { hListFolder(lIn, lLeft); });
            std::sort(lLeft.begin() + static_cast<std::ptrdiff_t>(lFirst), lLeft.end(), std::greater<>());
        }
    }

    static void hListFolder(const std::string& iFolder, std::vector<std::pair<std::string, bool>>& oEntries)
    {
        std::error_code lError;
        fs::directory_iterator lEntry(iFolder, lError);
        for (; !lError && lEntry != fs::directory_iterator(); lEntry.increment(lError))
        {
            std::error_code lIgnored; // it is gone again
            if (!lEntry->is_symlink(lIgnored) && (lEntry->is_directory(lIgnored) || lEntry->is_regular_file(lIgnored)))
            {
                oEntries.emplace_back(lEntry->path().string(), lEntry->is_directory(lIgnored));
            }
        }
        if (lError)
        {
            throw IoError("cannot read " + ShowFile(iFolder) + ": " + lError.message());
        }
    }

    // A text form begins with its header; where a pair is given, it may begin with anything.
    void hReadStandardInput()
    {
        std::optional<bool> lHasLines;
        if (mOptions.mPair.mBegin)
        {
            lHasLines = false;
        }
        std::deque<std::string> lBlocks;
        std::size_t lSize = 0;
        LineSplitter lSplitter;
        const auto lTakeLine = [&](std::string_view iLine) { hTakeLine("-", iLine); };
        ReadBlocks("-", [&](std::string_view iBlock) {
            if (!lHasLines && !iBlock.empty())
            {
                lHasLines = iBlock.front() == '"' || iBlock.front() == '{';
                mNumber = 0;
            }
            if (lHasLines.value_or(false))
            {
                lSplitter.Split(iBlock, lTakeLine);
                return;
            }
            lBlocks.emplace_back(iBlock);
            lSize += iBlock.size();
        });
        if (lHasLines.value_or(false))
        {
            lSplitter.Finish(lTakeLine);
            return;
        }
        Input lInput("-", mIsMany, [&] { return DecodeText("-", std::move(lBlocks), lSize); });
        mTake(lInput);
    }

    void hReadLines(const std::string& iFile)
    {
        mNumber = 0;
        LineSplitter lSplitter;
        const auto lTakeLine = [&](std::string_view iLine) { hTakeLine(iFile, iLine); };
        ReadBlocks(iFile, [&](std::string_view iBlock) { lSplitter.Split(iBlock, lTakeLine); });
        lSplitter.Finish(lTakeLine);
    }

    void hTakeLine(const std::string& iFile, std::string_view iLine)
    {
        ++mNumber;
        if (IsBlankLine(iLine))
        {
            return;
        }
        hTell([&] {
            const std::string lName = LineName(iFile, mNumber);
            Input lInput(lName, true, [&] { return DecodeLine(lName, iLine, mGate, mReport); });
            mTake(lInput);
        });
    }

    // Reports what is thrown.
    template <class Action>
    void hTell(const Action& iAction)
    {
        try
        {
            iAction();
        }
        catch (const TextError& lError)
        {
            hTell(lError.what(), mOptions.mUnreadable);
        }
        catch (const DataError& lError)
        {
            hTell(std::string("talbase: ") + lError.what(), mOptions.mUnreadable);
        }
        catch (const IoError& lError)
        {
            hTell(std::string("talbase: ") + lError.what(), ExitTrouble);
        }
        catch (const QBase::Message& lMessage)
        {
            hTell("talbase: " + ShowMessage(lMessage.GetMessage()), mOptions.mUnreadable);
        }
    }

    void hTell(const std::string& iText, int iStatus)
    {
        mStreams.mErr << iText << '\n';
        mStatus = std::max(mStatus, iStatus);
    }

    const InputOptions& mOptions;
    const Streams& mStreams;
    const std::function<void(Input&)>& mTake;
    bool mIsMany = false;
    std::size_t mNumber = 0; // of the line
    Gate mGate;              // of objects
    JsonReport mReport;
    int mStatus = ExitGood;
};

} // namespace

int ForEachInput(const InputOptions& iOptions, const Streams& iStreams, const std::function<void(Input&)>& iTake)
{
    if (ReadPair(iOptions.mPair)) // a wrong command line is told before anything is read
    {
        MakeBag(*ReadPair(iOptions.mPair));
    }
    return InputReader(iOptions, iStreams, iTake).Read();
}

int ForEachBag(const InputOptions& iOptions, const Streams& iStreams,
               const std::function<void(const Document&, bool)>& iTake)
{
    return ForEachInput(iOptions, iStreams, [&](Input& oInput) {
        // The text, which takes as much memory as the bag, goes before the bag is looked at.
        const Document lDocument = ReadDocument(oInput.GetName(), oInput.Read(), iOptions.mPair, iOptions.mSecrets);
        iTake(lDocument, oInput.IsOneOfMany());
    });
}

} // namespace TalBaseTool
