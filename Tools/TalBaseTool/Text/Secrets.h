// Where the secrets of a text stand: what follows a sensitive name, a value or a whole nested bag. For whoever shows
// parts of texts that may be broken, so in doubt more is taken for a secret than is one.

#ifndef TALBASETOOL_TEXT_SECRETS_H
#define TALBASETOOL_TEXT_SECRETS_H

#include "Text/Delimiters.h"
#include "Text/SensitiveNames.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TalBaseTool
{

enum class HeaderKind
{
    Usual,        // or none
    NotAsWritten, // the library would write another one for the pair that it names
    Swallowing    // its begin delimiter looks as if properties had become part of it: "++++a++++1"
};
HeaderKind FindHeaderKind(std::wstring_view iText, const QTalBase::TextCheckResult& iResult,
                          const DelimiterTexts& iPair);

class Secrets
{
public:
    // iText: must outlive this, and has no zero character. iPair: null where it is not known; then all that follows the
    // first sensitive name is secret.
    Secrets(const std::wstring& iText, const QTalBase::TextCheckResult& iResult,
            const std::optional<DelimiterTexts>& iPair);

    bool Has(std::size_t iPlace) const;

    // Masks the secrets in a part of the text that begins at a place.
    void Mask(std::size_t iStart, std::wstring& oPart) const;

private:
    struct Span
    {
        std::size_t mStart;
        std::size_t mStop;
    };

    enum class Kind
    {
        Begin,
        End,
        None // the end of the text
    };

    struct Delimiter
    {
        Kind mKind;
        Span mPlace;
    };

    void hScan(std::size_t iPlace);
    bool hScanWithoutPair(std::size_t iStop);
    void hLookAt(const Span& iRun, const Delimiter& iNext);
    void hFollow(const Span& iRun, const Delimiter& iNext);
    Delimiter hFindDelimiter(std::size_t iPlace);
    std::optional<Span> hFindName(const Span& iRun);
    std::optional<Span> hFindNameInWord(const Span& iWord);
    bool hIsSensitive(const Span& iName);

    const std::wstring& mText;
    DelimiterTexts mPair;
    bool mIsHeaderUsual;
    bool mIsWhole;      // valid, with a usual header
    std::size_t mShown; // an invalid text is shown around here
    SensitiveNames mSensitive;
    std::unordered_map<std::wstring, bool> mKnown;
    std::size_t mNextBegin = 0; // from the place that was looked at last, or before it
    std::size_t mNextEnd = 0;
    bool mIsValue = false;  // a begin delimiter stands before what is looked at
    std::size_t mDepth = 0; // of bags and values that are open behind a sensitive name
    std::size_t mHiddenFrom = 0;
    std::vector<Span> mSpans; // in order
};

} // namespace TalBaseTool

#endif
