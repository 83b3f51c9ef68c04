#include "registration_table.h"

#include <bookmark/bookmark_operations.h>
#include <bookmark/bookmark_page.h>

namespace {

template <typename Page>
void* MakePage()
{
    return new Page; // enrols itself
}

template <typename Operation>
void* MakeOperation()
{
    auto* operation = new Operation;
    operation->RegisterToGlobal();
    return operation;
}

template <typename Class>
void Destroy(void* object)
{
    delete static_cast<Class*>(object);
}

template <typename Page>
Registration PageRow(const char* name, int teardown)
{
    return {name, &MakePage<Page>, &Destroy<Page>, teardown};
}

template <typename Operation>
Registration OperationRow(const char* name, int teardown)
{
    return {name, &MakeOperation<Operation>, &Destroy<Operation>, teardown};
}

} // namespace

const std::vector<Registration>& RegistrationTable()
{
    static const std::vector<Registration> table = {
        PageRow<NaviBookmark>("Bookmark", 11),

        OperationRow<GP_BookmarkOperation>("vn_bookmark", 6),
        OperationRow<GP_AddBookmark>("d_addbookmark", 17),
        OperationRow<GP_BookmarkResetPosition>("d_bookmarkresetposition", 40),
        OperationRow<GP_BookmarkRename>("d_bookmarkrename", 41),
        OperationRow<GP_BookmarkWrap>("d_bookmarkwrap", 42),
        OperationRow<GP_BookmarkDelete>("d_bookmarkdelete", 43),
        OperationRow<GP_BookmarkDeleteAll>("d_bookmarkdeleteall", 44),
    };
    return table;
}
