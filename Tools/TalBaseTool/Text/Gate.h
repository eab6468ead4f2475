// The gate through which everything goes that is shown of a text: names, values, delimiters, excerpts, paths and
// losses. As long as a sensitive name and its value stand whole in a text, that value is not shown, whatever else is
// wrong with the text. The gate knows the raw text, because damage moves names and values out of their places.
//
//   - A text without a sensitive name is shown as it is, however damaged.
//   - In good order is a text that reads without an error, with a header as the library writes it, or without one and
//     with the pair that it was given, with delimiters that hold no sensitive name and with none inside one, and if it
//     has nested bags with ones that a header can carry, since others make something else of those. There a sensitive
//     name counts where it is a word of its own: as a name, or inside a longer one, it hides the value or the bag that
//     it names, and what follows it in the longer name; inside a value it hides that value. Nothing else is hidden, but
//     for what HiddenParts.h says of delimiters of one character.
//   - Of any other text with a sensitive name in it, also as a part of a longer word, nothing is shown: no name, value,
//     delimiter or excerpt; only places, counts, structure, and the reason.

#ifndef TALBASETOOL_TEXT_GATE_H
#define TALBASETOOL_TEXT_GATE_H

#include "Text/Delimiters.h"
#include "Text/HiddenParts.h"
#include "Text/SensitiveNames.h"

#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

// What the command line says of secrets.
struct SecretOptions
{
    bool mShowSecrets = false;
    std::vector<std::string> mNames; // sensitive ones besides the library's and the environment's
};

// Throws UsageError for a name that is not UTF-8.
std::shared_ptr<const SensitiveNames> ReadSensitiveNames(const SecretOptions& iOptions);

class Gate
{
public:
    enum class Opening
    {
        Everything, // no sensitive name is in the text, or secrets are to be shown
        Masked,     // the text is in good order
        Nothing     // it is not
    };

    // Before a text is looked at, nothing is hidden.
    Gate() = default;

    // iPair: the pair that the text is read with, null for one with a header. iIsRead: whether it reads without error.
    Gate(const SecretOptions& iOptions, const std::wstring& iText, const std::optional<DelimiterTexts>& iPair,
         bool iIsRead);

    // For what comes from no text form but has names that were read without an error, such as a JSON document.
    static Gate ForNames(const SecretOptions& iOptions);

    // Hides also what another gate hides: for a bag that is made of several texts.
    void Join(const Gate& iOther);

    // Shows and hides as in a text in good order, whatever the text: for those who know it.
    void TakeForGood();

    Opening GetOpening() const
    {
        return mOpening;
    }

    // Why nothing is shown, for people; empty where something is.
    std::string GetReason() const;

    // Whether the value of a plain property is hidden. iValue: as a caller sees it, or as it is stored.
    bool HidesValue(std::wstring_view iName, std::wstring_view iValue) const
    {
        return mOpening != Opening::Everything && hHidesValue(iName, iValue);
    }

    // Whether a nested bag is hidden, with all that is in it.
    bool HidesBag(std::wstring_view iName) const
    {
        return mOpening != Opening::Everything && hHidesBag(iName);
    }

    // Whether a name, or a part of it, is hidden.
    bool HidesName(std::wstring_view iName) const
    {
        return mOpening != Opening::Everything && hShownPart(iName).size() != iName.size();
    }

    // Where something is hidden in the text that the gate was made for, in order. Goes through all of it.
    std::vector<TextPart> FindParts(std::wstring_view iText) const;

    // What of a name or of a delimiter may be shown, fit to be shown.
    std::string ShowName(std::wstring_view iName) const;
    std::string ShowDelimiter(std::wstring_view iDelimiter) const;

    // The path of a property; what stands below a hidden bag is hidden.
    std::string ShowPath(const Path& iPath) const;

    // The same where only the last gMostNames names are at hand, or all that there are, and the number of names.
    // iIsBelowHidden: whether the first of those names stands in a hidden bag.
    std::string ShowPath(const Path& iLast, std::size_t iLevel, bool iIsBelowHidden) const;

private:
    bool hHidesValue(std::wstring_view iName, std::wstring_view iValue) const;
    bool hHidesBag(std::wstring_view iName) const;
    bool hIsNeighbour(std::wstring_view iName) const;
    std::wstring_view hShownPart(std::wstring_view iName) const;

    std::shared_ptr<const SensitiveNames> mNames;
    Opening mOpening = Opening::Everything;
    DelimiterTexts mPair; // of a text in good order
    std::size_t mContent = 0;
    std::set<std::wstring> mNeighbours; // names of properties that are hidden for what stands before them
};

// Says why nothing of a text is shown, where that is so.
void ReportHidden(const std::string& iFile, const Gate& iGate, std::ostream& oErr);

} // namespace TalBaseTool

#endif
