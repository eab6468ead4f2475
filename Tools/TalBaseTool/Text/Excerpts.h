// Places of a text and what stands around them, without secrets.

#ifndef TALBASETOOL_TEXT_EXCERPTS_H
#define TALBASETOOL_TEXT_EXCERPTS_H

#include "Text/Display.h"
#include "Text/Place.h"
#include "Text/Secrets.h"

#include <cstddef>
#include <optional>
#include <string>

namespace TalBaseTool
{

class Excerpts
{
public:
    // iText, iResult: must outlive this. iPair: the delimiters, or null where they are not known.
    Excerpts(const std::wstring& iText, const QTalBase::TextCheckResult& iResult, std::optional<DelimiterTexts> iPair,
             bool iShowSecrets);

    // The place of the character at an index. Counts on from the last one where that stands before it, so that many
    // places in order take no longer than one.
    Place FindPlace(std::size_t iPosition);

    // Whether what stands at an index must not be shown.
    bool IsSecret(std::size_t iPosition);

    // Two lines: an excerpt of the line, and a caret under the place.
    std::string Make(std::size_t iPosition, std::size_t iLength, const Palette& iPalette, Style iStyle);

private:
    std::wstring hMasked(std::size_t iStart, std::size_t iStop);

    const std::wstring& mText;
    const QTalBase::TextCheckResult& mResult;
    std::optional<DelimiterTexts> mPair;
    bool mShowSecrets;
    std::optional<Secrets> mSecrets; // looked for when something is to be shown
    std::size_t mPosition = 0;       // of the last place
    Place mPlace;
};

} // namespace TalBaseTool

#endif
