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
    <name>BackgroundJob</name>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
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
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>全选</translation>
    </message>
    <message>
        <source>Find…</source>
        <translation>查找…</translation>
    </message>
    <message>
        <source>Properties…</source>
        <translation>属性…</translation>
    </message>
    <message>
        <source>Open Link</source>
        <translation>打开链接</translation>
    </message>
    <message>
        <source>Copy Link Address</source>
        <translation>复制链接地址</translation>
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
    <name>GP_LinkCommand</name>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>The attachment cannot be opened.</source>
        <translation>无法打开附件。</translation>
    </message>
    <message>
        <source>Save Attachment</source>
        <translation>保存附件</translation>
    </message>
    <message>
        <source>The attachment was saved.</source>
        <translation>附件已保存。</translation>
    </message>
    <message>
        <source>The attachment cannot be saved there.</source>
        <translation>无法将附件保存到该位置。</translation>
    </message>
    <message>
        <source>The attachment %1 is a document. Do you want to open it or to save it?</source>
        <translation>附件 %1 是一个文档。要打开还是保存？</translation>
    </message>
    <message>
        <source>Attachment</source>
        <translation>附件</translation>
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
    <message>
        <source>Page %1</source>
        <translation>第 %1 页</translation>
    </message>
    <message>
        <source>Attachment: %1</source>
        <translation>附件：%1</translation>
    </message>
    <message>
        <source>This attachment does not exist.</source>
        <translation>该附件不存在。</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>声音</translation>
    </message>
    <message>
        <source>Movie</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>Sounds and movies cannot be played.</source>
        <translation>无法播放声音和视频。</translation>
    </message>
    <message>
        <source>The document does not allow its attachments to be saved.</source>
        <translation>该文档不允许保存其附件。</translation>
    </message>
</context>
<context>
    <name>G_DocView</name>
    <message>
        <source>There is not enough memory to paint the page.</source>
        <translation>内存不足，无法绘制此页。</translation>
    </message>
    <message>
        <source>There is not enough memory to copy the text.</source>
        <translation>内存不足，无法复制文字。</translation>
    </message>
    <message>
        <source>This page cannot be shown: %1</source>
        <translation>无法显示此页：%1</translation>
    </message>
    <message>
        <source>no picture came</source>
        <translation>没有得到图像</translation>
    </message>
    <message>
        <source>The text is copied as soon as all of it has been read. Esc stops that.</source>
        <translation>全部文本读取完毕后即复制。按 Esc 停止。</translation>
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
    <name>JobBar</name>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
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
    <message>
        <source>P&amp;roperties...</source>
        <translation>属性(&amp;R)...</translation>
    </message>
    <message>
        <source>Save a Copy</source>
        <translation>保存副本</translation>
    </message>
    <message>
        <source>A copy needs another name than the document itself.</source>
        <translation>副本的名称不能与文档本身相同。</translation>
    </message>
    <message>
        <source>Discard your changes in %1?</source>
        <translation>要放弃对 %1 所做的更改吗？</translation>
    </message>
    <message>
        <source>%1 (copy).ofd</source>
        <translation>%1（副本）.ofd</translation>
    </message>
    <message>
        <source>Save a &amp;Copy...</source>
        <translation>保存副本(&amp;C)...</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>打印(&amp;P)...</translation>
    </message>
    <message>
        <source>Save Page as P&amp;icture...</source>
        <translation>将页面另存为图片(&amp;I)...</translation>
    </message>
    <message>
        <source>Rotate Right</source>
        <translation>向右旋转</translation>
    </message>
    <message>
        <source>Rotate Left</source>
        <translation>向左旋转</translation>
    </message>
    <message>
        <source>&amp;Full Screen</source>
        <translation>全屏(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Go to Page...</source>
        <translation>转到页面(&amp;G)...</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>后退(&amp;B)</translation>
    </message>
    <message>
        <source>&amp;Forward</source>
        <translation>前进(&amp;F)</translation>
    </message>
    <message>
        <source>Next &amp;Tab</source>
        <translation>下一个标签页(&amp;T)</translation>
    </message>
    <message>
        <source>Previous T&amp;ab</source>
        <translation>上一个标签页(&amp;A)</translation>
    </message>
    <message>
        <source>Given up.</source>
        <translation>已取消。</translation>
    </message>
    <message>
        <source>Done.</source>
        <translation>已完成。</translation>
    </message>
    <message>
        <source>Wait for the work that is under way, or cancel it.</source>
        <translation>请等待正在进行的工作完成，或将其取消。</translation>
    </message>
    <message>
        <source>%1 is still being printed or saved as a picture. Give that up?</source>
        <translation>%1 仍在打印或另存为图片。要放弃吗？</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>打印</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>正在打印</translation>
    </message>
    <message>
        <source>Save Page as Picture</source>
        <translation>将页面另存为图片</translation>
    </message>
    <message>
        <source>PNG pictures (*.png);;JPEG pictures (*.jpg *.jpeg)</source>
        <translation>PNG 图片 (*.png);;JPEG 图片 (*.jpg *.jpeg)</translation>
    </message>
    <message>
        <source>Saving a picture</source>
        <translation>正在保存图片</translation>
    </message>
    <message>
        <source>F11 or Esc leaves full screen.</source>
        <translation>按 F11 或 Esc 退出全屏。</translation>
    </message>
    <message>
        <source>%1[*] (read-only)</source>
        <translation>%1[*]（只读）</translation>
    </message>
    <message>
        <source>Close %1</source>
        <translation>关闭 %1</translation>
    </message>
    <message>
        <source>&amp;Two Pages</source>
        <translation>双页(&amp;T)</translation>
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
        <source>There is not enough memory to open the document.</source>
        <translation>内存不足，无法打开文档。</translation>
    </message>
    <message>
        <source>There is not enough memory to save the document.</source>
        <translation>内存不足，无法保存文档。</translation>
    </message>
    <message>
        <source>The document was saved, but there was not enough memory to go on with it. Open it again.</source>
        <translation>文档已保存，但内存不足，无法继续使用。请重新打开。</translation>
    </message>
    <message>
        <source>There is not enough memory to read the text of the page.</source>
        <translation>内存不足，无法读取此页的文字。</translation>
    </message>
    <message>
        <source>There is not enough memory for the picture.</source>
        <translation>内存不足，无法显示图片。</translation>
    </message>
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
    <message>
        <source>Annotations belong to page %1, which is not there.</source>
        <translation>有注释属于页面 %1，但该页面不存在。</translation>
    </message>
    <message>
        <source>More than one object of the page has the ID %1.</source>
        <translation>页面上有多个对象的标识为 %1。</translation>
    </message>
    <message>
        <source>Page %1 is shown as an empty sheet: %2</source>
        <translation>页面 %1 显示为空白页：%2</translation>
    </message>
    <message>
        <source>The file has more than one part of this name.</source>
        <translation>文件中有多个同名的部件。</translation>
    </message>
    <message>
        <source>More than one annotation of the page has the ID %1.</source>
        <translation>页面上有多个注释的标识为 %1。</translation>
    </message>
    <message>
        <source>A clip has no area; nothing is cut off.</source>
        <translation>裁剪区没有面积，未作裁剪。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no value of a colour.</source>
        <translation>“%1”不是颜色值。</translation>
    </message>
    <message>
        <source>There is no colour space %1.</source>
        <translation>没有颜色空间 %1。</translation>
    </message>
    <message>
        <source>The palette has no colour %1.</source>
        <translation>调色板中没有颜色 %1。</translation>
    </message>
    <message>
        <source>The %1 of a colour cannot be used.</source>
        <translation>颜色的 %1 无法使用。</translation>
    </message>
    <message>
        <source>The blend mode &quot;%1&quot; is unknown.</source>
        <translation>混合模式“%1”未知。</translation>
    </message>
    <message>
        <source>A transform needs six numbers.</source>
        <translation>变换矩阵需要六个数。</translation>
    </message>
    <message>
        <source>%1=&quot;%2&quot; cannot be read.</source>
        <translation>无法读取 %1=&quot;%2&quot;。</translation>
    </message>
    <message>
        <source>A dash is shorter than nothing.</source>
        <translation>虚线段的长度为负。</translation>
    </message>
    <message>
        <source>There is no draw parameter %1.</source>
        <translation>没有绘制参数 %1。</translation>
    </message>
    <message>
        <source>The draw parameter %1 is relative to itself.</source>
        <translation>绘制参数 %1 继承自身。</translation>
    </message>
    <message>
        <source>The draw parameter %1 is painted with itself.</source>
        <translation>绘制参数 %1 用自身填充。</translation>
    </message>
    <message>
        <source>The colour profile of the picture cannot be used.</source>
        <translation>图片的颜色配置文件无法使用。</translation>
    </message>
    <message>
        <source>What the draw parameter %1 is relative to is not followed.</source>
        <translation>绘制参数 %1 所继承的参数未再向下追溯。</translation>
    </message>
    <message>
        <source>The path cannot be read from &quot;%1&quot; on.</source>
        <translation>路径从“%1”起无法读取。</translation>
    </message>
    <message>
        <source>More than one %1 has the ID %2.</source>
        <translation>有多个 %1 的标识为 %2。</translation>
    </message>
    <message>
        <source>The colour profile cannot be used.</source>
        <translation>颜色配置文件无法使用。</translation>
    </message>
    <message>
        <source>A shading has more colours than are used.</source>
        <translation>底纹的颜色过多，只使用其中一部分。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no distance between glyphs.</source>
        <translation>“%1”不是字形间距。</translation>
    </message>
    <message>
        <source>There is no picture %1.</source>
        <translation>没有图片 %1。</translation>
    </message>
    <message>
        <source>The object names no picture.</source>
        <translation>该对象没有指明图片。</translation>
    </message>
    <message>
        <source>The picture cannot be decoded.</source>
        <translation>图片无法解码。</translation>
    </message>
    <message>
        <source>The page has more groups and patterns than can be painted.</source>
        <translation>页面的组合与图案过多，无法全部绘制。</translation>
    </message>
    <message>
        <source>The page repeats its composite objects too often.</source>
        <translation>页面重复使用复合对象的次数过多。</translation>
    </message>
    <message>
        <source>The object&apos;s transform leaves nothing that can be painted.</source>
        <translation>对象经变换后没有可绘制的内容。</translation>
    </message>
    <message>
        <source>There is no composite object %1.</source>
        <translation>没有复合对象 %1。</translation>
    </message>
    <message>
        <source>The composite object %1 contains itself.</source>
        <translation>复合对象 %1 包含自身。</translation>
    </message>
    <message>
        <source>The template %1 contains itself.</source>
        <translation>模板 %1 包含自身。</translation>
    </message>
    <message>
        <source>The page uses too many templates.</source>
        <translation>页面使用的模板过多。</translation>
    </message>
    <message>
        <source>There is no template %1.</source>
        <translation>没有模板 %1。</translation>
    </message>
    <message>
        <source>Patterns are painted with patterns too often.</source>
        <translation>图案嵌套的层数过多。</translation>
    </message>
    <message>
        <source>The pattern&apos;s transform leaves nothing to be painted.</source>
        <translation>图案经变换后没有可绘制的内容。</translation>
    </message>
    <message>
        <source>The font cannot be used; another one stands in.</source>
        <translation>该字体无法使用，以其他字体代替。</translation>
    </message>
    <message>
        <source>Tables of the font are broken or missing; it is used without them.</source>
        <translation>字体中的部分表损坏或缺失，使用时将其忽略。</translation>
    </message>
    <message>
        <source>The file brings no font &quot;%1&quot;; &quot;%2&quot; stands in for it.</source>
        <translation>文件未嵌入字体“%1”，以“%2”代替。</translation>
    </message>
    <message>
        <source>The file brings no font &quot;%1&quot;, and none is installed.%2</source>
        <translation>文件未嵌入字体“%1”，系统中也没有安装任何字体。%2</translation>
    </message>
    <message>
        <source>There is no font %1.</source>
        <translation>没有字体 %1。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no point of a region.</source>
        <translation>“%1”不是区域中的点。</translation>
    </message>
    <message>
        <source>The page has too many links.</source>
        <translation>页面中的链接过多。</translation>
    </message>
    <message>
        <source>The page asks for more painting than is done; not all of it is shown.</source>
        <translation>此页面要求的绘制量过大，未全部显示。</translation>
    </message>
    <message>
        <source>The document is read-only. Save it under another name.</source>
        <translation>文档为只读。请另存为其他文件名。</translation>
    </message>
    <message>
        <source>custom tags</source>
        <translation>自定义标引</translation>
    </message>
    <message>
        <source>More than one template has the ID %1.</source>
        <translation>有多个模板的标识为 %1。</translation>
    </message>
    <message>
        <source>More than one page has the ID %1.</source>
        <translation>有多个页面的标识为 %1。</translation>
    </message>
    <message>
        <source>The current version of the document cannot be read.</source>
        <translation>无法读取文档的当前版本。</translation>
    </message>
    <message>
        <source>The file lists %1 versions of the document; none of them is shown and edited, but what the file names as the document itself.</source>
        <translation>文件列出了文档的 %1 个版本；所显示和编辑的不是其中任何一个，而是文件指定的文档本身。</translation>
    </message>
    <message>
        <source>Version %1 of %2 of the document is shown and edited.</source>
        <translation>当前显示和编辑的是文档的第 %1 个版本，共 %2 个。</translation>
    </message>
    <message>
        <source>Version %1 of %2 of the document is shown and edited, which is not the newest one.</source>
        <translation>当前显示和编辑的是文档的第 %1 个版本，共 %2 个，它不是最新版本。</translation>
    </message>
    <message>
        <source>The document is encrypted and cannot be opened.</source>
        <translation>文档已加密，无法打开。</translation>
    </message>
    <message>
        <source>The document&apos;s entry part cannot be read: %1</source>
        <translation>无法读取文档的入口部件：%1</translation>
    </message>
    <message>
        <source>The file names no document, or the document it names is missing.</source>
        <translation>文件没有指明文档，或所指明的文档不存在。</translation>
    </message>
    <message>
        <source>The document part cannot be read: %1</source>
        <translation>无法读取文档部件：%1</translation>
    </message>
    <message>
        <source>The document has no pages.</source>
        <translation>文档没有页面。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no size of a page.</source>
        <translation>“%1”不是页面的尺寸。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no place on a page.</source>
        <translation>“%1”不是页面上的位置。</translation>
    </message>
    <message>
        <source>There is no bookmark &quot;%1&quot;.</source>
        <translation>没有书签“%1”。</translation>
    </message>
    <message>
        <source>A destination leads to the page %1, which does not exist.</source>
        <translation>有跳转目标指向页面 %1，但该页面不存在。</translation>
    </message>
    <message>
        <source>The document has more than one list of bookmarks; they are read as one.</source>
        <translation>文档有多个书签列表，已合并读取。</translation>
    </message>
    <message>
        <source>Of more than one &quot;%1&quot; the first is read.</source>
        <translation>有多个“%1”，只读取第一个。</translation>
    </message>
    <message>
        <source>The file holds %1 documents; the first one is shown and edited.</source>
        <translation>文件包含 %1 个文档，只显示和编辑第一个。</translation>
    </message>
    <message>
        <source>More than one attachment has the ID %1.</source>
        <translation>多个附件具有相同的标识 %1。</translation>
    </message>
    <message>
        <source>The document has more than one list of pages; they are read as one.</source>
        <translation>文档有多个页面列表，已合并读取。</translation>
    </message>
    <message>
        <source>The document has more than one outline; the first is shown.</source>
        <translation>文档有多个目录，只显示第一个。</translation>
    </message>
    <message>
        <source>The seal is too large to be shown.</source>
        <translation>印章过大，无法显示。</translation>
    </message>
    <message>
        <source>A seal is to be painted on the page %1, which does not exist.</source>
        <translation>有印章应盖在页面 %1 上，但该页面不存在。</translation>
    </message>
    <message>
        <source>More than %1 seals are on one page.</source>
        <translation>同一页上的印章超过 %1 个。</translation>
    </message>
    <message>
        <source>The seal has no picture that can be read.</source>
        <translation>印章中没有可读取的图片。</translation>
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
        <source>The file has no part &quot;%1&quot;.</source>
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
        <source>The part &quot;%1&quot; cannot be read: %2</source>
        <translation>无法读取部件“%1”：%2</translation>
    </message>
    <message>
        <source>&quot;%1&quot; leads nowhere; &quot;%2&quot; was read instead.</source>
        <translation>“%1”指向的部件不存在，改为读取“%2”。</translation>
    </message>
    <message>
        <source>&quot;%1&quot; leads to no part.</source>
        <translation>“%1”没有指向任何部件。</translation>
    </message>
    <message>
        <source>The checksum of the part is wrong.</source>
        <translation>部件的校验和错误。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; is too big when unpacked.</source>
        <translation>部件“%1”解压后过大。</translation>
    </message>
    <message>
        <source>The XML has too many elements.</source>
        <translation>XML 的元素过多。</translation>
    </message>
    <message>
        <source>%1=&quot;%2&quot; cannot be read.</source>
        <translation>无法读取 %1=&quot;%2&quot;。</translation>
    </message>
    <message>
        <source>There is not enough memory to pack a part.</source>
        <translation>内存不足，无法压缩部件。</translation>
    </message>
    <message>
        <source>The data of a new part cannot be read.</source>
        <translation>无法读取新部件的数据。</translation>
    </message>
    <message>
        <source>Saving was cancelled.</source>
        <translation>保存已取消。</translation>
    </message>
    <message>
        <source>The data of a new part grew while it was being read.</source>
        <translation>新部件的数据在读取期间变大。</translation>
    </message>
    <message>
        <source>The name of a part is too long.</source>
        <translation>部件的名称过长。</translation>
    </message>
    <message>
        <source>The opened file was moved or deleted by another program.</source>
        <translation>已打开的文件被其他程序移动或删除。</translation>
    </message>
    <message>
        <source>The opened file was changed by another program.</source>
        <translation>已打开的文件被其他程序更改。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; was not written correctly.</source>
        <translation>部件“%1”没有正确写入。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; is damaged.</source>
        <translation>部件“%1”已损坏。</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>无法读取文件。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; cannot be written out.</source>
        <translation>无法写出部件“%1”。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; is encrypted.</source>
        <translation>部件“%1”已加密。</translation>
    </message>
    <message>
        <source>The part &quot;%1&quot; is packed in an unknown way (%2).</source>
        <translation>部件“%1”的压缩方式未知（%2）。</translation>
    </message>
    <message>
        <source>The disk is full.</source>
        <translation>磁盘已满。</translation>
    </message>
    <message>
        <source>The folder or the file is write-protected.</source>
        <translation>文件夹或文件受写保护。</translation>
    </message>
    <message>
        <source>The folder does not exist.</source>
        <translation>文件夹不存在。</translation>
    </message>
    <message>
        <source>The file cannot be written: %1.</source>
        <translation>无法写入文件：%1。</translation>
    </message>
    <message>
        <source>The opened file was made shorter by another program.</source>
        <translation>已打开的文件被其他程序截短。</translation>
    </message>
    <message>
        <source>The file name is a link that leads nowhere.</source>
        <translation>该文件名是一个链接，其指向的目标不存在。</translation>
    </message>
    <message>
        <source>The target is no ordinary file.</source>
        <translation>目标不是普通文件。</translation>
    </message>
    <message>
        <source>The opened file cannot be read any more.</source>
        <translation>已打开的文件无法再读取。</translation>
    </message>
    <message>
        <source>The XML holds a zero byte.</source>
        <translation>XML 中含有零字节。</translation>
    </message>
    <message>
        <source>The XML has a document type declaration, which is not allowed.</source>
        <translation>XML 中含有文档类型声明，这是不允许的。</translation>
    </message>
    <message>
        <source>The XML ends in the middle of a tag.</source>
        <translation>XML 在标签中间中断。</translation>
    </message>
    <message>
        <source>The XML is nested too deep.</source>
        <translation>XML 的嵌套层数过多。</translation>
    </message>
    <message>
        <source>The file is damaged: its directory contradicts itself.</source>
        <translation>文件已损坏：压缩包的条目表自相矛盾。</translation>
    </message>
    <message>
        <source>The file cannot be read to its end.</source>
        <translation>无法将文件读到末尾。</translation>
    </message>
    <message>
        <source>The file has too many entries.</source>
        <translation>文件中的条目过多。</translation>
    </message>
    <message>
        <source>The file is incomplete: its end is missing.</source>
        <translation>文件不完整：缺少结尾部分。</translation>
    </message>
    <message>
        <source>This is no OFD file.</source>
        <translation>这不是 OFD 文件。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>The file is one piece of a split archive.</source>
        <translation>该文件是分卷压缩包中的一卷。</translation>
    </message>
</context>
<context>
    <name>OfdProperties</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation>%1（%2 字节）</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>OFD, version not given</source>
        <translation>OFD，未注明版本</translation>
    </message>
    <message>
        <source>OFD, version %1</source>
        <translation>OFD，版本 %1</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页数</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>标题</translation>
    </message>
    <message>
        <source>Author</source>
        <translation>作者</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>主题</translation>
    </message>
    <message>
        <source>Summary</source>
        <translation>摘要</translation>
    </message>
    <message>
        <source>Keywords</source>
        <translation>关键词</translation>
    </message>
    <message>
        <source>Made with</source>
        <translation>创建程序</translation>
    </message>
    <message>
        <source>Created</source>
        <translation>创建时间</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 至 %2</translation>
    </message>
    <message>
        <source>from %1 on</source>
        <translation>自 %1 起</translation>
    </message>
    <message>
        <source>until %1</source>
        <translation>至 %1 止</translation>
    </message>
    <message>
        <source>%1 (not today: no editing)</source>
        <translation>%1（今天不在此期间内，不可编辑）</translation>
    </message>
    <message>
        <source>May be edited</source>
        <translation>允许编辑</translation>
    </message>
    <message>
        <source>May be annotated</source>
        <translation>允许注释</translation>
    </message>
    <message>
        <source>May be exported</source>
        <translation>允许导出</translation>
    </message>
    <message>
        <source>Permissions hold</source>
        <translation>权限有效期</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>权限</translation>
    </message>
    <message>
        <source>The document restricts nothing.</source>
        <translation>文档没有任何限制。</translation>
    </message>
    <message>
        <source>Signed</source>
        <translation>已签名</translation>
    </message>
    <message>
        <source>Yes, not verified</source>
        <translation>是，未经验证</translation>
    </message>
    <message>
        <source>Encrypted</source>
        <translation>已加密</translation>
    </message>
    <message>
        <source>Yes, in parts</source>
        <translation>是（部分内容）</translation>
    </message>
    <message>
        <source>Signature</source>
        <translation>签名</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Electronic seal</source>
        <translation>电子印章</translation>
    </message>
    <message>
        <source>Signature without a seal</source>
        <translation>不带印章的签名</translation>
    </message>
    <message>
        <source>The signature cannot be read.</source>
        <translation>无法读取该签名。</translation>
    </message>
    <message>
        <source>Provider</source>
        <translation>签名提供者</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>未注明</translation>
    </message>
    <message>
        <source>Company</source>
        <translation>公司</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message>
        <source>Seals on pages</source>
        <translation>页面上的印章数</translation>
    </message>
    <message>
        <source>Parts it covers</source>
        <translation>所保护的部件数</translation>
    </message>
    <message>
        <source>Seals are painted on the pages, but signatures are NOT verified: nothing here tells whether a signature is genuine or whether the document was changed since.</source>
        <translation>页面上会绘制印章，但签名未经验证：此处的内容不能说明签名是否真实，也不能说明文档此后是否被改动。</translation>
    </message>
    <message>
        <source>The document lists no signature.</source>
        <translation>文档中没有列出签名。</translation>
    </message>
    <message>
        <source>not embedded, and no installed font stands in</source>
        <translation>未嵌入，也没有可代替的已安装字体</translation>
    </message>
    <message>
        <source>not embedded; &quot;%1&quot; stands in</source>
        <translation>未嵌入，以“%1”代替</translation>
    </message>
    <message>
        <source>(no name)</source>
        <translation>（无名称）</translation>
    </message>
    <message>
        <source>embedded</source>
        <translation>已嵌入</translation>
    </message>
    <message>
        <source>The document names no fonts.</source>
        <translation>文档没有指明字体。</translation>
    </message>
    <message>
        <source>The fonts that the document itself names. Pages may bring further ones.</source>
        <translation>文档自身指明的字体。各页面可能另带字体。</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>Part</source>
        <translation>部件</translation>
    </message>
    <message>
        <source>byte %1</source>
        <translation>第 %1 字节</translation>
    </message>
    <message>
        <source>object %1</source>
        <translation>对象 %1</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Nothing was wrong in what was read so far. Pages are looked at when they are shown.</source>
        <translation>目前读取的内容没有问题。页面在显示时才会检查。</translation>
    </message>
    <message>
        <source>What was wrong in the file and was worked around, as far as it was read. Pages are looked at when they are shown.</source>
        <translation>文件中已发现并绕过的问题，仅限目前读取的内容。页面在显示时才会检查。</translation>
    </message>
    <message>
        <source>Further signatures, not listed: %1</source>
        <translation>另有未列出的签名：%1</translation>
    </message>
    <message>
        <source>Further fonts, not listed: %1</source>
        <translation>另有未列出的字体：%1</translation>
    </message>
    <message>
        <source>Further ones of this kind in this part: %1</source>
        <translation>该部件中另有同类问题：%1</translation>
    </message>
    <message>
        <source>No signature is listed; the file carries a signed list of its parts instead.</source>
        <translation>没有列出签名，但文件带有一份经签名的部件清单。</translation>
    </message>
    <message>
        <source>none of %1, but the document itself</source>
        <translation>共 %1 个版本，显示的是文档本身</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>第 %1 个，共 %2 个</translation>
    </message>
    <message>
        <source>%1 of %2 (%3)</source>
        <translation>第 %1 个，共 %2 个（%3）</translation>
    </message>
    <message>
        <source>%1, not the newest</source>
        <translation>%1，不是最新版本</translation>
    </message>
    <message>
        <source>Version shown</source>
        <translation>显示的版本</translation>
    </message>
    <message>
        <source>Yes, copies at a time: at most %1</source>
        <translation>是，每次最多 %1 份</translation>
    </message>
    <message>
        <source>May be printed</source>
        <translation>允许打印</translation>
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
    <name>PagePicture</name>
    <message>
        <source>The document&apos;s rights do not allow pictures of its pages.</source>
        <translation>文档权限不允许将页面保存为图片。</translation>
    </message>
    <message>
        <source>Page %1 cannot be painted.
%2</source>
        <translation>无法绘制第 %1 页。
%2</translation>
    </message>
    <message>
        <source>The file %1 cannot be written.
%2</source>
        <translation>无法写入文件 %1。
%2</translation>
    </message>
</context>
<context>
    <name>PagePrinting</name>
    <message>
        <source>Pages that were ready may still be printed.</source>
        <translation>已准备好的页面可能仍会打印。</translation>
    </message>
    <message>
        <source>The printer, or the file, does not take the pages.</source>
        <translation>打印机或文件无法接收页面。</translation>
    </message>
    <message>
        <source>Page %1 has no size.</source>
        <translation>第 %1 页没有大小。</translation>
    </message>
    <message>
        <source>Page %1 cannot be painted.
%2</source>
        <translation>无法绘制第 %1 页。
%2</translation>
    </message>
    <message>
        <source>The document&apos;s rights do not allow printing.</source>
        <translation>文档权限不允许打印。</translation>
    </message>
    <message>
        <source>The document&apos;s rights do not allow so many copies. Copies at a time: at most %1.</source>
        <translation>文档权限不允许打印这么多份。每次最多 %1 份。</translation>
    </message>
    <message>
        <source>The file %1 cannot be written.</source>
        <translation>无法写入文件 %1。</translation>
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
    <name>PrintDialog</name>
    <message>
        <source>&amp;Fit to the paper</source>
        <translation>适合纸张(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Actual size, in the middle of the paper</source>
        <translation>实际大小，位于纸张中央(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Each page on a sheet of its own size</source>
        <translation>每页使用与其大小相同的纸张(&amp;E)</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>打印</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>The paper is turned to the orientation of each page.</source>
        <translation>纸张方向随每页自动旋转。</translation>
    </message>
</context>
<context>
    <name>PropertiesDialog</name>
    <message>
        <source>Topics</source>
        <translation>主题分类</translation>
    </message>
    <message>
        <source>General</source>
        <translation>常规</translation>
    </message>
    <message>
        <source>Signatures</source>
        <translation>签名</translation>
    </message>
    <message>
        <source>Fonts</source>
        <translation>字体</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Close the properties</source>
        <translation>关闭属性</translation>
    </message>
    <message>
        <source>Problems</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>复制(&amp;C)</translation>
    </message>
    <message>
        <source>Copy the problems</source>
        <translation>复制问题列表</translation>
    </message>
    <message>
        <source>Copies all of the list</source>
        <translation>复制整个列表</translation>
    </message>
    <message>
        <source>Properties of %1</source>
        <translation>%1 的属性</translation>
    </message>
    <message>
        <source>%1 × %2 mm</source>
        <translation>%1 × %2 毫米</translation>
    </message>
    <message>
        <source>Size of the present page</source>
        <translation>当前页面尺寸</translation>
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
    <name>ReaderApplication</name>
    <message>
        <source>There is not enough memory for this. Save what you have edited.</source>
        <translation>内存不足，无法完成此操作。请保存您的修改。</translation>
    </message>
</context>
<context>
    <name>ReaderContext</name>
    <message>
        <source>%1 exists already. Do you want to replace it?</source>
        <translation>%1 已存在。要替换它吗？</translation>
    </message>
    <message>
        <source>Dots per inch:</source>
        <translation>每英寸点数：</translation>
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
    <name>Welcome</name>
    <message>
        <source>Open a document, or drop one here.</source>
        <translation>打开一个文档，或将文档拖放到此处。</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>打开(&amp;O)...</translation>
    </message>
    <message>
        <source>Recent documents</source>
        <translation>最近的文档</translation>
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
