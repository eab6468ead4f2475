#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace Bench
{

namespace
{

using Encoding = rapidjson::UTF32<wchar_t>;
using Value = rapidjson::GenericValue<Encoding>;
using Tree = rapidjson::GenericDocument<Encoding>;

void AddValueTotals(const Value& iObject, Totals& oTotals)
{
    for (const auto& lMember : iObject.GetObject())
    {
        ++oTotals.mProperties;
        oTotals.mCharacters += lMember.name.GetStringLength();
        if (lMember.value.IsObject())
        {
            AddValueTotals(lMember.value, oTotals);
        }
        else
        {
            oTotals.mCharacters += lMember.value.GetStringLength();
        }
    }
}

struct TreeTraits
{
    using Text = std::wstring;
    using Name = std::wstring;
    struct Document
    {
        std::vector<wchar_t> mText; // what an in-situ tree points into
        Tree mTree;
    };

    static constexpr bool gCountsBytes = false;

    static Text MakeText(const Record& iRecord)
    {
        return MakeJsonText(iRecord);
    }

    static Name MakeName(const std::wstring& iName)
    {
        return iName;
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddValueTotals(iDocument.mTree, oTotals);
    }

    using Buffer = rapidjson::GenericStringBuffer<Encoding>;

    static Buffer Render(const Document& iDocument)
    {
        Buffer lBuffer;
        rapidjson::Writer<Buffer, Encoding, Encoding> lWriter(lBuffer);
        iDocument.mTree.Accept(lWriter);
        return lBuffer;
    }

    static Text ToText(Buffer&& iBuffer)
    {
        return {iBuffer.GetString(), iBuffer.GetSize() / sizeof(wchar_t)};
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        const auto lMember = iDocument.mTree.FindMember(iName.c_str());
        return lMember == iDocument.mTree.MemberEnd()
                   ? std::wstring()
                   : std::wstring(lMember->value.GetString(), lMember->value.GetStringLength());
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return iLeft.mTree == iRight.mTree;
    }
};

struct RapidJsonTraits : TreeTraits
{
    static constexpr bool gMergeGrows = true; // its pool never gives a replaced value back

    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.mTree.Parse(iText.c_str());
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy.mTree.CopyFrom(iDocument.mTree, oCopy.mTree.GetAllocator());
    }

    static void Merge(const Document& iDocument, Document& oTarget)
    {
        Tree& lTree = oTarget.mTree;
        for (const auto& lMember : iDocument.mTree.GetObject())
        {
            Value lValue(lMember.value, lTree.GetAllocator());
            const auto lFound = lTree.FindMember(lMember.name);
            if (static_cast<rapidjson::SizeType>(lFound - lTree.MemberBegin()) != lTree.MemberCount())
            {
                lFound->value = lValue;
                continue;
            }
            lTree.AddMember(Value(lMember.name, lTree.GetAllocator()), lValue, lTree.GetAllocator());
        }
    }
};

// Reads within a copy of the text, which its tree then points into. The copy is part of the time: a bag, too, is read
// from a text that stays as it is. Copies of its values would share that text, so it has none.
struct RapidJsonInSituTraits : TreeTraits
{
    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.mText.assign(iText.c_str(), iText.c_str() + iText.size() + 1);
        oDocument.mTree.ParseInsitu(oDocument.mText.data());
    }
};

} // namespace

Library MakeRapidJson()
{
    return MakeLibrary<RapidJsonTraits>("RapidJSON UTF32", RAPIDJSON_VERSION_STRING);
}

Library MakeRapidJsonInSitu()
{
    return MakeLibrary<RapidJsonInSituTraits>("RapidJSON UTF32 in-situ", RAPIDJSON_VERSION_STRING);
}

} // namespace Bench
