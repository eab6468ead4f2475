// Changes of a bag that a list tells: each line sets the value at its path.

#ifndef TALBASETOOL_COMMANDS_SETLIST_H
#define TALBASETOOL_COMMANDS_SETLIST_H

#include "Text/Listing.h"

#include <string>

namespace TalBaseTool
{

class ListChanges
{
public:
    // Reads the list from a file, or from standard input for "-". Throws what ReadText and ReadList throw, and
    // TextError for a masked line.
    explicit ListChanges(const std::string& iFile);

    // Makes the changes in a bag, all of them together, since one by one each would look for its names again. Throws
    // TextError, with the line, where the bag cannot hold one or has something of another kind there; the bag is then
    // of no more use. iGate: for the path that is told.
    void Apply(const BagPtr& iBag, const Gate& iGate) const;

private:
    [[noreturn]] void hRefuse(const BagPtr& iBag, const Gate& iGate, const Path& iPath) const;

    std::string mFile;
    List mList;
};

} // namespace TalBaseTool

#endif
