#include "registration_table.h"

#include <bookmark/bookmark_operations.h>
#include <bookmark/bookmark_page.h>
#include <outline/outline_operations.h>
#include <outline/outline_page.h>

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
        PageRow<NaviPageOutline>("Catalog", 12),
        PageRow<NaviBookmark>("Bookmark", 11),

        OperationRow<GP_OutlineOperation>("vn_outline", 4),
        OperationRow<GP_AddOutline>("d_addoutline", 5),
        OperationRow<GP_BookmarkOperation>("vn_bookmark", 6),
        OperationRow<GP_AddBookmark>("d_addbookmark", 17),
        OperationRow<GP_BookmarkResetPosition>("d_bookmarkresetposition", 40),
        OperationRow<GP_BookmarkRename>("d_bookmarkrename", 41),
        OperationRow<GP_BookmarkWrap>("d_bookmarkwrap", 42),
        OperationRow<GP_BookmarkDelete>("d_bookmarkdelete", 43),
        OperationRow<GP_BookmarkDeleteAll>("d_bookmarkdeleteall", 44),
        OperationRow<GP_OutlineResetPos>("d_outline_resetpos", 46),
        OperationRow<GP_OutlineAdd>("d_outline_add", 45),
        OperationRow<GP_OutlineAddSub>("d_outline_addsub", 47),
        OperationRow<GP_OutlineRename>("d_outline_rename", 48),
        OperationRow<GP_OutlineWordwrap>("d_outline_wordwrap", 49),
        OperationRow<GP_OutlineExpandSub>("d_outline_expandsub", 50),
        OperationRow<GP_OutlineDel>("d_outline_del", 51),
        OperationRow<GP_OutlineDelAll>("d_outline_delall", 52),
        OperationRow<GP_OutlineBatchAdd>("d_outline_batchadd", 53),
        OperationRow<GP_OutlineExpandOrCollapse>("d_outline_expandorcollapse", 54),
    };
    return table;
}
