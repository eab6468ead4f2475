// JSON as far as both ways of converting it must agree: which numbers there are, and which bags are arrays.

#ifndef TALBASETOOL_TEXT_JSONVALUES_H
#define TALBASETOOL_TEXT_JSONVALUES_H

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

// A number is kept as its text, so its size does not matter. nlohmann's library refuses one that its type for numbers
// cannot hold; this type takes what is converted, and claims to be a finite number whatever that was.
class AnyNumber
{
public:
    AnyNumber() = default;
    AnyNumber(double iNumber) : mNumber(iNumber) {}

    operator double&()
    {
        return mNumber;
    }

    operator double() const
    {
        return 0;
    }

private:
    double mNumber;
};

using AnyJson = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t, AnyNumber>;

// The number of an array's element that a name stands for, in a bag of iCount properties; iCount for other names.
std::size_t ReadElement(std::wstring_view iName, std::size_t iCount);

} // namespace TalBaseTool

#endif
