// A bag becomes an object; one whose names are the numbers from 0 on becomes an array. The JSON is written as the bag
// is walked, so that nothing but the bag is held in memory; the strings are written by nlohmann's library.

#include "Commands/Commands.h"

#include "File/Progress.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Text.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>

namespace TalBaseTool
{

namespace
{

// With the numbers that from-json takes.
using WideJson =
    nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t, long double>;

constexpr std::size_t gBuffer = std::size_t{1} << 20;
constexpr std::size_t gMostIndented = 40; // levels; deeper ones begin no further right

// The number that a name of an array's element stands for, or iCount.
unsigned int ReadElement(const QBase::ReturnWString& iName, unsigned int iCount)
{
    const std::wstring_view lName = iName;
    if (lName.empty() || lName.size() > 9 || (lName[0] == L'0' && lName.size() > 1) ||
        lName.find_first_not_of(L"0123456789") != std::wstring_view::npos)
    {
        return iCount;
    }
    return std::min(static_cast<unsigned int>(std::stoul(std::wstring(lName))), iCount);
}

// The positions of an array's elements in their order; empty where the bag is no array.
std::vector<unsigned int> FindElements(const QTalBase::PropertyBag& iBag)
{
    const unsigned int lCount = iBag.GetCount();
    std::vector<unsigned int> lPositions(lCount);
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const unsigned int lElement = ReadElement(iBag.GetName(lIndex), lCount);
        if (lElement == lCount)
        {
            return {};
        }
        lPositions[lElement] = lIndex; // names are unique, so every number occurs
    }
    return lPositions;
}

// Whether a text, as it stands, is a JSON number, true, false or null.
bool IsScalar(const std::string& iText)
{
    const bool lMayBe = iText == "true" || iText == "false" || iText == "null" || iText[0] == '-' ||
                        (iText[0] >= '0' && iText[0] <= '9');
    return lMayBe && iText.find_first_of(" \t\r\n") == std::string::npos && WideJson::accept(iText);
}

class JsonWriter
{
public:
    JsonWriter(const ToJsonOptions& iOptions, const BagPtr& iBag, std::ostream& oOut)
        : mOptions(iOptions), mOut(oOut), mEscaping(iBag->GetBeginDelimiter(), iBag->GetEndDelimiter())
    {
        mBuffer.reserve(gBuffer + gBuffer / 4);
        hOpen(iBag);
    }

    void Write()
    {
        while (!mFrames.empty())
        {
            if (mFrames.back().mNext == mFrames.back().mCount)
            {
                hClose();
            }
            else
            {
                hWriteNext(mFrames.back());
            }
            if (mBuffer.size() > gBuffer)
            {
                hFlush();
            }
        }
        mBuffer += '\n';
        hFlush();
    }

private:
    struct Frame
    {
        BagPtr mBag;
        std::vector<unsigned int> mElements;
        unsigned int mNext;
        unsigned int mCount;
    };

    void hOpen(const BagPtr& iBag)
    {
        mFrames.push_back(Frame{iBag, FindElements(*iBag), 0, iBag->GetCount()});
        mBuffer += mFrames.back().mElements.empty() ? '{' : '[';
    }

    void hWriteNext(Frame& oFrame)
    {
        mBuffer += oFrame.mNext > 0 ? "," : "";
        hBreakLine(mFrames.size());
        const unsigned int lIndex = oFrame.mElements.empty() ? oFrame.mNext : oFrame.mElements[oFrame.mNext];
        ++oFrame.mNext;
        hWriteProperty(oFrame.mBag, lIndex, oFrame.mElements.empty());
    }

    void hClose()
    {
        const char lEnd = mFrames.back().mElements.empty() ? '}' : ']';
        const bool lIsEmpty = mFrames.back().mCount == 0;
        mFrames.pop_back();
        if (!lIsEmpty)
        {
            hBreakLine(mFrames.size());
        }
        mBuffer += lEnd;
    }

    // iBag: by value, because another frame may move the one that it comes from.
    void hWriteProperty(BagPtr iBag, unsigned int iIndex, bool iHasName)
    {
        if (iHasName)
        {
            hWriteString(ToUtf8(iBag->GetName(iIndex)));
            mBuffer += mOptions.mIndent < 0 ? ":" : ": ";
        }
        if (iBag->IsEmbedded(iIndex))
        {
            hOpen(iBag->GetValuePropertyBag(iIndex));
            return;
        }
        const std::string lValue = ToUtf8(mEscaping.Unescape(iBag->GetValue(iIndex)));
        if (mOptions.mIsTyped && IsScalar(lValue))
        {
            mBuffer += lValue;
        }
        else
        {
            hWriteString(lValue);
        }
    }

    void hWriteString(const std::string& iText)
    {
        mBuffer += nlohmann::json(iText).dump();
    }

    void hBreakLine(std::size_t iDepth)
    {
        if (mOptions.mIndent >= 0)
        {
            mBuffer += '\n';
            mBuffer.append(std::min(iDepth, gMostIndented) * static_cast<std::size_t>(mOptions.mIndent), ' ');
        }
    }

    void hFlush()
    {
        mOut << mBuffer;
        mBuffer.clear();
    }

    const ToJsonOptions& mOptions;
    std::ostream& mOut;
    Escaping mEscaping;
    std::vector<Frame> mFrames;
    std::string mBuffer;
};

} // namespace

int ToJson(const ToJsonOptions& iOptions, const Streams& iStreams)
{
    const Document lDocument = Load(iOptions.mFile, iOptions.mPair);
    JsonWriter(iOptions, lDocument.mBag, iStreams.mOut).Write();
    return ExitGood;
}

} // namespace TalBaseTool
