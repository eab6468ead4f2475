#include "Texts.h"

namespace Bench
{

namespace
{

constexpr wchar_t gBegin[] = L"++++";
constexpr wchar_t gEnd[] = L"***";

void AppendBagValue(const std::wstring& iValue, std::wstring& oText)
{
    for (const wchar_t lCharacter : iValue)
    {
        lCharacter == L'*' ? oText += L"&#42;" : lCharacter == L'+' ? oText += L"&#43;" : oText += lCharacter;
    }
}

void AppendBagContent(const Record& iRecord, std::wstring& oText)
{
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        oText.append(lName).append(gBegin);
        AppendBagValue(lValue, oText);
        oText.append(gEnd);
    }
    for (const Record& lNested : iRecord.mRecords)
    {
        oText.append(lNested.mName).append(gBegin);
        AppendBagContent(lNested, oText);
        oText.append(gEnd);
    }
}

void AppendJsonString(const std::wstring& iValue, std::wstring& oText)
{
    oText += L'"';
    for (const wchar_t lCharacter : iValue)
    {
        switch (lCharacter)
        {
        case L'"':
            oText += L"\\\"";
            break;
        case L'\\':
            oText += L"\\\\";
            break;
        case L'\n':
            oText += L"\\n";
            break;
        case L'\t':
            oText += L"\\t";
            break;
        default:
            oText += lCharacter;
        }
    }
    oText += L'"';
}

void AppendJsonObject(const Record& iRecord, std::wstring& oText)
{
    const wchar_t* lSeparator = L"{";
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        oText += lSeparator;
        AppendJsonString(lName, oText);
        oText += L':';
        AppendJsonString(lValue, oText);
        lSeparator = L",";
    }
    for (const Record& lNested : iRecord.mRecords)
    {
        oText += lSeparator;
        AppendJsonString(lNested.mName, oText);
        oText += L':';
        AppendJsonObject(lNested, oText);
        lSeparator = L",";
    }
    oText += L'}';
}

void AppendXmlText(const std::wstring& iValue, std::wstring& oText)
{
    for (const wchar_t lCharacter : iValue)
    {
        switch (lCharacter)
        {
        case L'<':
            oText += L"&lt;";
            break;
        case L'>':
            oText += L"&gt;";
            break;
        case L'&':
            oText += L"&amp;";
            break;
        default:
            oText += lCharacter;
        }
    }
}

void AppendXmlContent(const Record& iRecord, std::wstring& oText)
{
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        oText.append(L"<").append(lName).append(L">");
        AppendXmlText(lValue, oText);
        oText.append(L"</").append(lName).append(L">");
    }
    for (const Record& lNested : iRecord.mRecords)
    {
        oText.append(L"<").append(lNested.mName).append(L">");
        AppendXmlContent(lNested, oText);
        oText.append(L"</").append(lNested.mName).append(L">");
    }
}

} // namespace

std::wstring MakeBagText(const Record& iRecord)
{
    std::wstring lText = L"EndDelimiter***BeginDelimiter++++***";
    AppendBagContent(iRecord, lText);
    return lText;
}

std::wstring MakeJsonText(const Record& iRecord)
{
    std::wstring lText;
    AppendJsonObject(iRecord, lText);
    return lText;
}

std::wstring MakeXmlText(const Record& iRecord)
{
    std::wstring lText = L"<Bag>";
    AppendXmlContent(iRecord, lText);
    return lText + L"</Bag>";
}

// The data holds no character above U+00FF.
std::string ToUtf8(const std::wstring& iText)
{
    std::string lBytes;
    for (const wchar_t lCharacter : iText)
    {
        const auto lCode = static_cast<unsigned int>(lCharacter);
        if (lCode >= 0x80)
        {
            lBytes += static_cast<char>(0xC0U | (lCode >> 6));
            lBytes += static_cast<char>(0x80U | (lCode & 0x3FU));
        }
        else
        {
            lBytes += static_cast<char>(lCode);
        }
    }
    return lBytes;
}

} // namespace Bench
