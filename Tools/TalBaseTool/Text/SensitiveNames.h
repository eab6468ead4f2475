// Which names are sensitive, and where they stand in a text that may be anybody's: the library's names, those of the
// environment variable TALBASE_SENSITIVE_NAMES (one a line), and others that are given.
//
// Names are compared as a person reads them: whatever their case, without the blanks, line ends, marks and invisible
// characters in and around them, and with JSON's escapes read.

#ifndef TALBASETOOL_TEXT_SENSITIVENAMES_H
#define TALBASETOOL_TEXT_SENSITIVENAMES_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

// A name in a text.
struct NamePlace
{
    std::size_t mStart;
    std::size_t mStop;
};

class SensitiveNames
{
public:
    // iOthers: names besides the library's and the environment's. One that has nothing but blanks is none.
    explicit SensitiveNames(const std::vector<std::wstring>& iOthers = {});

    // Whether a text is such a name, and nothing else.
    bool Is(std::wstring_view iText) const;

    // The first one that stands in a text as a word of its own: no letter, digit or underscore touches it.
    std::optional<NamePlace> FindWord(std::wstring_view iText) const;

    // The next one that stands anywhere in a text from a place on, also as a part of a longer word; of several that
    // begin in one place, the longest.
    std::optional<NamePlace> Find(std::wstring_view iText, std::size_t iFrom) const;

    // Whether there is one.
    bool IsIn(std::wstring_view iText) const
    {
        return Find(iText, 0).has_value();
    }

private:
    void hAdd(const std::wstring& iName);
    bool hMayBegin(wchar_t iCharacter) const;
    bool hMayFollow(wchar_t iCharacter) const;
    std::optional<NamePlace> hFind(std::wstring_view iText, std::size_t iFrom, bool iAsWord) const;
    std::size_t hMatch(std::wstring_view iText, std::size_t iStart, bool iAsWord) const;

    std::vector<std::wstring> mNames;      // as they are compared
    std::array<bool, 128> mMayBegin = {};  // for each character of ASCII, whether a name may begin with it
    std::array<bool, 128> mMayFollow = {}; // the same behind the first one
    std::wstring mOthers;                  // the same beyond ASCII
    std::wstring mBegins;                  // all that a name may begin with
};

// Whether a character is a letter, a digit or an underscore.
bool IsWordCharacter(wchar_t iCharacter);

} // namespace TalBaseTool

#endif
