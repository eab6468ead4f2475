// What a text holds and the bag that is read from it does not, for those who write the bag over the text.

#ifndef TALBASETOOL_FILE_LOSSES_H
#define TALBASETOOL_FILE_LOSSES_H

#include "Text/Delimiters.h"
#include "Text/Gate.h"

#include <string>
#include <vector>

namespace TalBaseTool
{

// A line for each of the first few losses and one that counts the rest; none for a line end behind the text, which is
// kept. No values, and of names what the gate of the text shows. iChecked: what CheckText says of the text.
std::vector<std::string> DescribeLosses(const std::string& iFile, const std::wstring& iText,
                                        const QTalBase::TextCheckResult& iChecked, const Gate& iGate);

} // namespace TalBaseTool

#endif
