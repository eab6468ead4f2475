// Takes the secrets out of a bag, by the rule by which they are hidden where it is shown.

#ifndef TALBASETOOL_COMMANDS_REDACTION_H
#define TALBASETOOL_COMMANDS_REDACTION_H

#include "File/Document.h"

#include <cstddef>

namespace TalBaseTool
{

// Takes out the properties that the document's gate hides, and the bags that are left without any, with a word about
// those. Returns the number of properties. Throws RefusedError for a text of which the gate shows nothing: what is
// secret in it does not stand where it should. iIsForced: then those are taken out that would be hidden in a text in
// good order.
std::size_t TakeOutSecrets(Document& oDocument, bool iIsForced, const Streams& iStreams);

} // namespace TalBaseTool

#endif
