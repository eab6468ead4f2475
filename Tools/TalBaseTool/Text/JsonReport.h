// What a bag cannot hold of a JSON document, counted by kind, with the first places of each.

#ifndef TALBASETOOL_TEXT_JSONREPORT_H
#define TALBASETOOL_TEXT_JSONREPORT_H

#include "Text/TextBuilder.h"

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace TalBaseTool
{

enum class Loss
{
    EmptyText,
    EmptyObject,
    EmptyArray,
    EmptyName,
    Unholdable,   // a name or a value that the text would not give back
    RepeatedName, // the last one counts, also where it is left out
    Type,         // of a number, true, false or null: it became a text
    ArrayLike,    // an object that would come back as an array
    Positions,    // an array that would come back as an object
    Order,        // of plain values and nested ones in an object
};

class JsonReport
{
public:
    // iGate: for what is shown. iIsVerbose: shows every place.
    JsonReport(const Gate& iGate, bool iIsVerbose) : mGate(iGate), mIsVerbose(iIsVerbose) {}

    // Whether the next one of a kind will be shown with its place.
    bool WantsPlace(Loss iLoss) const;

    // iLast: the last names of its place, as many as ShowPath wants; iLevel: how many there are. The document's own
    // place has none. iIsBelowHidden: whether the first of those names is in something hidden.
    void Add(Loss iLoss, const Path& iLast, std::size_t iLevel, bool iIsBelowHidden);

    // Whether something of the content is lost; the order alone does not count, since JSON gives it no meaning.
    bool HasLoss() const;

    // A line for each kind that there is.
    void Write(std::ostream& oErr) const;

private:
    struct Kind
    {
        std::size_t mCount = 0;
        std::vector<std::string> mPlaces;
    };

    Gate mGate;
    bool mIsVerbose;
    std::array<Kind, static_cast<std::size_t>(Loss::Order) + 1> mKinds;
};

} // namespace TalBaseTool

#endif
