#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/version.hpp>
#include <sstream>

namespace Bench
{

namespace
{

using Tree = boost::property_tree::wptree;

struct PropertyTreeTraits
{
    using Text = std::wstring;
    using Name = std::wstring;
    using Document = Tree;

    static constexpr bool gCountsBytes = false;

    static Text MakeText(const Record& iRecord)
    {
        return MakeJsonText(iRecord);
    }

    static Name MakeName(const std::wstring& iName)
    {
        return iName;
    }

    static void Parse(const Text& iText, Document& oDocument)
    {
        std::wistringstream lStream(iText);
        boost::property_tree::read_json(lStream, oDocument);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        for (const auto& [lName, lChild] : iDocument)
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += lName.size() + lChild.data().size();
            AddTotals(lChild, oTotals);
        }
    }

    static std::wstring Render(const Document& iDocument)
    {
        std::wostringstream lStream;
        boost::property_tree::write_json(lStream, iDocument, false);
        return std::move(lStream).str();
    }

    static Text ToText(std::wstring&& iText)
    {
        return std::move(iText);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        const auto lFound = iDocument.find(iName);
        return lFound == iDocument.not_found() ? std::wstring() : lFound->second.data();
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy = iDocument;
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return iLeft == iRight;
    }

    static void Merge(const Document& iDocument, Document& oTarget)
    {
        for (const auto& lChild : iDocument)
        {
            const auto lFound = oTarget.find(lChild.first);
            if (lFound != oTarget.not_found())
            {
                lFound->second = lChild.second;
                continue;
            }
            oTarget.push_back(lChild);
        }
    }
};

} // namespace

Library MakePropertyTree()
{
    return MakeLibrary<PropertyTreeTraits>("Boost.PropertyTree wide", BOOST_LIB_VERSION);
}

} // namespace Bench
