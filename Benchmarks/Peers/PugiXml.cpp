#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <pugixml.hpp>

namespace Bench
{

namespace
{

static_assert(sizeof(pugi::char_t) == sizeof(wchar_t), "pugixml is to be built in wide mode");

void AddNodeTotals(const pugi::xml_node& iNode, Totals& oTotals)
{
    for (const pugi::xml_node lChild : iNode.children())
    {
        if (lChild.type() == pugi::node_element)
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += std::wcslen(lChild.name());
            AddNodeTotals(lChild, oTotals);
        }
        else
        {
            oTotals.mCharacters += std::wcslen(lChild.value());
        }
    }
}

class TextWriter : public pugi::xml_writer
{
public:
    void write(const void* ipData, std::size_t iSize) override
    {
        mText.append(static_cast<const wchar_t*>(ipData), iSize / sizeof(wchar_t));
    }

    std::wstring mText;
};

struct PugiXmlTraits
{
    using Text = std::wstring;
    using Name = std::wstring;
    using Document = pugi::xml_document;

    static constexpr bool gCountsBytes = false;

    static Text MakeText(const Record& iRecord)
    {
        return MakeXmlText(iRecord);
    }

    static Name MakeName(const std::wstring& iName)
    {
        return iName;
    }

    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.load_buffer(iText.data(), iText.size() * sizeof(wchar_t), pugi::parse_default, pugi::encoding_wchar);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument.document_element(), oTotals);
    }

    static std::wstring Render(const Document& iDocument)
    {
        TextWriter lWriter;
        iDocument.save(lWriter, L"", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_wchar);
        return std::move(lWriter.mText);
    }

    static Text ToText(std::wstring&& iText)
    {
        return std::move(iText);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        return iDocument.document_element().child_value(iName.c_str());
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy.reset(iDocument);
    }

    // It has no comparison of trees.

    static void Merge(const Document& iDocument, Document& oTarget)
    {
        pugi::xml_node lRoot = oTarget.document_element();
        for (const pugi::xml_node lChild : iDocument.document_element().children())
        {
            lRoot.remove_child(lChild.name());
            lRoot.append_copy(lChild);
        }
    }
};

} // namespace

Library MakePugiXml()
{
    return MakeLibrary<PugiXmlTraits>("pugixml wide", std::to_string(PUGIXML_VERSION / 1000) + '.' +
                                                          std::to_string(PUGIXML_VERSION % 1000 / 10));
}

} // namespace Bench
