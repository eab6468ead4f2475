// The delimiters that a text without a header is read with, as they are given on a command line, and as texts.

#ifndef TALBASETOOL_TEXT_DELIMITERS_H
#define TALBASETOOL_TEXT_DELIMITERS_H

#include "Text/Path.h"

#include "TalBase/TextCheck.h"

#include <optional>
#include <string>
#include <string_view>

namespace TalBaseTool
{

// As given: both, or none for a text with a header.
struct RawPair
{
    std::optional<std::string> mBegin;
    std::optional<std::string> mEnd;
};

// The same, decoded.
struct DelimiterTexts
{
    std::wstring mBegin;
    std::wstring mEnd;
};

// Throws UsageError where only one of the two is given or a text is not UTF-8.
std::optional<DelimiterTexts> ReadPair(const RawPair& iPair);

// Whether a text has a header, as the library sees it.
bool HasHeader(std::wstring_view iText);

// The pair to read a text with: none for one that has a header, as the library sees it. Throws what ReadPair and
// MakeBag throw.
std::optional<DelimiterTexts> PairOf(const std::wstring& iText, const RawPair& iPair);

// An empty bag with the delimiters. Throws UsageError for a pair that no bag may have.
BagPtr MakeBag(const DelimiterTexts& iPair);

// The bag that a text gives with a pair, or with its header. Throws what the library throws.
BagPtr ReadBag(const wchar_t* ipText, const std::optional<DelimiterTexts>& iPair);

// What the library says of a text, with a header or with a pair.
QTalBase::TextCheckResult CheckText(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair);

// The header that the library writes for a pair.
std::wstring WriteHeader(const DelimiterTexts& iPair);

enum class HeaderKind
{
    Usual,        // or none
    NotAsWritten, // the library would write another one for the pair that it names
    Swallowing    // its begin delimiter looks as if properties had become part of it: "++++a++++1"
};
HeaderKind FindHeaderKind(std::wstring_view iText, const QTalBase::TextCheckResult& iResult,
                          const DelimiterTexts& iPair);

} // namespace TalBaseTool

#endif
