// Writes a document in the language of each library, by hand, so that no library's own writer decides what another one
// reads.

#ifndef BENCHMARKS_TEXTS_H
#define BENCHMARKS_TEXTS_H

#include "Data.h"

#include <string>

namespace Bench
{

// The text form of a bag with the default delimiters, header included.
std::wstring MakeBagText(const Record& iRecord);

// One JSON object without white space between its tokens.
std::wstring MakeJsonText(const Record& iRecord);

// One XML element "Bag" that has an element for each property, without white space between them.
std::wstring MakeXmlText(const Record& iRecord);

std::string ToUtf8(const std::wstring& iText);

} // namespace Bench

#endif
