#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <boost/json/src.hpp>
#include <boost/version.hpp>

namespace Bench
{

namespace
{

struct BoostJsonTraits
{
    using Text = std::string;
    using Name = std::string;
    using Document = boost::json::value;

    static constexpr bool gCountsBytes = true;

    static Text MakeText(const Record& iRecord)
    {
        return ToUtf8(MakeJsonText(iRecord));
    }

    static Name MakeName(const std::wstring& iName)
    {
        return ToUtf8(iName);
    }

    static void Parse(const Text& iText, Document& oDocument)
    {
        boost::json::parse_options lOptions;
        lOptions.max_depth = 1'000'000;
        oDocument = boost::json::parse(iText, {}, lOptions);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        for (const auto& lMember : iDocument.get_object())
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += lMember.key().size();
            if (lMember.value().is_object())
            {
                AddTotals(lMember.value(), oTotals);
            }
            else
            {
                oTotals.mCharacters += lMember.value().get_string().size();
            }
        }
    }

    static std::string Render(const Document& iDocument)
    {
        return boost::json::serialize(iDocument);
    }

    static Text ToText(std::string&& iText)
    {
        return std::move(iText);
    }

    static std::string LookUp(const Document& iDocument, const Name& iName)
    {
        const boost::json::value* lFound = iDocument.get_object().if_contains(iName);
        return lFound == nullptr ? std::string() : std::string(lFound->get_string());
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
        for (const auto& lMember : iDocument.get_object())
        {
            oTarget.get_object().insert_or_assign(lMember.key(), lMember.value());
        }
    }
};

} // namespace

Library MakeBoostJson()
{
    return MakeLibrary<BoostJsonTraits>("Boost.JSON", BOOST_LIB_VERSION);
}

} // namespace Bench
