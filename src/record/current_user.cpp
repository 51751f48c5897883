#include <windows.h>

#include "record/current_user.h"

// UNLEN, and its NUL.
static const DWORD UserNameSize = 257;

static std::string UserName()
{
    char name[UserNameSize] = "";
    DWORD size = UserNameSize;
    if (!GetUserNameA(name, &size))
        return "(whose name cannot be read, error " + std::to_string(GetLastError()) + ")";
    return name;
}

std::string InUserHive()
{
    return "; in the hive of user " + UserName();
}

std::string InUserProfile()
{
    return "; in the profile of user " + UserName();
}
