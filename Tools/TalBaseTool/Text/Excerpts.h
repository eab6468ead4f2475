// Places of a text and what of it may be shown around them.

#ifndef TALBASETOOL_TEXT_EXCERPTS_H
#define TALBASETOOL_TEXT_EXCERPTS_H

#include "Text/Display.h"
#include "Text/Gate.h"
#include "Text/Place.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TalBaseTool
{

class Excerpts
{
public:
    // iText: must outlive this. iGate: the one that was made for it. iWidth: columns that a line may take; 0 for the
    // usual 80, which are the most in any case.
    Excerpts(const std::wstring& iText, const Gate& iGate, std::size_t iWidth = 0);

    // The place of the character at an index. Counts on from the last one where that stands before it, so that many
    // places in order take no longer than one.
    Place FindPlace(std::size_t iPosition);

    // Whether what stands at an index is hidden.
    bool IsHidden(std::size_t iPosition);

    // A name at a place, in quotes and cut to a number of characters, with a mask for what of it is hidden.
    std::string ShowName(std::size_t iPosition, std::size_t iLength, std::size_t iLongest);

    // Two lines: an excerpt of the line, and a caret under the place. Nothing where nothing of the text is shown.
    std::string Make(std::size_t iPosition, std::size_t iLength, const Palette& iPalette, Style iStyle);

private:
    const TextPart* hFindPart(std::size_t iPosition);
    std::size_t hStepBack(std::size_t iPosition);
    std::size_t hStepOn(std::size_t iPosition);
    std::size_t hCountColumns(std::size_t iStart, std::size_t iStop);
    std::wstring hShow(std::size_t iStart, std::size_t iStop);

    const std::wstring& mText;
    Gate mGate;
    std::size_t mColumns;                        // of what is shown of a line
    std::optional<std::vector<TextPart>> mParts; // that are hidden; looked for when something is to be shown
    std::size_t mPosition = 0;                   // of the last place
    Place mPlace;
};

} // namespace TalBaseTool

#endif
