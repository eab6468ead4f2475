#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <json/json.h>
#include <limits>
#include <memory>
#include <stdexcept>

namespace Bench
{

namespace
{

Json::CharReaderBuilder MakeReaderBuilder()
{
    Json::CharReaderBuilder lBuilder;
    lBuilder["stackLimit"] = std::numeric_limits<int>::max();
    return lBuilder;
}

struct JsonCppTraits
{
    using Text = std::string;
    using Name = std::string;
    using Document = Json::Value;

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
        static const std::unique_ptr<Json::CharReader> gReader(MakeReaderBuilder().newCharReader());
        if (!gReader->parse(iText.data(), iText.data() + iText.size(), &oDocument, nullptr))
        {
            throw std::runtime_error("jsoncpp could not read the text");
        }
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        for (auto lMember = iDocument.begin(); lMember != iDocument.end(); ++lMember)
        {
            ++oTotals.mProperties;
            oTotals.mCharacters += lMember.name().size();
            if (lMember->isObject())
            {
                AddTotals(*lMember, oTotals);
            }
            else
            {
                oTotals.mCharacters += lMember->asString().size();
            }
        }
    }

    static std::string Render(const Document& iDocument)
    {
        static const Json::StreamWriterBuilder gBuilder = [] {
            Json::StreamWriterBuilder lBuilder;
            lBuilder["indentation"] = "";
            lBuilder["emitUTF8"] = true;
            return lBuilder;
        }();
        return Json::writeString(gBuilder, iDocument);
    }

    static Text ToText(std::string&& iText)
    {
        return std::move(iText);
    }

    static std::string LookUp(const Document& iDocument, const Name& iName)
    {
        const Json::Value* lFound = iDocument.find(iName.data(), iName.data() + iName.size());
        return lFound == nullptr ? std::string() : lFound->asString();
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
        for (auto lMember = iDocument.begin(); lMember != iDocument.end(); ++lMember)
        {
            oTarget[lMember.name()] = *lMember;
        }
    }
};

} // namespace

Library MakeJsonCpp()
{
    return MakeLibrary<JsonCppTraits>("jsoncpp", JSONCPP_VERSION_STRING);
}

} // namespace Bench
