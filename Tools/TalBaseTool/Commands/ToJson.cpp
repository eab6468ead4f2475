// A bag becomes an object; one whose names are the numbers from 0 on becomes an array. The JSON is written as the bag
// is walked, so that nothing but the bag is held in memory.

#include "Commands/Commands.h"

#include "Commands/Redaction.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/JsonText.h"
#include "Text/JsonValues.h"
#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gBuffer = std::size_t{1} << 16;
constexpr std::size_t gSmall = 2048;      // most bags have no longer JSON
constexpr std::size_t gFew = 8;           // and are not nested deeper
constexpr std::size_t gMostIndented = 40; // levels; deeper ones begin no further right

// The positions of an array's elements in their order; empty where the bag is no array.
std::vector<unsigned int> FindElements(const QTalBase::PropertyBag& iBag)
{
    const unsigned int lCount = iBag.GetCount();
    if (lCount == 0 || ReadElement(iBag.GetName(0), lCount) == lCount) // mostly
    {
        return {};
    }
    std::vector<unsigned int> lPositions(lCount);
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const std::size_t lElement = ReadElement(iBag.GetName(lIndex), lCount);
        if (lElement == lCount)
        {
            return {};
        }
        lPositions[lElement] = lIndex; // names are unique, so every number occurs
    }
    return lPositions;
}

// Whether a text, as it stands, is a JSON number, true, false or null.
bool IsScalar(std::wstring_view iText)
{
    const bool lMayBe = iText == L"true" || iText == L"false" || iText == L"null" || iText[0] == L'-' ||
                        (iText[0] >= L'0' && iText[0] <= L'9');
    return lMayBe && iText.find_first_of(L" \t\r\n") == std::wstring_view::npos && AnyJson::accept(ToUtf8(iText));
}

class JsonWriter
{
public:
    JsonWriter(const ToJsonOptions& iOptions, const BagPtr& iBag, std::ostream& oOut)
        : mOptions(iOptions), mOut(oOut), mEscaping(iBag->GetBeginDelimiter(), iBag->GetEndDelimiter())
    {
        mBuffer.reserve(gSmall);
        mFrames.reserve(gFew);
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
            AppendJsonString(iBag->GetName(iIndex), mBuffer);
            mBuffer += mOptions.mIndent < 0 ? ":" : ": ";
        }
        if (iBag->IsEmbedded(iIndex))
        {
            hOpen(iBag->GetValuePropertyBag(iIndex));
            return;
        }
        const QBase::ReturnWString lStored = iBag->GetValue(iIndex);
        if (mEscaping.HoldsEscape(lStored))
        {
            hWriteValue(mEscaping.Unescape(lStored));
        }
        else
        {
            hWriteValue(lStored);
        }
    }

    // In pieces: a value may be as large as all that has been written before.
    void hWriteValue(std::wstring_view iValue)
    {
        if (mOptions.mIsTyped && IsScalar(iValue))
        {
            AppendUtf8(iValue, mBuffer);
            return;
        }
        mBuffer += '"';
        for (std::size_t lStart = 0; lStart < iValue.size(); lStart += gBuffer)
        {
            AppendJsonCharacters(iValue.substr(lStart, gBuffer), mBuffer);
            if (mBuffer.size() > gBuffer)
            {
                hFlush();
            }
        }
        mBuffer += '"';
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
    ToJsonOptions lOptions = iOptions;
    lOptions.mInputs.mSecrets.mShowSecrets = !iOptions.mIsRedacted; // where all is converted, none is looked for
    lOptions.mIndent = iOptions.mHasLines ? -1 : iOptions.mIndent;
    return ForEachBag(lOptions.mInputs, iStreams, [&](const Document& iDocument, bool) {
        if (!iOptions.mIsRedacted)
        {
            JsonWriter(lOptions, iDocument.mBag, iStreams.mOut).Write();
            return;
        }
        Document lDocument = iDocument;
        TakeOutSecrets(lDocument, false, iStreams);
        JsonWriter(lOptions, lDocument.mBag, iStreams.mOut).Write();
    });
}

} // namespace TalBaseTool
