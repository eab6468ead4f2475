// message = [ "From " line ] *( field / damaged line ) [ empty line body ]
// field   = name *WSP ":" text *( line-end WSP text ), with name of the characters 33 to 126 but ":"
// A line ends with LF; a CR right before it belongs to the line end, any other CR to the text.

#include "MailMessage.h"

#include "Errors.h"

#include <algorithm>
#include <array>

namespace MailSpool
{

namespace
{

constexpr std::wstring_view gBlanks = L" \t";

struct LineEndingName
{
    LineEnding mLineEnding;
    const wchar_t* mName;
};

constexpr std::array<LineEndingName, 4> gLineEndingNames = {
    {{LineEnding::None, L"none"}, {LineEnding::Lf, L"LF"}, {LineEnding::CrLf, L"CRLF"}, {LineEnding::Mixed, L"mixed"}}};

// Takes one line off the front of the text and returns it without its line end.
template <class Character>
std::basic_string_view<Character> TakeLine(std::basic_string_view<Character>& oText)
{
    const std::size_t lEnd = oText.find(Character('\n'));
    std::basic_string_view<Character> lLine = oText.substr(0, lEnd);
    oText.remove_prefix(lEnd == oText.npos ? oText.size() : lEnd + 1);
    if (lEnd != oText.npos && !lLine.empty() && lLine.back() == Character('\r'))
    {
        lLine.remove_suffix(1);
    }
    return lLine;
}

// Cuts the bytes at the first empty line, which belongs to neither part: returns the header, leaves the body.
std::string_view TakeHeader(std::string_view& oBytes)
{
    const std::string_view lAll = oBytes;
    while (!oBytes.empty())
    {
        const std::size_t lStart = lAll.size() - oBytes.size();
        if (TakeLine(oBytes).empty())
        {
            return lAll.substr(0, lStart);
        }
    }
    return lAll;
}

LineEnding FindLineEnding(std::string_view iBytes)
{
    bool lHasLf = false;
    bool lHasCrLf = false;
    for (std::size_t lAt = iBytes.find('\n'); lAt != iBytes.npos; lAt = iBytes.find('\n', lAt + 1))
    {
        const bool lIsCrLf = lAt > 0 && iBytes[lAt - 1] == '\r';
        (lIsCrLf ? lHasCrLf : lHasLf) = true;
    }
    if (lHasLf && lHasCrLf)
    {
        return LineEnding::Mixed;
    }
    if (lHasLf)
    {
        return LineEnding::Lf;
    }
    return lHasCrLf ? LineEnding::CrLf : LineEnding::None;
}

std::wstring_view Trim(std::wstring_view iText)
{
    const std::size_t lFirst = iText.find_first_not_of(gBlanks);
    if (lFirst == iText.npos)
    {
        return {};
    }
    return iText.substr(lFirst, iText.find_last_not_of(gBlanks) - lFirst + 1);
}

bool IsFieldName(std::wstring_view iName)
{
    for (const wchar_t lCharacter : iName)
    {
        if (lCharacter < 33 || lCharacter > 126)
        {
            return false;
        }
    }
    return !iName.empty();
}

// Reads a line that starts a field. Blanks between name and colon are obsolete but still seen.
HeaderField ReadField(std::wstring_view iLine)
{
    const std::size_t lColon = iLine.find(L':');
    if (lColon != iLine.npos)
    {
        std::wstring_view lName = iLine.substr(0, lColon);
        lName = lName.substr(0, lName.find_last_not_of(gBlanks) + 1);
        if (IsFieldName(lName))
        {
            return {std::wstring(lName), std::wstring(iLine.substr(lColon + 1))};
        }
    }
    return {{}, std::wstring(iLine)};
}

// "From ann@example.org Sat Nov 21 ..." and not "From : ann@example.org", a field in obsolete writing.
bool IsMboxLine(std::wstring_view iHeader)
{
    constexpr std::wstring_view lStart = L"From ";
    return iHeader.substr(0, lStart.size()) == lStart && Trim(iHeader.substr(lStart.size())).substr(0, 1) != L":";
}

void ReadFields(std::wstring_view iHeader, std::vector<HeaderField>& oFields)
{
    while (!iHeader.empty())
    {
        const std::wstring_view lLine = TakeLine(iHeader);
        const bool lIsFolded = !oFields.empty() && lLine.find_first_of(gBlanks) == 0;
        if (lIsFolded)
        {
            oFields.back().mValue += lLine;
        }
        else if (oFields.size() == gMaxHeaderFields)
        {
            throw DamageError("the message has more than " + std::to_string(gMaxHeaderFields) + " header fields");
        }
        else
        {
            oFields.push_back(ReadField(lLine));
        }
    }
    for (HeaderField& lField : oFields)
    {
        lField.mValue = std::wstring(Trim(lField.mValue));
    }
}

} // namespace

MailMessage ParseMessage(std::string_view iBytes)
{
    MailMessage lMessage;
    lMessage.mSize = iBytes.size();
    lMessage.mLineEnding = FindLineEnding(iBytes);
    lMessage.mIsEightBit =
        std::any_of(iBytes.begin(), iBytes.end(), [](char iByte) { return static_cast<unsigned char>(iByte) > 127; });

    // One character set for the whole header: a header that mixes two is read as ISO 8859-1 and can still be undone.
    const DecodedText lHeader = DecodeBytes(TakeHeader(iBytes));
    lMessage.mHeaderCharset = lHeader.mCharset;
    std::wstring_view lRest = lHeader.mText;
    if (IsMboxLine(lRest))
    {
        lMessage.mMboxLine = std::wstring(TakeLine(lRest));
    }
    ReadFields(lRest, lMessage.mFields);

    bool lHasName = false;
    for (const HeaderField& lField : lMessage.mFields)
    {
        lHasName = lHasName || !lField.mName.empty();
    }
    if (!lHasName)
    {
        throw DamageError("not a message: there is no header field");
    }

    DecodedText lBody = DecodeBytes(iBytes);
    lMessage.mBody = std::move(lBody.mText);
    lMessage.mBodyCharset = lBody.mCharset;
    return lMessage;
}

const HeaderField* FindField(const MailMessage& iMessage, std::wstring_view iName)
{
    const std::wstring lName = ToLower(iName);
    for (const HeaderField& lField : iMessage.mFields)
    {
        if (ToLower(lField.mName) == lName)
        {
            return &lField;
        }
    }
    return nullptr;
}

std::wstring ToLower(std::wstring_view iText)
{
    std::wstring lText(iText);
    for (wchar_t& lCharacter : lText)
    {
        if (lCharacter >= L'A' && lCharacter <= L'Z')
        {
            lCharacter += L'a' - L'A';
        }
    }
    return lText;
}

const wchar_t* GetLineEndingName(LineEnding iLineEnding)
{
    return gLineEndingNames[static_cast<std::size_t>(iLineEnding)].mName;
}

LineEnding GetLineEndingByName(std::wstring_view iName)
{
    for (const LineEndingName& lEntry : gLineEndingNames)
    {
        if (iName == lEntry.mName)
        {
            return lEntry.mLineEnding;
        }
    }
    throw DamageError("unknown line ending '" + ToUtf8(iName) + "'");
}

} // namespace MailSpool
