#include "Charset.h"

#include "Errors.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

namespace MailSpool
{

namespace
{

constexpr wchar_t gUtf8Name[] = L"UTF-8";
constexpr wchar_t gLatin1Name[] = L"ISO-8859-1";

// The platform's converter takes a text that ends at its first zero character, but mail may hold such characters: the
// text is converted run by run.
std::string ConvertRuns(std::wstring_view iText, bool iStrict)
{
    std::string lBytes;
    for (;;)
    {
        const std::size_t lEnd = iText.find(L'\0');
        lBytes += QBase::WideCharToUTF8(std::wstring(iText.substr(0, lEnd)).c_str(), iStrict);
        if (lEnd == std::wstring_view::npos)
        {
            return lBytes;
        }
        lBytes += '\0';
        iText.remove_prefix(lEnd + 1);
    }
}

std::string EncodeLatin1(std::wstring_view iText)
{
    std::string lBytes;
    lBytes.reserve(iText.size());
    for (const wchar_t lCharacter : iText)
    {
        if (lCharacter < 0 || lCharacter > 0xFF)
        {
            throw DamageError("a text marked as ISO-8859-1 holds a character that ISO-8859-1 does not have");
        }
        lBytes += static_cast<char>(lCharacter);
    }
    return lBytes;
}

} // namespace

DecodedText DecodeBytes(std::string_view iBytes)
{
    try
    {
        return {QBase::UTF8ToWideChar(iBytes, true), Charset::Utf8};
    }
    catch (const QBase::Message&)
    {
        DecodedText lDecoded{{}, Charset::Latin1};
        lDecoded.mText.reserve(iBytes.size());
        for (const char lByte : iBytes)
        {
            lDecoded.mText += static_cast<wchar_t>(static_cast<unsigned char>(lByte));
        }
        return lDecoded;
    }
}

std::string EncodeText(std::wstring_view iText, Charset iCharset)
{
    if (iCharset == Charset::Latin1)
    {
        return EncodeLatin1(iText);
    }
    try
    {
        return ConvertRuns(iText, true);
    }
    catch (const QBase::Message&)
    {
        throw DamageError("a text marked as UTF-8 holds a character that UTF-8 does not have");
    }
}

std::string ToUtf8(std::wstring_view iText)
{
    return ConvertRuns(iText, false);
}

const wchar_t* GetCharsetName(Charset iCharset)
{
    return iCharset == Charset::Utf8 ? gUtf8Name : gLatin1Name;
}

Charset GetCharsetByName(std::wstring_view iName)
{
    if (iName == gUtf8Name)
    {
        return Charset::Utf8;
    }
    if (iName == gLatin1Name)
    {
        return Charset::Latin1;
    }
    throw DamageError("unknown character set '" + ToUtf8(iName) + "'");
}

} // namespace MailSpool
