// The left column of the table in Docs/ComingFromJson.md, and what that page says of nlohmann-json.

#include "Check.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace
{

using nlohmann::json;

void Map()
{
    json lObject;
    lObject["a"] = "1";
    lObject["n"] = 42;
    Check(lObject.value("n", 0) == 42, "typed value");
    json lOther;
    lOther["k"] = "v";
    lObject["o"] = lOther;
    Check(lObject.at("o").size() == 1, "nested object");
    Check(lObject.at("/o/k"_json_pointer) == "v", "path");
    const bool lHas = lObject.contains("o");
    Check(lHas, "contains");
    Check(lObject.size() == 3, "size");
    std::size_t lSeen = 0;
    for (const auto& [lName, lValue] : lObject.items())
    {
        lSeen += lName.size() + (lValue.is_null() ? 1 : 0);
    }
    Check(lSeen == 3, "loop");
    const std::string lText = lObject.dump();
    const json lRead = json::parse(lText);
    Check(lRead == lObject, "text and equality");
    lObject.update(lOther);
    Check(lObject.size() == 4, "merge");
    lObject.erase("a");
    Check(lObject.size() == 3, "erase");
    const json lCopy = lObject;
    Check(lCopy == lObject, "copy");
    const std::vector<std::uint8_t> lBytes = json::to_cbor(lObject);
    Check(!lBytes.empty(), "binary");
}

bool IsRefused(const char* ipText)
{
    return json::parse(ipText, nullptr, false).is_discarded();
}

// What the page says is different there.
void Differences()
{
    Check(json(0) != json("0"), "types count");
    Check(json::parse(R"({"a":""})").size() == 1 && json::parse(R"({"o":{}})").size() == 1, "empty values stay");
    Check(json::parse(R"({"b":1,"a":2})").dump() == R"({"a":2,"b":1})", "names are sorted");
    Check(nlohmann::ordered_json::parse(R"({"b":1,"a":2})").dump() == R"({"b":1,"a":2})", "or in order");
    Check(json::parse(R"({"b":1,"a":2})") == json::parse(R"({"a":2,"b":1})"), "order does not count");
    Check(nlohmann::ordered_json::parse(R"({"b":1,"a":2})") != nlohmann::ordered_json::parse(R"({"a":2,"b":1})"),
          "or does");
    nlohmann::ordered_json lOrdered = {{"b", 1}, {"a", 2}};
    lOrdered["b"] = 3;
    Check(lOrdered.dump() == R"({"b":3,"a":2})", "a value that is set again stays where it was");
    Check(json::parse(R"({"twice":1,"twice":2})").dump() == R"({"twice":2})", "the last of equal names counts");
    Check(json("a\"b").dump() == R"("a\"b")", "quotation marks are escaped");
    Check(IsRefused("{} tail") && !IsRefused(" { } "), "a tail is refused, white space is not");
    json lInto = json::parse(R"({"a":1,"o":{"k":"v"}})");
    lInto.update(json::parse(R"({"o":{"l":"w"}})"));
    Check(lInto.dump() == R"({"a":1,"o":{"l":"w"}})", "update replaces nested objects");
}

} // namespace

int main()
{
    Map();
    Differences();
}
