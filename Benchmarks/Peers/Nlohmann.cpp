#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <nlohmann/json.hpp>

namespace Bench
{

namespace
{

template <class Json>
struct NlohmannTraits
{
    using Text = std::string;
    using Name = std::string;
    using Document = Json;

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
        oDocument = Json::parse(iText);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        for (const auto& [lName, lValue] : iDocument.items())
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += lName.size();
            if (lValue.is_object())
            {
                AddTotals(lValue, oTotals);
            }
            else
            {
                oTotals.mCharacters += lValue.template get_ref<const std::string&>().size();
            }
        }
    }

    static std::string Render(const Document& iDocument)
    {
        return iDocument.dump();
    }

    static Text ToText(std::string&& iText)
    {
        return std::move(iText);
    }

    static std::string LookUp(const Document& iDocument, const Name& iName)
    {
        const auto lFound = iDocument.find(iName);
        return lFound == iDocument.end() ? std::string() : lFound->template get<std::string>();
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
        oTarget.update(iDocument);
    }

    static std::vector<std::uint8_t> Write(const Document& iDocument)
    {
        return Json::to_cbor(iDocument);
    }

    static void Read(const std::vector<std::uint8_t>& iBytes, Document& oDocument)
    {
        oDocument = Json::from_cbor(iBytes);
    }
};

std::string GetVersion()
{
    return nlohmann::json::meta()["version"]["string"];
}

} // namespace

Library MakeNlohmann()
{
    return MakeLibrary<NlohmannTraits<nlohmann::json>>("nlohmann", GetVersion());
}

Library MakeNlohmannOrdered()
{
    return MakeLibrary<NlohmannTraits<nlohmann::ordered_json>>("nlohmann ordered", GetVersion());
}

} // namespace Bench
