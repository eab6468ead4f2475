// Reads a text form into a bag: its header, then its properties apart, then these into the bag.
//
// For example "EndDelimiter]BeginDelimiter[]a[1]n[k[v]]" read into {'a'='0' 'b'='2'}, whose pair is another: the header
// names "[" and "]", under which {'a'='1' 'n'={'k'='v'}} is read apart; merged, that makes {'b'='2' 'a'='1'
// 'n'={'k'='v'}}, where n has the bag's own pair. See "The header, and how loosely it is read" in Docs/TextFormat.md.
//
// All throw what PropertyBag::AddString throws. Until the whole text has been read the bag is unchanged.

#ifndef TALBASE_PRIVATESOURCE_TEXTREADER_H
#define TALBASE_PRIVATESOURCE_TEXTREADER_H

#include "TalBase/PrivateSource/BagState.h"

#include <cstddef>
#include <string_view>

namespace QTalBase
{

// Merges a text into a bag whose names occur once and whose class overrides nothing. Returns whether no nest of the
// text had to be read again (see BagBuilder).
bool AddText(BagState& oBag, std::wstring_view iText);

// Merges what was read into another bag. oEntry: the number of entries that are merged already, also after a failure.
void MergeRead(BagState& oBag, const BagState& iRead, bool iAreNestsFinal, std::size_t& oEntry);

// Reads a text for a bag into a new one, for the caller to merge.
NestPtr ReadApart(BagState& oBag, std::wstring_view iText);

// Reads a text into a new nested bag with that name and the delimiters of the bag that it is for.
NestPtr ReadNest(BagState& oBag, std::wstring_view iName, std::wstring_view iText);

// Reads a text whose header ends at a position, and named the pair, into a new bag with that pair.
NestPtr ReadNew(std::wstring_view iText, unsigned int iPosition, const DelimiterPair& iPair);

} // namespace QTalBase

#endif
