#include "Commands.h"

#include "Errors.h"
#include "Escaping.h"
#include "Files.h"
#include "Progress.h"
#include "Text.h"

#include <algorithm>
#include <cwctype>

namespace TalBaseTool
{

namespace
{

using QTalBase::TextCheckResult;
using QTalBase::TextRemark;
using QTalBase::TextRemarkKind;

constexpr std::size_t gBefore = 40; // characters of a line that are shown before a place, and at it and behind
constexpr std::size_t gBehind = 36;
constexpr std::size_t gLongestName = 64; // that is looked for before a value
constexpr wchar_t gMask = L'•';

bool IsWordCharacter(wchar_t iCharacter)
{
    return (iCharacter >= L'a' && iCharacter <= L'z') || (iCharacter >= L'A' && iCharacter <= L'Z') ||
           (iCharacter >= L'0' && iCharacter <= L'9') || iCharacter == L'_';
}

// The text around a place, in which values that follow a sensitive name are masked, however broken the text is.
class Excerpts
{
public:
    // iPair: the delimiters, or null where they are not known.
    Excerpts(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair, bool iShowSecrets)
        : mText(iText),
          mPair(iPair.value_or(DelimiterTexts{BEGIN, END})),
          mIsPairKnown(iPair.has_value()),
          mShowSecrets(iShowSecrets),
          mSensitive(mPair.mBegin.c_str(), mPair.mEnd.c_str())
    {
    }

    // Two lines: an excerpt of the line, and a caret under the place.
    std::string Make(std::size_t iPosition, std::size_t iLength, const Palette& iPalette, Style iStyle) const
    {
        const std::size_t lLine = mText.rfind(L'\n', iPosition == 0 ? 0 : iPosition - 1);
        const std::size_t lLineStart = iPosition == 0 || lLine == std::wstring::npos ? 0 : lLine + 1;
        const std::size_t lLineStop = std::min(mText.find(L'\n', iPosition), mText.size());
        const std::size_t lStart = std::max(lLineStart, iPosition - std::min(iPosition, gBefore));
        const std::size_t lStop = std::min(lLineStop, iPosition + gBehind);
        const std::wstring lShown = hMasked(lStart, lStop);
        const std::wstring lBefore =
            (lStart > lLineStart ? L"…" : L"") + MakePrintable(std::wstring_view(lShown).substr(0, iPosition - lStart));
        const std::wstring lAt = MakePrintable(std::wstring_view(lShown).substr(iPosition - lStart, iLength));
        const std::wstring lBehind =
            MakePrintable(std::wstring_view(lShown).substr(std::min(lShown.size(), iPosition - lStart + iLength))) +
            (lStop < lLineStop ? L"…" : L"");
        const std::string lCaret = "^" + std::string(std::max<std::size_t>(GetWidth(lAt), 1) - 1, '~');
        return "  " + ToUtf8(lBefore + lAt + lBehind) + "\n  " + std::string(GetWidth(lBefore), ' ') +
               iPalette.Paint(iStyle, lCaret) + "\n";
    }

private:
    // A part of the text.
    std::wstring hMasked(std::size_t iStart, std::size_t iStop) const
    {
        std::wstring lPart = mText.substr(iStart, iStop - iStart);
        if (mShowSecrets)
        {
            return lPart;
        }
        // A value that reaches into the part has its name not far before the delimiter that comes last before it.
        std::size_t lPlace = std::min(mText.rfind(mPair.mBegin, iStart), iStart);
        lPlace -= std::min(lPlace, gLongestName);
        while (lPlace > 0 && IsWordCharacter(mText[lPlace - 1]))
        {
            --lPlace;
        }
        while (lPlace < iStop)
        {
            const std::size_t lWordStop = hFindWordStop(lPlace);
            if (lWordStop > lPlace && mSensitive.IsSensitive(mText.substr(lPlace, lWordStop - lPlace).c_str()))
            {
                lPlace = hMaskValue(lWordStop, iStart, lPart);
                continue;
            }
            lPlace = std::max(lWordStop, lPlace + 1);
        }
        return lPart;
    }

    std::size_t hFindWordStop(std::size_t iPlace) const
    {
        while (iPlace < mText.size() && IsWordCharacter(mText[iPlace]))
        {
            ++iPlace;
        }
        return iPlace;
    }

    // Masks what follows a sensitive name, in the part that begins at a place. Returns where the value ends.
    std::size_t hMaskValue(std::size_t iNameStop, std::size_t iPartStart, std::wstring& oPart) const
    {
        const bool lHasDelimiter = mText.compare(iNameStop, mPair.mBegin.size(), mPair.mBegin) == 0;
        const std::size_t lStart = iNameStop + (lHasDelimiter ? mPair.mBegin.size() : 0);
        const std::size_t lStop = mIsPairKnown ? std::min(mText.find(mPair.mEnd, lStart), mText.size()) : mText.size();
        for (std::size_t lPlace = std::max(lStart, iPartStart); lPlace < std::min(lStop, iPartStart + oPart.size());
             ++lPlace)
        {
            oPart[lPlace - iPartStart] = gMask;
        }
        return lStop;
    }

    const std::wstring& mText;
    DelimiterTexts mPair;
    bool mIsPairKnown;
    bool mShowSecrets;
    SensitiveNames mSensitive;
};

std::string Describe(const TextRemark& iRemark, const std::wstring& iText)
{
    const std::string lName =
        "'" + ShowValue(std::wstring_view(iText).substr(iRemark.mPosition, iRemark.mLength), 60) + "'";
    switch (iRemark.mKind)
    {
    case TextRemarkKind::IgnoredTail:
        return Count(iRemark.mLength, "character") + " behind the last delimiter " +
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
    FileCheck(const CheckOptions& iOptions, const std::string& iFile, const Streams& iStreams)
        : mOptions(iOptions), mFile(iFile), mStreams(iStreams), mPalette(iOptions.mColor, iStreams.mIsErrTerminal)
    {
    }

    int Run()
    {
        const std::optional<DelimiterTexts> lGiven = ReadPair(mOptions.mPair);
        mText = ReadText(mFile);
        const TextCheckResult lResult = hCheck(lGiven);
        const Excerpts lExcerpts(mText, FindPair(mText, lResult, lGiven), mOptions.mShowSecrets);
        const std::size_t lWarnings = hWarn(lResult, lExcerpts);
        if (!lResult.mIsValid)
        {
            const std::size_t lPosition = StepBeforeLineEnd(mText, lResult.mPosition);
            mStreams.mErr << ShowPlace(mFile, FindPlace(mText, lPosition))
                          << mPalette.Paint(Style::Error, ShowMessage(lResult.mMessage.c_str())) << '\n'
                          << lExcerpts.Make(lPosition, 1, mPalette, Style::Error);
            return ExitBad;
        }
        mStreams.mOut << ShowFile(mFile) << ": valid"
                      << (lWarnings > 0 ? ", " + Count(lWarnings, "warning") : std::string()) << '\n';
        return lWarnings > 0 && mOptions.mIsStrict ? ExitBad : ExitGood;
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

    // Returns how many warnings there are; not all of them are shown.
    std::size_t hWarn(const TextCheckResult& iResult, const Excerpts& iExcerpts)
    {
        std::size_t lCount = 0;
        for (const TextRemark& lRemark : iResult.mRemarks)
        {
            if (IsLineEnd(lRemark, mText) || ++lCount > mOptions.mMaxWarnings)
            {
                continue;
            }
            mStreams.mErr << ShowPlace(mFile, FindPlace(mText, lRemark.mPosition))
                          << mPalette.Paint(Style::Warning, "warning: " + Describe(lRemark, mText)) << '\n'
                          << iExcerpts.Make(lRemark.mPosition, lRemark.mLength, mPalette, Style::Warning);
        }
        if (lCount > mOptions.mMaxWarnings && mOptions.mMaxWarnings > 0)
        {
            mStreams.mErr << ShowFile(mFile) << ": " << Count(lCount - mOptions.mMaxWarnings, "more warning") << '\n';
        }
        return lCount;
    }

    const CheckOptions& mOptions;
    std::string mFile;
    const Streams& mStreams;
    Palette mPalette;
    std::wstring mText;
};

} // namespace

int Check(const CheckOptions& iOptions, const Streams& iStreams)
{
    std::vector<std::string> lFiles = iOptions.mFiles;
    if (lFiles.empty())
    {
        lFiles.emplace_back("-");
    }
    int lStatus = ExitGood;
    for (const std::string& lFile : lFiles)
    {
        try
        {
            lStatus = std::max(lStatus, FileCheck(iOptions, lFile, iStreams).Run());
        }
        catch (const TextError& lError) // not even UTF-8
        {
            iStreams.mErr << lError.what() << '\n';
            lStatus = std::max<int>(lStatus, ExitBad);
        }
        catch (const IoError& lError)
        {
            iStreams.mErr << "talbase: " << lError.what() << '\n';
            lStatus = ExitTrouble;
        }
    }
    return lStatus;
}

} // namespace TalBaseTool
