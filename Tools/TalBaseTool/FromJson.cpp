// JSON is read event by event and written into a text form as it comes, so that no document is held in memory beside
// the bag. An object becomes a bag; an array becomes a bag whose names are the numbers from 0 on.

#include "Commands.h"

#include "Errors.h"
#include "Files.h"
#include "JsonReport.h"
#include "Progress.h"
#include "Text.h"
#include "TextBuilder.h"

#include "QBase/Convert.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace TalBaseTool
{

namespace
{

using Json = nlohmann::ordered_json;

class JsonReader : public nlohmann::json_sax<Json>
{
public:
    JsonReader(TextBuilder& oBuilder, JsonReport& oReport) : mBuilder(oBuilder), mReport(oReport) {}

    const std::string& GetError() const
    {
        return mError;
    }

    bool null() override
    {
        return hTakeScalar("null");
    }

    bool boolean(bool iValue) override
    {
        return hTakeScalar(iValue ? "true" : "false");
    }

    bool number_integer(number_integer_t iValue) override
    {
        return hTakeScalar(std::to_string(iValue));
    }

    bool number_unsigned(number_unsigned_t iValue) override
    {
        return hTakeScalar(std::to_string(iValue));
    }

    bool number_float(number_float_t, const string_t& iText) override
    {
        return hTakeScalar(iText);
    }

    bool string(string_t& iValue) override
    {
        return hTake(iValue, false);
    }

    bool binary(binary_t&) override
    {
        return false; // JSON text has none
    }

    bool start_object(std::size_t) override
    {
        return hOpen(false);
    }

    bool key(string_t& iName) override
    {
        mFrames.back().mName = QBase::UTF8ToWideChar(iName, true);
        return true;
    }

    bool end_object() override
    {
        return hClose();
    }

    bool start_array(std::size_t) override
    {
        return hOpen(true);
    }

    bool end_array() override
    {
        return hClose();
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& iError) override
    {
        mError = iError.what();
        return false;
    }

private:
    // An object or array being read.
    struct Frame
    {
        std::wstring mName; // of the property that is read
        bool mIsArray;
        bool mIsLeftOut;      // with all that is in it
        std::size_t mCount;   // of its properties so far
        bool mLooksLikeArray; // its names are the numbers from 0 on, so far
        bool mHasNested;
        bool mIsOrderLost;
        std::unordered_set<std::wstring> mNames;
    };

    Path hPath() const
    {
        Path lPath;
        for (const Frame& lFrame : mFrames)
        {
            lPath.push_back(lFrame.mName);
        }
        return lPath;
    }

    void hCount(Loss iLoss)
    {
        mReport.Add(iLoss, mReport.WantsPlace(iLoss) ? hPath() : Path());
    }

    // Comes before every value. Returns whether it is kept.
    bool hBegin(bool iIsNested)
    {
        Frame& lFrame = mFrames.back();
        const std::wstring lNumber = std::to_wstring(lFrame.mCount);
        if (lFrame.mIsArray)
        {
            lFrame.mName = lNumber;
        }
        ++lFrame.mCount;
        if (lFrame.mIsLeftOut)
        {
            return false;
        }
        if (!lFrame.mIsArray)
        {
            lFrame.mLooksLikeArray = lFrame.mLooksLikeArray && lFrame.mName == lNumber;
            if (!lFrame.mNames.insert(lFrame.mName).second)
            {
                hCount(Loss::RepeatedName);
            }
            lFrame.mIsOrderLost = lFrame.mIsOrderLost || (lFrame.mHasNested && !iIsNested);
            lFrame.mHasNested = lFrame.mHasNested || iIsNested;
        }
        return true;
    }

    void hReport(Fault iFault)
    {
        hCount(iFault == Fault::EmptyValue  ? Loss::EmptyText
               : iFault == Fault::EmptyName ? Loss::EmptyName
                                            : Loss::Unholdable);
    }

    bool hTakeScalar(const std::string& iText)
    {
        return hTake(iText, true);
    }

    bool hTake(const std::string& iValue, bool iIsScalar)
    {
        if (mFrames.empty())
        {
            mError = "a bag is made of an object or an array, and this is neither";
            return false;
        }
        if (!hBegin(false))
        {
            return true;
        }
        const Fault lFault = mBuilder.AddPlain(mFrames.back().mName, QBase::UTF8ToWideChar(iValue, true));
        if (lFault != Fault::None)
        {
            hReport(lFault);
        }
        else if (iIsScalar)
        {
            hCount(Loss::Type);
        }
        return true;
    }

    bool hOpen(bool iIsArray)
    {
        bool lIsLeftOut = false;
        if (!mFrames.empty())
        {
            lIsLeftOut = !hBegin(true);
            const Fault lFault = lIsLeftOut ? Fault::None : mBuilder.OpenBag(mFrames.back().mName);
            if (lFault != Fault::None)
            {
                hReport(lFault);
                lIsLeftOut = true;
            }
        }
        mFrames.push_back(Frame{{}, iIsArray, lIsLeftOut, 0, !iIsArray, false, false, {}});
        return true;
    }

    bool hClose()
    {
        const Frame lFrame = std::move(mFrames.back());
        mFrames.pop_back();
        if (lFrame.mIsLeftOut)
        {
            return true;
        }
        if (lFrame.mCount == 0 && !mFrames.empty())
        {
            hCount(lFrame.mIsArray ? Loss::EmptyArray : Loss::EmptyObject);
        }
        else if (lFrame.mCount > 0 && lFrame.mLooksLikeArray)
        {
            hCount(Loss::ArrayLike);
        }
        if (lFrame.mIsOrderLost)
        {
            hCount(Loss::Order);
        }
        if (!mFrames.empty())
        {
            mBuilder.CloseBag(); // one of which nothing is left goes without a word more
        }
        return true;
    }

    TextBuilder& mBuilder;
    JsonReport& mReport;
    std::vector<Frame> mFrames;
    std::string mError;
};

// Reports what nlohmann's library says, "[json.exception.…] parse error at line 1, column 10: …; last read: …", where
// the last piece is the document's own and may be a secret.
[[noreturn]] void ThrowJsonError(const std::string& iFile, const std::string& iError)
{
    Place lPlace;
    const std::size_t lSaid = iError.find(": ");
    const std::size_t lLine = iError.find("at line ");
    const bool lHasPlace =
        lLine != std::string::npos && lSaid != std::string::npos &&
        std::sscanf(iError.c_str() + lLine, "at line %zu, column %zu", &lPlace.mLine, &lPlace.mColumn) == 2;
    const std::string lText = iError.substr(lHasPlace ? lSaid + 2 : 0);
    const std::string lShown =
        ToUtf8(MakePrintable(QBase::UTF8ToWideChar(lText.substr(0, lText.find("; last read: ")), false)));
    throw TextError((lHasPlace ? ShowPlace(iFile, lPlace) : ShowFile(iFile) + ": ") + lShown);
}

std::string ReadBytes(const std::string& iFile)
{
    std::string lBytes;
    ReadBlocks(iFile, [&](std::string_view iBlock) { lBytes.append(iBlock); });
    return lBytes;
}

} // namespace

int FromJson(const FromJsonOptions& iOptions, const Streams& iStreams)
{
    const DelimiterTexts lPair = ReadPair(iOptions.mPair).value_or(DelimiterTexts{BEGIN, END});
    MakeBag(lPair); // refuses a pair that no bag may have before anything is read
    TextBuilder lBuilder(lPair.mBegin, lPair.mEnd);
    JsonReport lReport(iOptions.mIsVerbose);
    JsonReader lReader(lBuilder, lReport);
    {
        const std::string lBytes = ReadBytes(iOptions.mFile);
        const Progress lProgress("parsing " + ShowFile(iOptions.mFile), lBytes.size());
        if (!Json::sax_parse(lBytes, &lReader))
        {
            ThrowJsonError(iOptions.mFile, lReader.GetError());
        }
    }
    lReport.Write(iStreams.mErr);
    if (iOptions.mIsStrict && lReport.HasLoss())
    {
        throw DataError(ShowFile(iOptions.mFile) + ": a bag cannot hold all of it");
    }
    Document lDocument;
    lDocument.mBag = lBuilder.MakeBag();
    lDocument.mHasHeader = iOptions.mHasHeader;
    lDocument.mLineEnd = L"\n";
    Save(lDocument, {}, iStreams);
    return ExitGood;
}

} // namespace TalBaseTool
