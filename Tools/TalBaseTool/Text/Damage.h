// What operators damage most without making a text unreadable: it is read, but as something that nobody may have meant.
// Guesses, for warnings: a bag may hold all of it on purpose.

#ifndef TALBASETOOL_TEXT_DAMAGE_H
#define TALBASETOOL_TEXT_DAMAGE_H

#include "Text/Delimiters.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TalBaseTool
{

enum class DamageKind
{
    EmptyText,     // nothing but blanks and line ends
    LineEndInName, // a name that begins with a line end, which an editor has put between two properties
    NestAsText     // a value that reads as the text of a bag
};

struct Damage
{
    DamageKind mKind;
    std::size_t mPosition; // of the name or the value; of an empty text, its beginning
    std::size_t mLength;
};

// iText: one that can be read with the pair. iContent: where its properties begin. Takes time in proportion to its
// length.
std::vector<Damage> FindDamage(const std::wstring& iText, std::size_t iContent, const DelimiterTexts& iPair);

// For people; says nothing of what stands there.
const char* Describe(DamageKind iKind);

// Reading a header is loose; what it takes for delimiters may have been meant otherwise.
struct HeaderDamage
{
    std::size_t mPosition;
    std::size_t mLength;
    const char* mDescription;
};
std::optional<HeaderDamage> FindHeaderDamage(const std::wstring& iText, const QTalBase::TextCheckResult& iResult,
                                             const DelimiterTexts& iPair);

} // namespace TalBaseTool

#endif
