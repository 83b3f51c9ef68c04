<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
    <context>
        <name>AddBookmarkCommand</name>
        <message>
            <source>Undo failed</source>
            <translation>撤销失败</translation>
        </message>
        <message>
            <source>Redo failed</source>
            <translation>重做失败</translation>
        </message>
    </context>
    <context>
        <name>BatchAddOutlineDlg</name>
        <message>
            <source>Batch add</source>
            <translation>批量添加</translation>
        </message>
        <message>
            <source>Close</source>
            <translation>关闭</translation>
        </message>
        <message>
            <source>A catalog with a line, input name and use enter to new line</source>
            <translation>每行一个目录，输入名称并按回车换行</translation>
        </message>
        <message>
            <source>Add</source>
            <translation>添加</translation>
        </message>
        <message>
            <source>Cancel</source>
            <translation>取消</translation>
        </message>
    </context>
    <context>
        <name>BookMarkTreeItemDelegate</name>
        <message>
            <source>bookmark name</source>
            <translation>书签名称</translation>
        </message>
        <message>
            <source>remark</source>
            <translation>提示</translation>
        </message>
        <message>
            <source>Duplicate bookmark name,please modify the bookmark name.</source>
            <translation>书签名称重复，请修改书签名称。</translation>
        </message>
    </context>
    <context>
        <name>ContextMenu</name>
        <message>
            <source>Add Bookmark</source>
            <translation>添加书签</translation>
        </message>
        <message>
            <source>Rename</source>
            <translation>重命名</translation>
        </message>
        <message>
            <source>Set to Current Position</source>
            <translation>设为当前位置</translation>
        </message>
        <message>
            <source>Delete</source>
            <translation>删除</translation>
        </message>
        <message>
            <source>Delete All</source>
            <translation>全部删除</translation>
        </message>
        <message>
            <source>Wrap Lines</source>
            <translation>自动换行</translation>
        </message>
        <message>
            <source>Add Entry</source>
            <translation>添加目录</translation>
        </message>
        <message>
            <source>Add Entry Below</source>
            <translation>添加子目录</translation>
        </message>
        <message>
            <source>Add Several Entries…</source>
            <translation>批量添加目录…</translation>
        </message>
        <message>
            <source>Expand All Below</source>
            <translation>展开全部子目录</translation>
        </message>
        <message>
            <source>Expand or Collapse All</source>
            <translation>全部展开或收起</translation>
        </message>
    </context>
    <context>
        <name>GPI_BookmarkDelete</name>
        <message>
            <source>remark</source>
            <translation>提示</translation>
        </message>
        <message>
            <source>Please select a bookmark first.</source>
            <translation>请先选择一个书签。</translation>
        </message>
    </context>
    <context>
        <name>GPI_BookmarkDeleteAll</name>
        <message>
            <source>remark</source>
            <translation>提示</translation>
        </message>
        <message>
            <source>Are you sure to delete all bookmarks in the document?</source>
            <translation>确定要删除文档中的所有书签吗？</translation>
        </message>
    </context>
    <context>
        <name>GPI_OutlineDel</name>
        <message>
            <source>Warning</source>
            <translation>警告</translation>
        </message>
        <message>
            <source>No select item</source>
            <translation>没有选中的目录</translation>
        </message>
        <message>
            <source>Already exist associate pageIndex,dou you want to del?</source>
            <translation>已关联页面，是否要删除？</translation>
        </message>
    </context>
    <context>
        <name>GPI_OutlineDelAll</name>
        <message>
            <source>Warning</source>
            <translation>警告</translation>
        </message>
        <message>
            <source>Do you want to del all outlines?</source>
            <translation>是否要删除所有目录？</translation>
        </message>
    </context>
    <context>
        <name>GPI_OutlineResetPos</name>
        <message>
            <source>Warning</source>
            <translation>警告</translation>
        </message>
        <message>
            <source>Do you want to change associate position?</source>
            <translation>是否要更改关联位置？</translation>
        </message>
        <message>
            <source>Associate failed!</source>
            <translation>关联失败！</translation>
        </message>
        <message>
            <source>Associate success!</source>
            <translation>关联成功！</translation>
        </message>
    </context>
    <context>
        <name>GP_AddBookmark</name>
        <message>
            <source>new bookmark</source>
            <translation>新建书签</translation>
        </message>
    </context>
    <context>
        <name>GP_BookmarkResetPosition</name>
        <message>
            <source>set success!</source>
            <translation>设置成功！</translation>
        </message>
    </context>
    <context>
        <name>GP_OutlineAdd</name>
        <message>
            <source>new outline</source>
            <translation>新建目录</translation>
        </message>
    </context>
    <context>
        <name>GP_OutlineAddSub</name>
        <message>
            <source>new outline</source>
            <translation>新建目录</translation>
        </message>
    </context>
    <context>
        <name>G_ActionHandler</name>
        <message>
            <source>This kind of action is not supported.</source>
            <translation>不支持此类动作。</translation>
        </message>
        <message>
            <source>The bookmark “%1” does not exist.</source>
            <translation>书签“%1”不存在。</translation>
        </message>
        <message>
            <source>This page does not exist.</source>
            <translation>该页面不存在。</translation>
        </message>
        <message>
            <source>Open address</source>
            <translation>打开网址</translation>
        </message>
        <message>
            <source>Do you want to open this address?</source>
            <translation>是否打开此网址？</translation>
        </message>
        <message>
            <source>This address cannot be opened.</source>
            <translation>无法打开此网址。</translation>
        </message>
    </context>
    <context>
        <name>G_DocView</name>
        <message>
            <source>This page cannot be shown: %1</source>
            <translation>无法显示此页：%1</translation>
        </message>
        <message>
            <source>no picture came</source>
            <translation>没有得到图像</translation>
        </message>
    </context>
    <context>
        <name>G_PageWidget</name>
        <message>
            <source>Document pages</source>
            <translation>文档页面</translation>
        </message>
    </context>
    <context>
        <name>G_UIContext</name>
        <message>
            <source>This document is read-only.</source>
            <translation>此文档为只读。</translation>
        </message>
        <message>
            <source>The permissions of this document do not allow that.</source>
            <translation>此文档的权限不允许该操作。</translation>
        </message>
    </context>
    <context>
        <name>FindBar</name>
        <message>
            <source>Find in the document</source>
            <translation>在文档中查找</translation>
        </message>
        <message>
            <source>Find:</source>
            <translation>查找：</translation>
        </message>
        <message>
            <source>Text to find</source>
            <translation>要查找的文字</translation>
        </message>
        <message>
            <source>Enter finds the next match, Shift+Enter the previous one, Esc closes</source>
            <translation>Enter 查找下一处，Shift+Enter 查找上一处，Esc 关闭</translation>
        </message>
        <message>
            <source>Find Previous</source>
            <translation>查找上一处</translation>
        </message>
        <message>
            <source>Previous match (Shift+F3)</source>
            <translation>上一处（Shift+F3）</translation>
        </message>
        <message>
            <source>Find Next</source>
            <translation>查找下一处</translation>
        </message>
        <message>
            <source>Next match (F3)</source>
            <translation>下一处（F3）</translation>
        </message>
        <message>
            <source>Match case</source>
            <translation>区分大小写</translation>
        </message>
        <message>
            <source>Tells capital letters from small ones</source>
            <translation>区分大写和小写字母</translation>
        </message>
        <message>
            <source>Whole words</source>
            <translation>全字匹配</translation>
        </message>
        <message>
            <source>Finds no parts of words</source>
            <translation>不查找单词的一部分</translation>
        </message>
        <message>
            <source>Close the find bar</source>
            <translation>关闭查找栏</translation>
        </message>
        <message>
            <source>Close (Esc)</source>
            <translation>关闭（Esc）</translation>
        </message>
        <message>
            <source>%1 of %2</source>
            <translation>第 %1 处，共 %2 处</translation>
        </message>
        <message>
            <source>Searching…</source>
            <translation>正在查找…</translation>
        </message>
        <message>
            <source>No matches</source>
            <translation>无匹配项</translation>
        </message>
        <message>
            <source>Pages that could not be read: %1</source>
            <translation>无法读取的页数：%1</translation>
        </message>
    </context>
    <context>
        <name>MainWindow</name>
        <message>
            <source>Open</source>
            <translation>打开</translation>
        </message>
        <message>
            <source>%1 cannot be opened.
%2</source>
            <translation>无法打开 %1。
%2</translation>
        </message>
        <message>
            <source>Save the changes in %1?</source>
            <translation>是否保存对 %1 的更改？</translation>
        </message>
        <message>
            <source>Close</source>
            <translation>关闭</translation>
        </message>
        <message>
            <source>%1 was changed by another program since it was opened. Overwrite it?</source>
            <translation>%1 打开后已被其他程序更改。要覆盖它吗？</translation>
        </message>
        <message>
            <source>The document is signed. Saving will make its signatures invalid.</source>
            <translation>文档已签名。保存将使其签名失效。</translation>
        </message>
        <message>
            <source>Save a Copy...</source>
            <translation>保存副本…</translation>
        </message>
        <message>
            <source>Save</source>
            <translation>保存</translation>
        </message>
        <message>
            <source>Save As</source>
            <translation>另存为</translation>
        </message>
        <message>
            <source>%1 is open in another tab.</source>
            <translation>%1 已在另一个标签页中打开。</translation>
        </message>
        <message>
            <source>The document was not saved.
%1</source>
            <translation>文档未保存。
%1</translation>
        </message>
        <message>
            <source>Saved.</source>
            <translation>已保存。</translation>
        </message>
        <message>
            <source>OFD documents (*.ofd)</source>
            <translation>OFD 文档 (*.ofd)</translation>
        </message>
        <message>
            <source>OFD documents (*.ofd);;All files (*)</source>
            <translation>OFD 文档 (*.ofd);;所有文件 (*)</translation>
        </message>
        <message>
            <source>Only files of this machine can be opened.</source>
            <translation>只能打开本机上的文件。</translation>
        </message>
        <message>
            <source>Tools</source>
            <translation>工具</translation>
        </message>
        <message>
            <source>&amp;Help</source>
            <translation>帮助(&amp;H)</translation>
        </message>
        <message>
            <source>&amp;About</source>
            <translation>关于(&amp;A)</translation>
        </message>
        <message>
            <source>&amp;File</source>
            <translation>文件(&amp;F)</translation>
        </message>
        <message>
            <source>&amp;Open...</source>
            <translation>打开(&amp;O)...</translation>
        </message>
        <message>
            <source>Open &amp;Recent</source>
            <translation>最近打开的文件(&amp;R)</translation>
        </message>
        <message>
            <source>&amp;Save</source>
            <translation>保存(&amp;S)</translation>
        </message>
        <message>
            <source>Save &amp;As...</source>
            <translation>另存为(&amp;A)...</translation>
        </message>
        <message>
            <source>&amp;Close</source>
            <translation>关闭(&amp;C)</translation>
        </message>
        <message>
            <source>&amp;Quit</source>
            <translation>退出(&amp;Q)</translation>
        </message>
        <message>
            <source>&amp;Edit</source>
            <translation>编辑(&amp;E)</translation>
        </message>
        <message>
            <source>Undo</source>
            <translation>撤销</translation>
        </message>
        <message>
            <source>Redo</source>
            <translation>重做</translation>
        </message>
        <message>
            <source>&amp;Copy</source>
            <translation>复制(&amp;C)</translation>
        </message>
        <message>
            <source>Select &amp;All</source>
            <translation>全选(&amp;A)</translation>
        </message>
        <message>
            <source>Actual Size</source>
            <translation>实际大小</translation>
        </message>
        <message>
            <source>Fit Width</source>
            <translation>适合宽度</translation>
        </message>
        <message>
            <source>Fit Height</source>
            <translation>适合高度</translation>
        </message>
        <message>
            <source>Fit Page</source>
            <translation>适合页面</translation>
        </message>
        <message>
            <source>&amp;View</source>
            <translation>视图(&amp;V)</translation>
        </message>
        <message>
            <source>Zoom In</source>
            <translation>放大</translation>
        </message>
        <message>
            <source>Zoom Out</source>
            <translation>缩小</translation>
        </message>
        <message>
            <source>Rotate</source>
            <translation>旋转</translation>
        </message>
        <message>
            <source>&amp;Go</source>
            <translation>转到(&amp;G)</translation>
        </message>
        <message>
            <source>First Page</source>
            <translation>第一页</translation>
        </message>
        <message>
            <source>Previous Page</source>
            <translation>上一页</translation>
        </message>
        <message>
            <source>Next Page</source>
            <translation>下一页</translation>
        </message>
        <message>
            <source>Last Page</source>
            <translation>最后一页</translation>
        </message>
        <message>
            <source>&amp;Tools</source>
            <translation>工具(&amp;T)</translation>
        </message>
        <message>
            <source>Hand</source>
            <translation>手形工具</translation>
        </message>
        <message>
            <source>Select Text</source>
            <translation>选择文本</translation>
        </message>
        <message>
            <source>Add Bookmark</source>
            <translation>添加书签</translation>
        </message>
        <message>
            <source>No Recent Files</source>
            <translation>没有最近打开的文件</translation>
        </message>
        <message>
            <source>About</source>
            <translation>关于</translation>
        </message>
        <message>
            <source>tetoreader %1
A reader of fixed-layout documents.</source>
            <translation>tetoreader %1
版式文档阅读器。</translation>
        </message>
        <message>
            <source>Open a document, or drop one here.</source>
            <translation>打开文档，或将文档拖放到此处。</translation>
        </message>
        <message>
            <source>%1 was changed by another program.</source>
            <translation>%1 已被其他程序更改。</translation>
        </message>
        <message>
            <source>The file was changed by another program.</source>
            <translation>文件已被其他程序更改。</translation>
        </message>
        <message>
            <source>The file was removed or renamed by another program.</source>
            <translation>文件已被其他程序删除或重命名。</translation>
        </message>
        <message>
            <source>Reload</source>
            <translation>重新加载</translation>
        </message>
        <message>
            <source>Discards your changes</source>
            <translation>将放弃您的更改</translation>
        </message>
        <message>
            <source>Ignore</source>
            <translation>忽略</translation>
        </message>
        <message>
            <source>&amp;Find...</source>
            <translation>查找(&amp;F)...</translation>
        </message>
        <message>
            <source>Find &amp;Next</source>
            <translation>查找下一处(&amp;N)</translation>
        </message>
        <message>
            <source>Find &amp;Previous</source>
            <translation>查找上一处(&amp;P)</translation>
        </message>
        <message>
            <source>Past the end, on from the beginning</source>
            <translation>已到文档末尾，从开头继续</translation>
        </message>
        <message>
            <source>Past the beginning, on from the end</source>
            <translation>已到文档开头，从末尾继续</translation>
        </message>
    </context>
    <context>
        <name>NaviBookmark</name>
        <message>
            <source>Bookmark</source>
            <translation>书签</translation>
        </message>
        <message>
            <source>View document bookmarks (Alt+Shift+4)</source>
            <translation>查看文档书签 (Alt+Shift+4)</translation>
        </message>
    </context>
    <context>
        <name>NaviBookmarkWidget</name>
        <message>
            <source>add bookmark</source>
            <translation>添加书签</translation>
        </message>
        <message>
            <source>delete bookmark</source>
            <translation>删除书签</translation>
        </message>
        <message>
            <source>bookmarks</source>
            <translation>书签列表</translation>
        </message>
    </context>
    <context>
        <name>NaviOutlineWidget</name>
        <message>
            <source>Batch add</source>
            <translation>批量添加</translation>
        </message>
        <message>
            <source>Add outline</source>
            <translation>添加目录</translation>
        </message>
        <message>
            <source>Del outline</source>
            <translation>删除目录</translation>
        </message>
        <message>
            <source>Collapse all outline</source>
            <translation>收起全部目录</translation>
        </message>
        <message>
            <source>Catalog</source>
            <translation>目录</translation>
        </message>
        <message>
            <source>Expand all outline</source>
            <translation>展开全部目录</translation>
        </message>
    </context>
    <context>
        <name>NaviPageOutline</name>
        <message>
            <source>Catalog</source>
            <translation>目录</translation>
        </message>
        <message>
            <source>View the document directory (Alt+Shift+1)</source>
            <translation>查看文档目录 (Alt+Shift+1)</translation>
        </message>
    </context>
    <context>
        <name>NavigationBar</name>
        <message>
            <source>Navigation panes</source>
            <translation>导航窗格</translation>
        </message>
    </context>
    <context>
        <name>OfdDocument</name>
        <message>
            <source>The page is missing in the file.</source>
            <translation>文件中缺少此页。</translation>
        </message>
        <message>
            <source>The page is too large to be painted.</source>
            <translation>页面过大，无法绘制。</translation>
        </message>
        <message>
            <source>There is not enough memory to paint the page.</source>
            <translation>内存不足，无法绘制此页。</translation>
        </message>
    </context>
    <context>
        <name>OfdFile</name>
        <message>
            <source>Saved, but not these changes: %1.</source>
            <translation>已保存，但以下更改除外：%1。</translation>
        </message>
    </context>
    <context>
        <name>OfdPackage</name>
        <message>
            <source>The file does not exist.</source>
            <translation>文件不存在。</translation>
        </message>
        <message>
            <source>The file cannot be read: %1.</source>
            <translation>无法读取文件：%1。</translation>
        </message>
        <message>
            <source>This is no ordinary file.</source>
            <translation>这不是普通文件。</translation>
        </message>
        <message>
            <source>The file has no part "%1".</source>
            <translation>文件缺少部件“%1”。</translation>
        </message>
        <message>
            <source>This is no OFD file: it has no OFD.xml.</source>
            <translation>这不是 OFD 文件：缺少 OFD.xml。</translation>
        </message>
        <message>
            <source>The file is encrypted.</source>
            <translation>文件已加密。</translation>
        </message>
        <message>
            <source>The part "%1" cannot be read: %2</source>
            <translation>无法读取部件“%1”：%2</translation>
        </message>
    </context>
    <context>
        <name>OpenDocumentFile</name>
        <message>
            <source>The file does not exist.</source>
            <translation>文件不存在。</translation>
        </message>
        <message>
            <source>This is a folder, not a document.</source>
            <translation>这是文件夹，不是文档。</translation>
        </message>
        <message>
            <source>The file cannot be read: %1</source>
            <translation>无法读取文件：%1</translation>
        </message>
        <message>
            <source>The file is empty.</source>
            <translation>文件为空。</translation>
        </message>
        <message>
            <source>The file is not a document that this program reads.</source>
            <translation>此文件不是本程序能读取的文档。</translation>
        </message>
    </context>
    <context>
        <name>OutLineTreeItemDelegate</name>
        <message>
            <source>outline title</source>
            <translation>目录标题</translation>
        </message>
    </context>
    <context>
        <name>PaneArea</name>
        <message>
            <source>Close the pane</source>
            <translation>关闭窗格</translation>
        </message>
    </context>
    <context>
        <name>PluginHost</name>
        <message>
            <source>The module %1 is a plugin for another program.</source>
            <translation>模块 %1 是其他程序的插件。</translation>
        </message>
        <message>
            <source>The module %1 does not start.</source>
            <translation>模块 %1 无法启动。</translation>
        </message>
    </context>
    <context>
        <name>QObject</name>
        <message>
            <source>Open documents</source>
            <translation>已打开的文档</translation>
        </message>
    </context>
    <context>
        <name>StatusPanel</name>
        <message>
            <source>Fit Width</source>
            <translation>适合宽度</translation>
        </message>
        <message>
            <source>Fit Height</source>
            <translation>适合高度</translation>
        </message>
        <message>
            <source>Fit Page</source>
            <translation>适合页面</translation>
        </message>
        <message>
            <source>Page</source>
            <translation>页码</translation>
        </message>
        <message>
            <source>Zoom</source>
            <translation>缩放</translation>
        </message>
    </context>
    <context>
        <name>main</name>
        <message>
            <source>A reader of fixed-layout documents.</source>
            <translation>版式文档阅读器。</translation>
        </message>
        <message>
            <source>Open each pane, write a picture of each into &lt;folder&gt;, and end.</source>
            <translation>依次打开各窗格，将图像写入 &lt;folder&gt; 后退出。</translation>
        </message>
        <message>
            <source>Do not hand the files to a running reader.</source>
            <translation>不将文件交给已运行的阅读器。</translation>
        </message>
        <message>
            <source>Documents to open.</source>
            <translation>要打开的文档。</translation>
        </message>
        <message>
            <source>Navigation</source>
            <translation>导航</translation>
        </message>
        <message>
            <source>The navigation panes are not available.
%1</source>
            <translation>导航窗格不可用。
%1</translation>
        </message>
    </context>
</TS>
