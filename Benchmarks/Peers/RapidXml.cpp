#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <iterator>
#include <rapidxml/rapidxml.hpp>

// The printer's header calls these before it declares them.
// NOLINTBEGIN(readability-identifier-naming)
namespace rapidxml::internal
{
template <class Out, class Ch>
Out print_children(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_element_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_data_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_cdata_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_declaration_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_comment_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_doctype_node(Out, const xml_node<Ch>*, int, int);
template <class Out, class Ch>
Out print_pi_node(Out, const xml_node<Ch>*, int, int);
} // namespace rapidxml::internal
// NOLINTEND(readability-identifier-naming)

#include <rapidxml/rapidxml_print.hpp>

namespace Bench
{

namespace
{

using Node = rapidxml::xml_node<wchar_t>;

void AddNodeTotals(const Node& iNode, Totals& oTotals)
{
    for (const Node* lChild = iNode.first_node(); lChild != nullptr; lChild = lChild->next_sibling())
    {
        if (lChild->type() == rapidxml::node_element)
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += lChild->name_size();
            AddNodeTotals(*lChild, oTotals);
        }
        else
        {
            oTotals.mCharacters += lChild->value_size();
        }
    }
}

// Its only way of reading is within the text, so the copy is part of the time. Its copies of nodes share that text, and
// it has no comparison.
struct RapidXmlTraits
{
    using Text = std::wstring;
    using Name = std::wstring;
    struct Document
    {
        std::vector<wchar_t> mText;
        rapidxml::xml_document<wchar_t> mTree;
    };

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
        oDocument.mText.assign(iText.c_str(), iText.c_str() + iText.size() + 1);
        oDocument.mTree.parse<0>(oDocument.mText.data());
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(*iDocument.mTree.first_node(), oTotals);
    }

    static std::wstring Render(const Document& iDocument)
    {
        std::wstring lText;
        rapidxml::print(std::back_inserter(lText), iDocument.mTree, rapidxml::print_no_indenting);
        return lText;
    }

    static Text ToText(std::wstring&& iText)
    {
        return std::move(iText);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        const Node* lNode = iDocument.mTree.first_node()->first_node(iName.c_str());
        return lNode == nullptr ? std::wstring() : std::wstring(lNode->value(), lNode->value_size());
    }
};

} // namespace

Library MakeRapidXml()
{
    return MakeLibrary<RapidXmlTraits>("RapidXML wide", "1.13");
}

} // namespace Bench
