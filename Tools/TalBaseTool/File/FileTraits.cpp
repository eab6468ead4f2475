#include "File/FileTraits.h"

#include "File/FileDescriptor.h"

#include <cstdio>
#include <optional>
#include <sys/xattr.h>

namespace TalBaseTool
{

namespace
{

constexpr const char* gAccessList = "system.posix_acl_access";

std::string Changed(const std::string& iWhat, unsigned int iOld, unsigned int iNew)
{
    return "its " + iWhat + " is " + std::to_string(iNew) + " now; " + std::to_string(iOld) + " could not be kept";
}

std::string ShowPermissions(mode_t iMode)
{
    char lDigits[8];
    std::snprintf(lDigits, sizeof lDigits, "%03o", iMode & 0777U);
    return lDigits;
}

// The permissions for another group: what the old one might do is not for its members, unless everybody may.
mode_t ForOtherGroup(mode_t iMode, std::vector<std::string>& oLost)
{
    const mode_t lMode = iMode & ~(070U & ~(iMode << 3U));
    if (lMode != iMode)
    {
        oLost.push_back("its permissions are " + ShowPermissions(lMode) + " now; " + ShowPermissions(iMode) +
                        " could not be kept, for they were another group's");
    }
    return lMode;
}

// Gives the file owner and group of the old one, and returns the mode that it is to have. The group alone can be kept
// by its members. What runs as its owner may not run as another one.
mode_t CopyOwner(const struct stat& iOld, int iDescriptor, std::vector<std::string>& oLost)
{
    const uid_t lSame = static_cast<uid_t>(-1);
    static_cast<void>(::fchown(iDescriptor, iOld.st_uid, iOld.st_gid) == 0 ||
                      ::fchown(iDescriptor, lSame, iOld.st_gid) == 0); // what became of it, the status tells
    struct stat lNew = {};
    if (::fstat(iDescriptor, &lNew) != 0)
    {
        return iOld.st_mode & 0700U;
    }
    if (lNew.st_uid != iOld.st_uid)
    {
        oLost.push_back(Changed("owner", iOld.st_uid, lNew.st_uid));
    }
    if (lNew.st_gid != iOld.st_gid)
    {
        oLost.push_back(Changed("group", iOld.st_gid, lNew.st_gid));
        return ForOtherGroup(iOld.st_mode & 0777U, oLost);
    }
    return iOld.st_mode & (oLost.empty() ? 07777U : 0777U);
}

// Calls the system with room for as much as it says that it needs. Without a value, errno tells why.
template <class Read>
std::optional<std::string> ReadAll(Read iRead)
{
    const ssize_t lSize = iRead(nullptr, 0);
    std::string lBytes(lSize > 0 ? static_cast<std::size_t>(lSize) : 0, '\0');
    const ssize_t lRead = lSize > 0 ? iRead(lBytes.data(), lBytes.size()) : lSize;
    if (lRead < 0)
    {
        return {};
    }
    lBytes.resize(static_cast<std::size_t>(lRead));
    return lBytes;
}

// Returns whether the attribute is there now, or the file system has none.
bool CopyAttribute(const std::string& iFrom, const char* ipName, int iDescriptor)
{
    const auto lOld =
        ReadAll([&](char* opBytes, std::size_t iSize) { return ::getxattr(iFrom.c_str(), ipName, opBytes, iSize); });
    const auto lNew =
        ReadAll([&](char* opBytes, std::size_t iSize) { return ::fgetxattr(iDescriptor, ipName, opBytes, iSize); });
    return lOld && (lOld == lNew || ::fsetxattr(iDescriptor, ipName, lOld->data(), lOld->size(), 0) == 0);
}

// Access control lists are attributes, too.
void CopyAttributes(const std::string& iFrom, int iDescriptor, std::vector<std::string>& oLost)
{
    // The folder may have given the new file a list that the old one does not have.
    if (::getxattr(iFrom.c_str(), gAccessList, nullptr, 0) < 0)
    {
        ::fremovexattr(iDescriptor, gAccessList);
    }
    const auto lNames =
        ReadAll([&](char* opBytes, std::size_t iSize) { return ::listxattr(iFrom.c_str(), opBytes, iSize); });
    if (!lNames && errno != ENOTSUP)
    {
        oLost.push_back(std::string("its extended attributes could not be read: ") + std::strerror(errno));
    }
    const std::string lList = lNames.value_or(""); // each name ends with a zero
    for (std::size_t lPlace = 0; lPlace < lList.size(); lPlace = lList.find('\0', lPlace) + 1)
    {
        const char* lName = lList.c_str() + lPlace;
        if (!CopyAttribute(iFrom, lName, iDescriptor) && errno != ENOTSUP)
        {
            oLost.push_back("its extended attribute " + ShowFile(lName) +
                            " could not be kept: " + std::strerror(errno));
        }
    }
}

} // namespace

std::vector<std::string> CopyTraits(const std::string& iFrom, const struct stat& iStatus, int iDescriptor)
{
    std::vector<std::string> lLost;
    const mode_t lMode = CopyOwner(iStatus, iDescriptor, lLost);
    CopyAttributes(iFrom, iDescriptor, lLost);
    // The mode goes last: a new owner resets it, and without write permission no attribute can be set. With an access
    // control list, the group's bits bound what all that it names may do.
    if (::fchmod(iDescriptor, lMode) != 0)
    {
        ThrowIoError("cannot write", iFrom);
    }
    if (iStatus.st_nlink > 1)
    {
        lLost.push_back("its other names (hard links) keep the old text");
    }
    return lLost;
}

} // namespace TalBaseTool
