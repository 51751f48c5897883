#include "record/addreg_root_key.h"

HKEY AddRegRootKey(AddRegRoot root)
{
    switch (root) {
    case AddRegRoot::ClassesRoot: return HKEY_CLASSES_ROOT;
    case AddRegRoot::CurrentUser: return HKEY_CURRENT_USER;
    case AddRegRoot::LocalMachine: return HKEY_LOCAL_MACHINE;
    case AddRegRoot::Users: return HKEY_USERS;
    case AddRegRoot::Unknown: break;
    }
    return NULL;
}
