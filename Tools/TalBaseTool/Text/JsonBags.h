// JSON is read event by event and written into a text form as it comes, so that no document is held in memory beside
// the bag. An object becomes a bag; an array becomes a bag whose names are the numbers from 0 on.

#ifndef TALBASETOOL_TEXT_JSONBAGS_H
#define TALBASETOOL_TEXT_JSONBAGS_H

#include "Text/Gate.h"
#include "Text/JsonReport.h"
#include "Text/TextBuilder.h"

#include <string>
#include <string_view>

namespace TalBaseTool
{

// Reads a document, an object or an array, into a builder. iFile: for messages. Returns where the first of what a bag
// cannot hold begins, but for what stands behind a value, or null. Throws TextError for what is no JSON; the builder is
// then of no use.
const char* ReadJson(const std::string& iFile, std::string_view iBytes, const Gate& iGate, TextBuilder& oBuilder,
                     JsonReport& oReport);

// Throws TextError for what a bag cannot hold.
[[noreturn]] void RefuseLoss(const std::string& iFile, std::string_view iBytes, const char* ipFirstLoss);

} // namespace TalBaseTool

#endif
