#include "Text/JsonBags.h"

#include "Text/Encoding.h"
#include "Text/Errors.h"
#include "Text/JsonValues.h"
#include "Text/Place.h"
#include "Text/Text.h"

#include "QBase/Convert.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gWholeDocument = std::numeric_limits<std::size_t>::max(); // in the place of an index
constexpr std::size_t gMostElements = std::numeric_limits<std::size_t>::max();
constexpr std::string_view gByteOrderMark = "\xEF\xBB\xBF";

// Where a document cannot be read, in bytes, and why.
struct JsonError
{
    std::size_t mIndex = 0;
    std::string mText;
};

// Goes through the bytes of a document and tells how far it is.
class Reading
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Reading(const char* ipAt, const char** opRead) : mAt(ipAt), mRead(opRead) {}

    const char& operator*() const
    {
        return *mAt;
    }

    Reading& operator++()
    {
        *mRead = ++mAt;
        return *this;
    }

    Reading operator++(int)
    {
        const Reading lBefore = *this;
        ++*this;
        return lBefore;
    }

    bool operator==(const Reading& iOther) const
    {
        return mAt == iOther.mAt;
    }

private:
    const char* mAt;
    const char** mRead;
};

class JsonReader : public nlohmann::json_sax<AnyJson>
{
public:
    // ipRead: where the bytes that were read end, as they are read.
    JsonReader(TextBuilder& oBuilder, JsonReport& oReport, const Gate& iGate, const char* const* ipRead)
        : mBuilder(oBuilder), mReport(oReport), mGate(iGate), mRead(ipRead), mDone(*ipRead)
    {
    }

    // Where the first of what a bag cannot hold begins, but for what stands behind a value; an object or array that is
    // not held as it is has its end there. Null where all can be held.
    const char* GetFirstLoss() const
    {
        return mFirstLoss;
    }

    const JsonError& GetError() const
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
        return hTakeScalar(iValue == 0 ? "-0" : std::to_string(iValue)); // without a sign it would be unsigned
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
        return hDone(hTake(iValue, false));
    }

    bool binary(binary_t&) override
    {
        return false; // JSON text has none
    }

    bool start_object(std::size_t) override
    {
        return hDone(hOpen(false));
    }

    bool key(string_t& iName) override
    {
        mFrames.back().mName = QBase::UTF8ToWideChar(iName, true);
        return hDone(true);
    }

    bool end_object() override
    {
        return hDone(hClose());
    }

    bool start_array(std::size_t) override
    {
        return hDone(hOpen(true));
    }

    bool end_array() override
    {
        return hDone(hClose());
    }

    // The message is "[json.exception.…] parse error at line 1, column 10: …; last read: …", where the last piece is
    // the document's own and may be a secret.
    bool parse_error(std::size_t iRead, const std::string&, const nlohmann::detail::exception& iError) override
    {
        const std::string lWhat = iError.what();
        const std::size_t lPlace = lWhat.find(" at line ");
        const std::size_t lSaid = lPlace != std::string::npos ? lWhat.find(": ", lPlace) : std::string::npos;
        const std::string lText = lSaid != std::string::npos ? lWhat.substr(lSaid + 2) : lWhat;
        mError = {iRead - std::min<std::size_t>(iRead, 1), lText.substr(0, lText.find("; last read: "))};
        return false;
    }

private:
    // An object or array being read.
    struct Frame
    {
        std::wstring mName; // of the property that is read
        bool mIsHidden;     // with all that is in it, in messages
        bool mIsArray;
        bool mIsLeftOut;    // with all that is in it
        std::size_t mCount; // of its properties so far
        std::size_t mKept;  // of an array: how many of them are in the bag
        bool mHasGap;       // of an array: one that is not, before one that is
        bool mHasNested;
        bool mIsOrderLost;
        // The names and where they stand; nowhere where they were left out. A stranger's names could be chosen to have
        // hashes alike.
        std::map<std::wstring, TextSpan> mNames;
    };

    // Whether the names of what is left of an object are the numbers from 0 on, in whatever order.
    static bool LooksLikeArray(const Frame& iFrame)
    {
        const auto lIsKept = [](const auto& iEntry) { return iEntry.second.mStart < iEntry.second.mStop; };
        const auto lAny = std::find_if(iFrame.mNames.begin(), iFrame.mNames.end(), lIsKept);
        if (lAny == iFrame.mNames.end() || ReadElement(lAny->first, gMostElements) == gMostElements)
        {
            return false;
        }
        const auto lKept = static_cast<std::size_t>(std::count_if(iFrame.mNames.begin(), iFrame.mNames.end(), lIsKept));
        return std::all_of(lAny, iFrame.mNames.end(), [&](const auto& iEntry) {
            return !lIsKept(iEntry) || ReadElement(iEntry.first, lKept) < lKept;
        });
    }

    // Ends each event.
    bool hDone(bool iIsGood)
    {
        mDone = *mRead;
        return iIsGood;
    }

    // The last names of the place.
    void hCount(Loss iLoss)
    {
        Path lPath;
        const std::size_t lFirst = mFrames.size() - std::min(mFrames.size(), gMostNames);
        for (std::size_t lFrame = lFirst; lFrame < mFrames.size() && mReport.WantsPlace(iLoss); ++lFrame)
        {
            lPath.push_back(mFrames[lFrame].mName);
        }
        if (mFirstLoss == nullptr && iLoss != Loss::Order)
        {
            mFirstLoss = mDone;
        }
        mReport.Add(iLoss, lPath, mFrames.size(), lFirst < mFrames.size() && mFrames[lFirst].mIsHidden);
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
            if (lFrame.mNames.count(lFrame.mName) != 0)
            {
                hCount(Loss::RepeatedName);
            }
            lFrame.mIsOrderLost = lFrame.mIsOrderLost || (lFrame.mHasNested && !iIsNested);
            lFrame.mHasNested = lFrame.mHasNested || iIsNested;
        }
        return true;
    }

    // The last property of a name counts, also where nothing is kept of it: reading the text would take the one before.
    void hReplace(const TextSpan& iSpan)
    {
        Frame& lFrame = mFrames.back();
        if (lFrame.mIsArray && iSpan.mStart < iSpan.mStop)
        {
            lFrame.mHasGap = lFrame.mHasGap || lFrame.mKept < lFrame.mCount - 1;
            ++lFrame.mKept;
        }
        else if (!lFrame.mIsArray)
        {
            TextSpan& lKept = lFrame.mNames[lFrame.mName];
            mBuilder.Drop(lKept);
            lKept = iSpan;
        }
    }

    void hReport(Fault iFault)
    {
        hCount(iFault == Fault::EmptyValue  ? Loss::EmptyText
               : iFault == Fault::EmptyName ? Loss::EmptyName
                                            : Loss::Unholdable);
    }

    bool hTakeScalar(const std::string& iText)
    {
        return hDone(hTake(iText, true));
    }

    bool hTake(const std::string& iValue, bool iIsScalar)
    {
        if (mFrames.empty())
        {
            mError = {gWholeDocument, "a bag is made of an object or an array, and this is neither"};
            return false;
        }
        if (!hBegin(false))
        {
            return true;
        }
        const std::size_t lStart = mBuilder.GetSize();
        const Fault lFault = mBuilder.AddPlain(mFrames.back().mName, std::string_view(iValue));
        hReplace({lStart, mBuilder.GetSize()});
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
                hReplace({0, 0});
                lIsLeftOut = true;
            }
        }
        const bool lIsHidden = !mFrames.empty() && (mFrames.back().mIsHidden || mGate.HidesBag(mFrames.back().mName));
        mFrames.push_back(Frame{{}, lIsHidden, iIsArray, lIsLeftOut, 0, 0, false, false, false, {}});
        return true;
    }

    bool hClose()
    {
        mDone = *mRead - 1; // a number before it was known to end only there
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
        else if (lFrame.mHasGap)
        {
            hCount(Loss::Positions);
        }
        else if (!lFrame.mIsArray && LooksLikeArray(lFrame))
        {
            hCount(Loss::ArrayLike);
        }
        if (lFrame.mIsOrderLost)
        {
            hCount(Loss::Order);
        }
        if (!mFrames.empty())
        {
            const std::size_t lStart = mBuilder.CloseBag(); // one of which nothing is left goes without a word more
            hReplace({lStart, mBuilder.GetSize()});
        }
        return true;
    }

    TextBuilder& mBuilder;
    JsonReport& mReport;
    const Gate& mGate;
    std::vector<Frame> mFrames;
    JsonError mError;
    const char* const* mRead;
    const char* mDone; // where the event before this one ended
    const char* mFirstLoss = nullptr;
};

// The place of a byte as editors count it.
Place FindBytePlace(std::string_view iBytes, std::size_t iIndex)
{
    std::string_view lBefore = iBytes.substr(0, iIndex);
    lBefore.remove_prefix(lBefore.rfind(gByteOrderMark, 0) == 0 ? gByteOrderMark.size() : 0);
    const auto lLines = std::count(lBefore.begin(), lBefore.end(), '\n');
    lBefore.remove_prefix(lBefore.rfind('\n') + 1); // 0 where there is none
    const auto lCharacters = std::count_if(lBefore.begin(), lBefore.end(), [](char iByte) {
        return (static_cast<unsigned char>(iByte) & 0xC0U) != 0x80U; // does not go on with one
    });
    return {static_cast<std::size_t>(lLines) + 1, static_cast<std::size_t>(lCharacters) + 1};
}

// Where a document begins that has one value only.
std::size_t FindValue(std::string_view iBytes)
{
    const std::size_t lStart = iBytes.rfind(gByteOrderMark, 0) == 0 ? gByteOrderMark.size() : 0;
    return std::min(iBytes.find_first_not_of(" \t\r\n", lStart), iBytes.size());
}

[[noreturn]] void ThrowJsonError(const std::string& iFile, std::string_view iBytes, const JsonError& iError)
{
    const std::size_t lIndex = iError.mIndex == gWholeDocument ? FindValue(iBytes) : iError.mIndex;
    throw TextError(ShowPlace(iFile, FindBytePlace(iBytes, lIndex)) +
                    ToUtf8(MakeControlsPrintable(QBase::UTF8ToWideChar(iError.mText, false))));
}

} // namespace

const char* ReadJson(const std::string& iFile, std::string_view iBytes, const Gate& iGate, TextBuilder& oBuilder,
                     JsonReport& oReport)
{
    const char* const lEncoding = FindForeignEncoding(iBytes);
    if (lEncoding != nullptr)
    {
        ThrowJsonError(iFile, iBytes, {0, std::string("this is ") + lEncoding + ", but JSON is in UTF-8"});
    }
    const std::size_t lZero = iBytes.find('\0');
    if (lZero != std::string_view::npos) // the end of the document, for who parses it
    {
        ThrowJsonError(iFile, iBytes, {lZero, "a zero character, which JSON does not allow"});
    }
    const char* lRead = iBytes.data();
    JsonReader lReader(oBuilder, oReport, iGate, &lRead);
    if (!AnyJson::sax_parse(Reading(lRead, &lRead), Reading(lRead + iBytes.size(), &lRead), &lReader))
    {
        ThrowJsonError(iFile, iBytes, lReader.GetError());
    }
    return lReader.GetFirstLoss();
}

void RefuseLoss(const std::string& iFile, std::string_view iBytes, const char* ipFirstLoss)
{
    const auto lBefore = static_cast<std::size_t>(ipFirstLoss - iBytes.data());
    const std::size_t lPlace = std::min(iBytes.find_first_not_of(" \t\r\n,:", lBefore), iBytes.size());
    ThrowJsonError(iFile, iBytes, {lPlace, "a bag cannot hold all of it, this for one"});
}

} // namespace TalBaseTool
