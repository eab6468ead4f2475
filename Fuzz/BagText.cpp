// Reading texts into bags: the outcome and the bag are those of the plain implementation, a text that cannot be read
// changes nothing, and what was read comes back from its own text and stream exactly where no fault of its text is
// found. Checking a text says what reading it does, tells of losses exactly where there are any, and of a tail exactly
// where there is one. The text's UTF-8 is read as the text.
//
// Two bytes choose the encoding, the delimiters and the bag; the rest is the text. In the first encoding small bytes
// stand for delimiters, pieces of them, words of headers and repetitions, and all others for themselves.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/CheckedText.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Convert.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Bytes.h"
#include "Tests/Support/BagTexts.h"
#include "Tests/Support/ReadBack.h"
#include "Tests/Support/RepointedDefaults.h"
#include "Tests/Support/TextChecks.h"
#include "Tests/Support/Twins.h"

#include <algorithm>
#include <cwchar>

namespace
{

using QTalBase::PropertyBag;
using Support::BagPtr;
using Support::DelimiterPair;
using Support::Describe;
using Support::Library;
using Support::MakeBag;
using Support::Outcome;
using Support::PlainSide;

const std::size_t gLongestText = 60000;

struct Case
{
    bool mIsFilled;      // whether the bag holds something before
    bool mIsRepointed;   // whether BEGIN and END are the delimiters
    DelimiterPair mPair; // those of the bag
    std::wstring mText;
};

std::wstring HeaderOf(const DelimiterPair& iPair)
{
    return L"EndDelimiter" + iPair.mEnd + L"BeginDelimiter" + iPair.mBegin + iPair.mEnd;
}

// Appends what a byte stands for.
void AppendToken(std::wstring& oText, std::uint8_t iByte, const DelimiterPair& iPair)
{
    const std::wstring lWords[] = {iPair.mBegin,
                                   iPair.mEnd,
                                   iPair.mBegin.substr(0, 1),
                                   iPair.mBegin.substr(iPair.mBegin.size() - 1),
                                   iPair.mEnd.substr(0, 1),
                                   iPair.mEnd.substr(iPair.mEnd.size() - 1),
                                   L"&#42;",
                                   L"&#43;",
                                   L"EndDelimiter",
                                   L"\n",
                                   L"BeginDelimiter",
                                   HeaderOf(iPair),
                                   L"EndDelimiter***BeginDelimiter++++***",
                                   L"FTPServerPassword",
                                   std::wstring(30, L'x'),
                                   L"k" + iPair.mBegin + L"v" + iPair.mEnd,
                                   oText.substr(oText.size() - std::min(oText.size(), std::size_t{8})),
                                   oText.size() < gLongestText / 2 ? oText : L"",
                                   std::to_wstring(oText.size()),
                                   iPair.mEnd + iPair.mEnd + iPair.mEnd,
                                   L"\xD800",
                                   L"\x10FFFF"};
    if (iByte < std::size(lWords))
    {
        oText += lWords[iByte];
    }
    else
    {
        oText += static_cast<wchar_t>(iByte);
    }
}

std::wstring Tokens(Fuzz::Input& iInput, const DelimiterPair& iPair)
{
    std::wstring lText;
    while (!iInput.IsAtEnd() && lText.size() < gLongestText)
    {
        AppendToken(lText, iInput.Byte(), iPair);
    }
    return lText;
}

bool IsValid(const DelimiterPair& iPair)
{
    return Outcome([&] {
               MakeBag(PlainSide, iPair.mBegin, iPair.mEnd);
               return std::wstring();
           }) == L"";
}

Case ReadCase(Fuzz::Input& iInput)
{
    const unsigned int lFlags = iInput.Byte();
    const auto& lPairs = Support::OddPairs();
    const DelimiterPair lPair = lPairs[iInput.Below(static_cast<unsigned int>(lPairs.size()))];
    Case lCase;
    lCase.mIsFilled = (lFlags & 1) != 0;
    lCase.mIsRepointed = (lFlags & 2) != 0;
    lCase.mPair = IsValid(lPair) ? lPair : lPairs[0];
    lCase.mText = (lFlags & 4) != 0 ? HeaderOf(lCase.mPair) : L"";
    lCase.mText += (lFlags & 8) != 0 ? iInput.WideRest() : Tokens(iInput, lCase.mPair);
    lCase.mText.resize(std::wcslen(lCase.mText.c_str())); // a pointer is all that a reader gets
    return lCase;
}

bool CanHeaderCarry(const DelimiterPair& iPair)
{
    return Outcome([&] {
               const BagPtr lBag = MakeBag(PlainSide, HeaderOf(iPair));
               return std::wstring(lBag->GetBeginDelimiter()) + L" " + lBag->GetEndDelimiter();
           }) == iPair.mBegin + L" " + iPair.mEnd;
}

BagPtr NewBag(Support::Side iSide, const Case& iCase)
{
    const BagPtr lBag = MakeBag(iSide, iCase.mPair.mBegin, iCase.mPair.mEnd);
    if (iCase.mIsFilled)
    {
        // What a delimiter clashes with is left out.
        Outcome([&] {
            lBag->SetProperty(L"k", L"old", false);
            lBag->SetProperty(L"n", (L"k" + iCase.mPair.mBegin + L"v" + iCase.mPair.mEnd).c_str(), true);
            return std::wstring();
        });
    }
    return lBag;
}

std::wstring Add(const BagPtr& iBag, const std::wstring& iText)
{
    return Outcome([&] {
        iBag->AddString(iText.c_str());
        return std::wstring(L"read");
    });
}

std::wstring Created(Support::Side iSide, const std::wstring& iText)
{
    return Outcome([&] { return Describe(*MakeBag(iSide, iText)); });
}

// Equal to itself is a bag without escaped values only; it is always its own subset, but not with a null.
bool HasEscapedValues(const PropertyBag& iBag)
{
    bool lHas = false;
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        const std::wstring lName = iBag.GetName(lIndex).c_str();
        lHas = lHas || (iBag.IsEmbedded(lIndex)
                            ? HasEscapedValues(*iBag.GetValuePropertyBag(lIndex))
                            : std::wstring(iBag.GetValue(lIndex)) != iBag.GetProperty(lName.c_str()).c_str());
    }
    return lHas;
}

// FindTextFault knows without the text what writing and reading it shows.
void CheckRoundTrip(const PropertyBag& iBag)
{
    for (const bool lWithHeader : {false, true})
    {
        const bool lComesBack = QTalBase::FindTextFault(iBag, lWithHeader, nullptr, nullptr).IsNone();
        Fuzz::Require(lComesBack == Support::ReadsBack(iBag, lWithHeader), "a bag's text is misjudged");
    }
    if (QTalBase::FindTextFault(iBag, true, nullptr, nullptr).IsNone())
    {
        QSerialization::MemoryWriteDataStream lWriter;
        iBag.Serialize(lWriter);
        QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lWriter.GetBytes().size());
        const BagPtr lRead = MakeBag(Library);
        lRead->DeSerialize(lReader);
        Fuzz::RequireEqual(Describe(*lRead), Describe(iBag), "a bag does not come back from its stream");
        Fuzz::Require(lReader.GetRemaining() == 0, "a bag leaves something of its stream");
    }
}

void CheckBag(const PropertyBag& iBag)
{
    const BagPtr lClone = iBag.Clone();
    Fuzz::RequireEqual(Describe(*lClone), Describe(iBag), "a clone differs");
    Fuzz::Require(iBag.IsSubset(&iBag), "a bag is not its own subset");
    if (Support::DepthOf(iBag) < 100)
    {
        Fuzz::Require(iBag.operator==(*lClone) != HasEscapedValues(iBag), "== is wrong about escaped values");
    }
    CheckRoundTrip(iBag);
}

// As Outcome writes it, without the class.
bool HasOutcome(const QTalBase::TextCheckResult& iCheck, const std::wstring& iOutcome)
{
    const std::wstring lMessage = iCheck.mMessage.c_str();
    const bool lIsThrown = iOutcome.rfind(L"throws ", 0) == 0;
    return iCheck.mIsValid ? !lIsThrown
                           : lIsThrown && (iOutcome == L"throws std::out_of_range" ||
                                           (iOutcome.size() > lMessage.size() &&
                                            iOutcome.substr(iOutcome.size() - lMessage.size()) == lMessage));
}

// The text's UTF-8 is read as the text, and what is written of it is the bag's text.
void CheckBytes(const std::wstring& iText)
{
    const std::string lBytes = QBase::WideCharToUTF8(iText.c_str(), false);
    BagPtr lBag;
    const std::wstring lOutcome = Outcome([&] {
        lBag = QTalBase::CreatePropertyBagFromUTF8(lBytes);
        return Describe(*lBag);
    });
    Fuzz::RequireEqual(lOutcome, Created(Library, QBase::UTF8ToWideChar(lBytes, true)), "bytes make another bag");
    if (lBag)
    {
        const QBase::ReturnWString lText = lBag->GetString(true, nullptr, nullptr, true);
        Fuzz::RequireEqual(QBase::UTF8ToWideChar(QTalBase::PropertyBagToUTF8(*lBag), true), lText.c_str(),
                           "a bag makes other bytes");
    }
}

void CheckPlaces(const QTalBase::TextCheckResult& iCheck, const std::wstring& iText)
{
    Fuzz::Require(iCheck.mPosition <= (iCheck.mIsValid ? 0 : iText.size()), "a failure has no place in the text");
    std::size_t lLast = 0;
    for (const QTalBase::TextRemark& lRemark : iCheck.mRemarks)
    {
        Fuzz::Require(lRemark.mPosition >= lLast && lRemark.mLength > 0 &&
                          lRemark.mPosition + lRemark.mLength <= iText.size(),
                      "a remark has no place in the text");
        lLast = lRemark.mPosition;
    }
}

bool TellsOfLoss(const QTalBase::TextCheckResult& iCheck)
{
    using Kind = QTalBase::TextRemarkKind;
    return std::any_of(iCheck.mRemarks.begin(), iCheck.mRemarks.end(), [](const QTalBase::TextRemark& iRemark) {
        return iRemark.mKind == Kind::EmptyValue || iRemark.mKind == Kind::EmptyBag ||
               iRemark.mKind == Kind::RepeatedName;
    });
}

// One remark tells of all that is behind the last delimiter; where nothing is, none does.
void CheckTail(const QTalBase::TextCheckResult& iCheck, std::size_t iTail, const std::wstring& iText)
{
    std::size_t lTold = 0;
    for (const QTalBase::TextRemark& lRemark : iCheck.mRemarks)
    {
        if (lRemark.mKind == QTalBase::TextRemarkKind::IgnoredTail)
        {
            Fuzz::Require(lTold == 0 && lRemark.mPosition + lRemark.mLength == iText.size(), "a tail is misplaced");
            lTold = lRemark.mLength;
        }
    }
    Fuzz::Require(!iCheck.mIsValid || lTold == iTail, "the tail is not what is behind the last delimiter");
}

void CheckTextChecks(const Case& iCase)
{
    const Support::TextShape lShape = Support::ShapeOfText(iCase.mText, iCase.mPair);
    const QTalBase::TextCheckResult lCreation = Fuzz::CheckText(iCase.mText);
    Fuzz::Require(HasOutcome(lCreation, Created(Library, iCase.mText)),
                  "a text is checked wrongly for CreatePropertyBag");
    CheckPlaces(lCreation, iCase.mText);
    CheckTail(lCreation, lShape.mTail, iCase.mText);

    const BagPtr lBag = MakeBag(Library, iCase.mPair.mBegin, iCase.mPair.mEnd);
    const QTalBase::TextCheckResult lCheck = Fuzz::CheckText(iCase.mText, iCase.mPair);
    Fuzz::Require(HasOutcome(lCheck, Add(lBag, iCase.mText)), "a text is checked wrongly for AddString");
    CheckPlaces(lCheck, iCase.mText);
    CheckTail(lCheck, lShape.mTail, iCase.mText);
    // Every begin delimiter begins something that is in the bag, where no remark says otherwise.
    const bool lIsWhole = Support::CountAll(*lBag) == lShape.mBegins;
    Fuzz::Require(!lCheck.mIsValid || TellsOfLoss(lCheck) || lIsWhole, "a text loses something and no remark says so");
    // Where a nest that is handed on as text reads back as another, that may hold as many properties as were lost.
    const bool lIsPlain = !iCase.mIsRepointed && CanHeaderCarry(iCase.mPair);
    Fuzz::Require(!lCheck.mIsValid || !lIsPlain || !TellsOfLoss(lCheck) || !lIsWhole,
                  "a text loses nothing and a remark says otherwise");
}

void CheckAgainstPlain(const Case& iCase, const std::wstring& iOutcome, const std::wstring& iState)
{
    const BagPtr lPlain = NewBag(PlainSide, iCase);
    Fuzz::RequireEqual(iOutcome, Add(lPlain, iCase.mText), "AddString differs from the plain implementation's");
    Fuzz::RequireEqual(iState, Describe(*lPlain), "the bag differs from the plain implementation's");
    Fuzz::RequireEqual(Created(Library, iCase.mText), Created(PlainSide, iCase.mText),
                       "CreatePropertyBag differs from the plain implementation's");
}

// What is said of a text is what reading it throws, with a place inside the text.
void CheckWhatIsSaid(const Case& iCase)
{
    const QTalBase::TextCheckResult lSaid = Fuzz::CheckText(iCase.mText);
    Fuzz::RequireEqual(Support::DescribeCheck(lSaid), Support::DescribeReading([&] { MakeBag(Library, iCase.mText); }),
                       "CheckText differs from CreatePropertyBag");
    Fuzz::Require(Support::IsInside(lSaid, iCase.mText), "CheckText names a place outside of the text");
    const QTalBase::TextCheckResult lSaidWithPair = Fuzz::CheckText(iCase.mText, iCase.mPair);
    const auto lAdd = [&] { MakeBag(Library, iCase.mPair.mBegin, iCase.mPair.mEnd)->AddString(iCase.mText.c_str()); };
    Fuzz::RequireEqual(Support::DescribeCheck(lSaidWithPair), Support::DescribeReading(lAdd),
                       "CheckText with delimiters differs from AddString");
    Fuzz::Require(Support::IsInside(lSaidWithPair, iCase.mText), "CheckText names a place outside of the text");
}

void Check(const Case& iCase)
{
    CheckWhatIsSaid(iCase);
    const BagPtr lBag = NewBag(Library, iCase);
    const std::wstring lBefore = Describe(*lBag);
    const std::wstring lOutcome = Add(lBag, iCase.mText);
    const std::wstring lState = Describe(*lBag);
    // A nest is read once more while it is merged, which fails where no header can carry the delimiters.
    const bool lIsMergeRefused =
        lOutcome.find(L"PropertyBagImpl::SetProperty;") != std::wstring::npos || !CanHeaderCarry(iCase.mPair);
    if (lOutcome != L"read" && !lIsMergeRefused)
    {
        Fuzz::RequireEqual(lState, lBefore, "a text that cannot be read changed the bag");
    }
    if (Support::IsAffordable(iCase.mText, iCase.mPair))
    {
        CheckAgainstPlain(iCase, lOutcome, lState);
    }
    if (lOutcome == L"read")
    {
        CheckBag(*lBag);
    }
    CheckTextChecks(iCase);
    CheckBytes(iCase.mText);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    const Case lCase = ReadCase(lInput);
    const DelimiterPair lDefaults = lCase.mIsRepointed ? lCase.mPair : DelimiterPair{L"++++", L"***"};
    const Support::RepointedDefaults lRepointed(lDefaults.mBegin.c_str(), lDefaults.mEnd.c_str());
    Check(lCase);
    return 0;
}
