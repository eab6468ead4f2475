// Which names and values a text gives back, given that all around them is in order: the rule that copying nests and
// telling callers about faults rest on.
//
// A run of text is read as it was written where
// - it is not empty and contains no delimiter,
// - none begins in it and ends in the delimiter behind it: that one would be found first,
// - a value would not be escaped while it is read.
// No run that breaks the rule can come from any text with these delimiters, wherever it stands; but for escapes, of
// which the default delimiters may contain characters (see IsNeutralToEscapes).

#ifndef TALBASE_PRIVATESOURCE_TEXTRULE_H
#define TALBASE_PRIVATESOURCE_TEXTRULE_H

#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PrivateSource/ValueContent.h"
#include "TalBase/TextCheck.h"

#include <optional>
#include <string_view>
#include <vector>

namespace QTalBase
{

// Whether runs of text end where their delimiters begin, in time linear in the runs. Holds views of the delimiters, of
// which neither may occur in the other.
class RunGuard
{
public:
    // Throws std::bad_alloc.
    RunGuard(std::wstring_view iBegin, std::wstring_view iEnd);

    // Whether no delimiter begins inside a run that is followed by the begin delimiter (0) or the end delimiter (1).
    bool IsKept(std::wstring_view iRun, std::size_t iFollower);

private:
    struct Delimiter
    {
        explicit Delimiter(std::wstring_view iText) : mText(iText), mSearcher(iText) {}

        std::wstring_view mText;
        TextSearcher mSearcher;
        // For each follower and length: whether a run that ends with so much of this delimiter lets it go on in the
        // follower.
        std::vector<bool> mGoesOn[2];
    };

    static void hFindWhereItGoesOn(Delimiter& oDelimiter, Delimiter& oFollower, std::vector<bool>& oGoesOn);

    Delimiter mDelimiters[2];
};

class TextRule
{
public:
    // For a pair that is allowed, of which it holds views. iIsDefault: whether the pair equals the defaults.
    TextRule(std::wstring_view iBegin, std::wstring_view iEnd, bool iIsDefault) noexcept
        : mBegin(iBegin), mEnd(iEnd), mIsDefault(iIsDefault)
    {
    }

    // All throw std::bad_alloc. Zero characters count in CheckName and CheckValue only: no bag has any.
    bool IsNameKept(std::wstring_view iName)
    {
        return hIsKept(iName, gBeginFollows);
    }

    bool IsValueKept(std::wstring_view iValue);

    // Whether all names and values of a bag are.
    bool IsKept(const ValueContent& iContent);

    TextFaultKind CheckName(std::wstring_view iName);
    TextFaultKind CheckValue(std::wstring_view iValue);

    // Whether a text without a header that begins with this name may be taken for one with a header.
    bool MayBeginLikeHeader(std::wstring_view iFirstName) const noexcept;

private:
    static constexpr std::size_t gBeginFollows = 0;
    static constexpr std::size_t gEndFollows = 1;

    bool hIsKept(std::wstring_view iRun, std::size_t iFollower);
    TextFaultKind hCheck(std::wstring_view iRun, std::size_t iFollower);

    std::wstring_view mBegin;
    std::wstring_view mEnd;
    bool mIsDefault;
    std::optional<RunGuard> mGuard; // made for the first run that may need it
};

} // namespace QTalBase

#endif
