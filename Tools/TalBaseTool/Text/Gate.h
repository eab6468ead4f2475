// The gate through which everything goes that is shown of a text: names, values, delimiters, excerpts, paths and
// losses. As long as a sensitive name and its value stand whole in a text, that value is not shown, whatever else is
// wrong with the text. The gate knows the raw text, because damage moves names and values out of their places.
//
//   - A text without a sensitive name is shown as it is, however damaged.
//   - In good order is a text that reads without an error, with a header as the library writes it, or without one and
//     with the pair that it was given, and with delimiters that hold no sensitive name. There a sensitive name counts
//     where it is a word of its own: as a name, or inside a longer one, it hides the value or the bag that it names,
//     and what follows it in the longer name; inside a value it hides that value. Nothing else is hidden.
//   - Of any other text with a sensitive name in it, also as a part of a longer word, nothing is shown: no name, value,
//     delimiter or excerpt; only places, counts, structure, and the reason.

#ifndef TALBASETOOL_TEXT_GATE_H
#define TALBASETOOL_TEXT_GATE_H

#include "Text/Delimiters.h"
#include "Text/SensitiveNames.h"

#include <memory>
#include <optional>
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

    Opening GetOpening() const
    {
        return mOpening;
    }

    // Why nothing is shown, for people; empty where something is.
    std::string GetReason() const;

    // Whether the value of a plain property is hidden. iValue: as a caller sees it, or as it is stored.
    bool HidesValue(std::wstring_view iName, std::wstring_view iValue) const;

    // Whether a nested bag is hidden, with all that is in it.
    bool HidesBag(std::wstring_view iName) const;

    // Whether a name is shown whole.
    bool HidesName(std::wstring_view iName) const;

    // What of a name, of a delimiter, or of a text from no certain place may be shown, fit to be shown.
    std::string ShowName(std::wstring_view iName) const;
    std::string ShowDelimiter(std::wstring_view iDelimiter) const;

    // The path of a property; what stands below a hidden bag is hidden.
    std::string ShowPath(const Path& iPath) const;

private:
    std::shared_ptr<const SensitiveNames> mNames;
    Opening mOpening = Opening::Everything;
};

} // namespace TalBaseTool

#endif
