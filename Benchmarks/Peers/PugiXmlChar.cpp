#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <cstring>

// The library in narrow mode has another name here than in wide mode (see Peers.cmake).
#undef PUGIXML_WCHAR_MODE
#define pugi pugichar // NOLINT(readability-identifier-naming): its own name
#include <pugixml.hpp>

namespace Bench
{

namespace
{

static_assert(sizeof(pugi::char_t) == sizeof(char), "pugixml is to be built in narrow mode");

void AddNodeTotals(const pugi::xml_node& iNode, Totals& oTotals)
{
    for (const pugi::xml_node lChild : iNode.children())
    {
        if (lChild.type() == pugi::node_element)
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += std::strlen(lChild.name());
            AddNodeTotals(lChild, oTotals);
        }
        else
        {
            oTotals.mCharacters += std::strlen(lChild.value());
        }
    }
}

class TextWriter : public pugi::xml_writer
{
public:
    void write(const void* ipData, std::size_t iSize) override
    {
        mText.append(static_cast<const char*>(ipData), iSize);
    }

    std::string mText;
};

// What reads and writes bytes; the rest is measured in wide mode.
struct PugiXmlCharTraits
{
    using Text = std::string;
    using Name = std::string;
    using Document = pugi::xml_document;

    static constexpr bool gCountsBytes = true;

    static Text MakeText(const Record& iRecord)
    {
        return ToUtf8(MakeXmlText(iRecord));
    }

    static Name MakeName(const std::wstring& iName)
    {
        return ToUtf8(iName);
    }

    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.load_buffer(iText.data(), iText.size(), pugi::parse_default, pugi::encoding_utf8);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument.document_element(), oTotals);
    }

    static std::string Render(const Document& iDocument)
    {
        TextWriter lWriter;
        iDocument.save(lWriter, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        return std::move(lWriter.mText);
    }

    static Text ToText(std::string&& iText)
    {
        return std::move(iText);
    }

    static std::string LookUp(const Document& iDocument, const Name& iName)
    {
        return iDocument.document_element().child_value(iName.c_str());
    }
};

} // namespace

Library MakePugiXmlChar()
{
    return MakeLibrary<PugiXmlCharTraits>("pugixml char", std::to_string(PUGIXML_VERSION / 1000) + '.' +
                                                              std::to_string(PUGIXML_VERSION % 1000 / 10));
}

} // namespace Bench
