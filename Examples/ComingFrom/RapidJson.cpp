// What Docs/ComingFromJson.md says of RapidJSON.

#include "Check.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <string>

namespace
{

void Map()
{
    rapidjson::Document lDocument;
    lDocument.SetObject();
    lDocument.AddMember("a", "1", lDocument.GetAllocator());
    lDocument.AddMember("n", 42, lDocument.GetAllocator());
    Check(lDocument["n"].GetInt() == 42, "typed value");
    lDocument.AddMember("o", rapidjson::Value(rapidjson::kObjectType), lDocument.GetAllocator());
    lDocument["o"].AddMember("k", "v", lDocument.GetAllocator());
    const bool lHas = lDocument.HasMember("o");
    Check(lHas, "contains");
    Check(lDocument.MemberCount() == 3, "size");
    rapidjson::StringBuffer lBuffer;
    rapidjson::Writer<rapidjson::StringBuffer> lWriter(lBuffer);
    lDocument.Accept(lWriter);
    rapidjson::Document lRead;
    lRead.Parse(lBuffer.GetString());
    Check(lRead == lDocument, "text and equality");
    lDocument.RemoveMember("a");
    Check(lDocument.MemberCount() == 2, "erase");
}

std::string Rendered(const rapidjson::Document& iDocument)
{
    rapidjson::StringBuffer lBuffer;
    rapidjson::Writer<rapidjson::StringBuffer> lWriter(lBuffer);
    iDocument.Accept(lWriter);
    return lBuffer.GetString();
}

void Differences()
{
    rapidjson::Document lTwice;
    lTwice.Parse(R"({"twice":1,"twice":2})");
    Check(lTwice.MemberCount() == 2 && lTwice["twice"].GetInt() == 1, "equal names stay, and the first is found");
    rapidjson::Document lBefore;
    lBefore.Parse(R"({"b":1,"o":{},"a":2})");
    Check(Rendered(lBefore) == R"({"b":1,"o":{},"a":2})", "order is kept, of both kinds");
    rapidjson::Document lOther;
    lOther.Parse(R"({"a":2,"b":1,"o":{}})");
    Check(lBefore == lOther, "order does not count in a comparison");
}

} // namespace

int main()
{
    Map();
    Differences();
}
