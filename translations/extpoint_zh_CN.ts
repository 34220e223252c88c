<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>ChangeTexts</name>
    <message>
        <source>point</source>
        <translation>扩展点</translation>
    </message>
    <message>
        <source>sub point</source>
        <translation>子扩展点</translation>
    </message>
    <message>
        <source>records of</source>
        <translation>的记录：</translation>
    </message>
    <message>
        <source>choice</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>attribute</source>
        <translation>属性</translation>
    </message>
    <message numerus="yes">
        <source>%n items</source>
        <translation>
            <numerusform>%n 个项目</numerusform>
        </translation>
    </message>
    <message>
        <source>Deleted %1</source>
        <translation>已删除：%1</translation>
    </message>
    <message>
        <source>Deleted %1 with one entry</source>
        <translation>已删除：%1，连同一个条目</translation>
    </message>
    <message numerus="yes">
        <source>Deleted %1 with %n entries</source>
        <translation>
            <numerusform>已删除：%1，连同 %n 个条目</numerusform>
        </translation>
    </message>
    <message>
        <source>Added %1</source>
        <translation>已添加：%1</translation>
    </message>
    <message>
        <source>Moved %1</source>
        <translation>已移动：%1</translation>
    </message>
    <message>
        <source>Changed &apos;%1&apos; of %2</source>
        <translation>已更改：%2 的“%1”</translation>
    </message>
    <message>
        <source>plug-in</source>
        <translation>插件</translation>
    </message>
</context>
<context>
    <name>Core::AboutPluginsDialog</name>
    <message>
        <source>Not loaded</source>
        <translation>未加载</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>正在运行</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>已停止</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>已找到</translation>
    </message>
    <message>
        <source>About Plug-ins</source>
        <translation>关于插件</translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>State</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>These could not be loaded:</source>
        <translation>以下插件无法加载：</translation>
    </message>
</context>
<context>
    <name>Core::BusyIndicator</name>
    <message>
        <source>Reading plug-ins…</source>
        <translation>正在读取插件…</translation>
    </message>
</context>
<context>
    <name>Core::EditorManager</name>
    <message>
        <source>line %1: %2</source>
        <translation>第 %1 行：%2</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行，第 %2 列：%3</translation>
    </message>
    <message>
        <source>The content of the file cannot be parsed.</source>
        <translation>无法解析文件的内容。</translation>
    </message>
    <message>
        <source>The saved file has no content but its XML declaration. It will not open again.</source>
        <translation>保存的文件除 XML 声明外没有内容，将无法再次打开。</translation>
    </message>
    <message>
        <source>The saved file is damaged (line %1, column %2: %3). It will not open again.</source>
        <translation>保存的文件已损坏（第 %1 行，第 %2 列：%3），将无法再次打开。</translation>
    </message>
    <message>
        <source>No plug-in edits files of this kind (%1).</source>
        <translation>没有插件可以编辑此类文件（%1）。</translation>
    </message>
    <message>
        <source>The plug-in for this kind of file made no editor.</source>
        <translation>负责此类文件的插件没有创建编辑器。</translation>
    </message>
    <message>
        <source>The file is still being read or written.</source>
        <translation>文件仍在读取或写入。</translation>
    </message>
</context>
<context>
    <name>Core::FileCare</name>
    <message>
        <source>&amp;Restore</source>
        <translation>恢复(&amp;R)</translation>
    </message>
    <message>
        <source>D&amp;iscard</source>
        <translation>丢弃(&amp;I)</translation>
    </message>
    <message>
        <source>Re&amp;load</source>
        <translation>重新加载(&amp;L)</translation>
    </message>
    <message>
        <source>%1 is no longer on the disk. Saving writes it again.</source>
        <translation>%1 已不在磁盘上。保存会重新写入它。</translation>
    </message>
    <message>
        <source>%1 was changed by another program, and you have unsaved changes. Reloading gives yours up; keeping them lets the next save replace what the other program wrote.</source>
        <translation>%1 被另一个程序更改，而您有未保存的更改。重新加载会放弃您的更改；保留则下次保存会替换另一个程序写入的内容。</translation>
    </message>
    <message>
        <source>%1 was changed by another program, and can&apos;t be read as it is now: %2</source>
        <translation>%1 被另一个程序更改，以现在的样子无法读取：%2</translation>
    </message>
    <message>
        <source>&amp;Keep Mine</source>
        <translation>保留我的(&amp;K)</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>确定(&amp;O)</translation>
    </message>
    <message>
        <source>The workbench ended with unsaved changes to this file. They were kept on %1.</source>
        <translation>工作台结束时此文件有未保存的更改，已于 %1 保留。</translation>
    </message>
    <message>
        <source>It was %1 then.</source>
        <translation>当时它是 %1。</translation>
    </message>
    <message>
        <source>The file itself is no longer there.</source>
        <translation>文件本身已不存在。</translation>
    </message>
    <message>
        <source>The file itself was changed since: saving after a restore replaces what was written then.</source>
        <translation>文件本身此后被更改：恢复后保存会替换当时写入的内容。</translation>
    </message>
</context>
<context>
    <name>Core::FileSaving</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 以及另外 %n 个</numerusform>
        </translation>
    </message>
    <message>
        <source>Save &amp;Without Them</source>
        <translation>不带它们保存(&amp;W)</translation>
    </message>
    <message>
        <source>&amp;Cancel Saving</source>
        <translation>取消保存(&amp;C)</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>详细信息</translation>
    </message>
    <message>
        <source>Saving waits for the plug-ins that are still being read: %1. Without them it is not known which texts of theirs are translatable.</source>
        <translation>保存正在等待仍在读取的插件：%1。没有它们就不知道其中哪些文本可以翻译。</translation>
    </message>
    <message>
        <source>The file is saved as soon as the other plug-ins have been read.</source>
        <translation>其他插件读取完毕后将立即保存文件。</translation>
    </message>
    <message>
        <source>Not saved: %1 was changed by another program</source>
        <translation>未保存：%1 被另一个程序更改</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>&amp;Save Anyway</source>
        <translation>仍然保存(&amp;S)</translation>
    </message>
    <message>
        <source>The file could not be saved.</source>
        <translation>无法保存文件。</translation>
    </message>
    <message>
        <source>The file was saved, but it will not open again.</source>
        <translation>文件已保存，但将无法再次打开。</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>What the last save changed beside</source>
        <translation>上次保存还更改了什么</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>另存为</translation>
    </message>
    <message>
        <source>A file keeps its name and its place: &quot;%1&quot; is what every plug-in calls it, and its directory says whose it is.</source>
        <translation>文件保持其名称和位置：每个插件都称它为“%1”，它的目录说明它属于谁。</translation>
    </message>
    <message>
        <source>To begin a plug-in from this one, save it, copy its directory
%1
under another name beside it, and change the id in the copy before you open it. An empty plug-in is made with File &gt; New.</source>
        <translation>要以此插件为基础创建新插件，请先保存，将其目录
%1
以另一个名称复制到旁边，并在打开副本之前更改其中的 id。使用“文件 &gt; 新建”可创建空插件。</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>%1, and not everything as it was: one remark</source>
        <translation>%1，但并非一切照旧：一条说明</translation>
    </message>
    <message numerus="yes">
        <source>%1, and not everything as it was: %n remarks</source>
        <translation>
            <numerusform>%1，但并非一切照旧：%n 条说明</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::FileStamp</name>
    <message>
        <source>The file is a link to something that does not exist.</source>
        <translation>该文件是指向不存在内容的链接。</translation>
    </message>
    <message>
        <source>The name of the file, or of a directory above it, is not in the encoding of the system.</source>
        <translation>文件名或其上级目录的名称不是系统的编码。</translation>
    </message>
    <message>
        <source>The file does not exist.</source>
        <translation>文件不存在。</translation>
    </message>
    <message>
        <source>The file cannot be reached: %1.</source>
        <translation>无法访问文件：%1。</translation>
    </message>
    <message>
        <source>This is a directory, not a file.</source>
        <translation>这是目录，不是文件。</translation>
    </message>
    <message>
        <source>This is not a regular file.</source>
        <translation>这不是普通文件。</translation>
    </message>
    <message>
        <source>The file cannot be read: %1.</source>
        <translation>无法读取文件：%1。</translation>
    </message>
    <message>
        <source>The directory of the file does not exist.</source>
        <translation>文件所在的目录不存在。</translation>
    </message>
    <message>
        <source>The file cannot be written: %1.</source>
        <translation>无法写入文件：%1。</translation>
    </message>
    <message>
        <source>The file cannot be written: this process may write no more than %1 bytes to a file.</source>
        <translation>无法写入文件：此进程向一个文件最多只能写入 %1 字节。</translation>
    </message>
    <message>
        <source>The directory of the file cannot be written: %1.</source>
        <translation>无法写入文件所在的目录：%1。</translation>
    </message>
    <message>
        <source>The file on disk was not changed.</source>
        <translation>磁盘上的文件没有更改。</translation>
    </message>
</context>
<context>
    <name>Core::FindDock</name>
    <message>
        <source>Find</source>
        <translation>查找</translation>
    </message>
    <message>
        <source>Id, name or text, of all plug-ins</source>
        <translation>所有插件的 id、名称或文本</translation>
    </message>
    <message>
        <source>Find in the product</source>
        <translation>在产品中查找</translation>
    </message>
    <message>
        <source>What was found</source>
        <translation>查找结果</translation>
    </message>
    <message>
        <source>What</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Id</source>
        <translation>Id</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>标签</translation>
    </message>
    <message>
        <source>Plug-in</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Find in &amp;Product…</source>
        <translation>在产品中查找(&amp;P)…</translation>
    </message>
    <message>
        <source>%1 of %2, go on typing</source>
        <translation>%1 / %2，请继续输入</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>找到 %1 个</translation>
    </message>
    <message>
        <source>It is no longer there</source>
        <translation>它已不存在</translation>
    </message>
</context>
<context>
    <name>Core::GuideWindow</name>
    <message>
        <source>User Guide</source>
        <translation>用户指南</translation>
    </message>
    <message>
        <source>The guide can&apos;t be read. It should be in %1.</source>
        <translation>无法读取指南。它应位于 %1。</translation>
    </message>
    <message>
        <source>&amp;User Guide</source>
        <translation>用户指南(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Keyboard Shortcuts</source>
        <translation>键盘快捷键(&amp;K)</translation>
    </message>
</context>
<context>
    <name>Core::LogDock</name>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>Nothing was logged.</source>
        <translation>没有日志记录。</translation>
    </message>
</context>
<context>
    <name>Core::MainWindow</name>
    <message>
        <source>%1 was read again: another program has changed it</source>
        <translation>已重新读取 %1：另一个程序更改了它</translation>
    </message>
    <message>
        <source>Restore the changes that were kept? What was changed since the file was opened is lost.</source>
        <translation>恢复保留的更改吗？打开文件后所做的更改将丢失。</translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation>恢复(&amp;R)</translation>
    </message>
    <message>
        <source>The changes could not be restored.</source>
        <translation>无法恢复更改。</translation>
    </message>
    <message>
        <source>%1 is not what the kept changes were made to. Open them in its place? Saving replaces the file then.</source>
        <translation>%1 不是所保留的更改针对的内容。要用保留的更改代替它打开吗？保存将替换该文件。</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>No recovery copy can be written: %1</source>
        <translation>无法写入恢复副本：%1</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>文件(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;New…</source>
        <translation>新建(&amp;N)…</translation>
    </message>
    <message>
        <source>&amp;Open…</source>
        <translation>打开(&amp;O)…</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>最近打开(&amp;R)</translation>
    </message>
    <message>
        <source>Recovered &amp;Files…</source>
        <translation>恢复的文件(&amp;F)…</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save &amp;As…</source>
        <translation>另存为(&amp;A)…</translation>
    </message>
    <message>
        <source>Re&amp;vert to Saved</source>
        <translation>还原到已保存(&amp;V)</translation>
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
        <source>E&amp;dit</source>
        <translation>编辑(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>视图(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>帮助(&amp;H)</translation>
    </message>
    <message>
        <source>About &amp;Plug-ins…</source>
        <translation>关于插件(&amp;P)…</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>关于(&amp;A)</translation>
    </message>
    <message>
        <source>A plug-in could not be loaded</source>
        <translation>有一个插件无法加载</translation>
    </message>
    <message>
        <source>No second window could be started for the file.</source>
        <translation>无法为该文件启动第二个窗口。</translation>
    </message>
    <message>
        <source>The file could not be opened.</source>
        <translation>无法打开文件。</translation>
    </message>
    <message>
        <source>Open a File</source>
        <translation>打开文件</translation>
    </message>
    <message>
        <source>Extension files (extension.xml)</source>
        <translation>扩展文件 (extension.xml)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>Clear Menu</source>
        <translation>清空菜单</translation>
    </message>
    <message>
        <source>The file could not be read again.</source>
        <translation>无法重新读取文件。</translation>
    </message>
    <message>
        <source>Revert to the file on disk? What was changed since the last save is lost.</source>
        <translation>还原到磁盘上的文件吗？上次保存后所做的更改将丢失。</translation>
    </message>
    <message>
        <source>&amp;Revert</source>
        <translation>还原(&amp;R)</translation>
    </message>
    <message>
        <source>Unsaved Changes</source>
        <translation>未保存的更改</translation>
    </message>
    <message>
        <source>Save the changes to %1 before closing it?</source>
        <translation>关闭前保存对 %1 的更改吗？</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>%1[*] — %2 — ExtPoint Workbench</source>
        <translation>%1[*] — %2 — ExtPoint Workbench</translation>
    </message>
    <message>
        <source>About ExtPoint Workbench</source>
        <translation>关于 ExtPoint Workbench</translation>
    </message>
    <message>
        <source>ExtPoint Workbench %1</source>
        <translation>ExtPoint Workbench %1</translation>
    </message>
    <message>
        <source>A small host for editor plug-ins. It opens one file per window.</source>
        <translation>承载编辑器插件的小程序。每个窗口打开一个文件。</translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins could not be loaded</source>
        <translation>
            <numerusform>%n 个插件无法加载</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::NewFile</name>
    <message>
        <source>A plug-in needs an id.</source>
        <translation>插件需要 id。</translation>
    </message>
    <message>
        <source>An id is made of letters, digits, &quot;_&quot; and &quot;-&quot;, in parts divided by dots; a letter comes first.</source>
        <translation>id 由字母、数字、“_”和“-”组成，各部分以点分隔，并以字母开头。</translation>
    </message>
    <message>
        <source>A plug-in needs a name.</source>
        <translation>插件需要名称。</translation>
    </message>
    <message>
        <source>The name or the vendor holds a character that a file can&apos;t hold.</source>
        <translation>名称或供应商含有文件无法容纳的字符。</translation>
    </message>
    <message>
        <source>There is no such directory of plug-ins.</source>
        <translation>没有这样的插件目录。</translation>
    </message>
    <message>
        <source>The plug-in needs a directory name, without &quot;/&quot; and with no dot at the beginning.</source>
        <translation>插件需要目录名，不含“/”，且不以点开头。</translation>
    </message>
    <message>
        <source>%1 is there already.</source>
        <translation>%1 已经存在。</translation>
    </message>
    <message>
        <source>The directory %1 can&apos;t be made.</source>
        <translation>无法创建目录 %1。</translation>
    </message>
    <message>
        <source>%1 can&apos;t be written: %2</source>
        <translation>无法写入 %1：%2</translation>
    </message>
</context>
<context>
    <name>Core::NewFileDialog</name>
    <message>
        <source>New Extension File</source>
        <translation>新建扩展文件</translation>
    </message>
    <message>
        <source>&amp;Id:</source>
        <translation>Id(&amp;I)：</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>名称(&amp;N)：</translation>
    </message>
    <message>
        <source>&amp;Vendor:</source>
        <translation>供应商(&amp;V)：</translation>
    </message>
    <message>
        <source>May be left out</source>
        <translation>可以留空</translation>
    </message>
    <message>
        <source>&amp;Plug-ins in:</source>
        <translation>插件位于(&amp;P)：</translation>
    </message>
    <message>
        <source>&amp;Directory:</source>
        <translation>目录(&amp;D)：</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>Browse for the directory of plug-ins</source>
        <translation>浏览插件目录</translation>
    </message>
    <message>
        <source>C&amp;reate</source>
        <translation>创建(&amp;R)</translation>
    </message>
    <message>
        <source>Directory of Plug-ins</source>
        <translation>插件目录</translation>
    </message>
    <message>
        <source>The plug-in in &quot;%1&quot; has this id already.
%2</source>
        <translation>“%1”中的插件已有此 id。
%2</translation>
    </message>
</context>
<context>
    <name>Core::OneWindowPerFile</name>
    <message>
        <source>%1 is open in another window</source>
        <translation>%1 已在另一个窗口中打开</translation>
    </message>
    <message>
        <source>This file has a second window now: another one has it open, but does not answer.</source>
        <translation>此文件现在有第二个窗口：另一个窗口已打开它，但没有响应。</translation>
    </message>
    <message>
        <source>What is saved in one of them is not in the other one until that reads the file again.</source>
        <translation>在一个窗口中保存的内容，另一个窗口要重新读取文件后才会有。</translation>
    </message>
</context>
<context>
    <name>Core::ProblemsDock</name>
    <message>
        <source>Problems</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>Problems of the opened file</source>
        <translation>打开的文件的问题</translation>
    </message>
    <message>
        <source>Problem</source>
        <translation>问题</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Show the list of problems</source>
        <translation>显示问题列表</translation>
    </message>
    <message>
        <source>1 problem</source>
        <translation>1 个问题</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message numerus="yes">
        <source>%n problems</source>
        <translation>
            <numerusform>%n 个问题</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n more are not listed</source>
        <translation>
            <numerusform>另有 %n 个未列出</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Core::RecoveredFilesDialog</name>
    <message>
        <source>Unknown file</source>
        <translation>未知文件</translation>
    </message>
    <message>
        <source>This copy is damaged and can&apos;t be opened. It is kept as %1.</source>
        <translation>此副本已损坏，无法打开。它保留为 %1。</translation>
    </message>
    <message>
        <source>This copy doesn&apos;t tell which file it is of.</source>
        <translation>此副本没有说明它属于哪个文件。</translation>
    </message>
    <message>
        <source>The file is no longer there. If it was moved, or a directory above it renamed, open the copy for the file in its new place; otherwise saving writes it again.</source>
        <translation>文件已不存在。如果它被移动，或其上级目录被重命名，请为新位置的文件打开副本；否则保存会重新写入它。</translation>
    </message>
    <message>
        <source>The file was changed since. Saving the opened copy replaces what was written then.</source>
        <translation>文件此后被更改。保存打开的副本会替换当时写入的内容。</translation>
    </message>
    <message>
        <source>The file is as it was before these changes.</source>
        <translation>文件与这些更改之前相同。</translation>
    </message>
    <message>
        <source>Recovered Files</source>
        <translation>恢复的文件</translation>
    </message>
    <message>
        <source>&amp;Unsaved changes that were kept when the workbench ended unexpectedly. They stay here until they are saved or discarded.</source>
        <translation>工作台意外结束时保留的未保存更改(&amp;U)。它们会一直在这里，直到被保存或丢弃。</translation>
    </message>
    <message>
        <source>Recovered files</source>
        <translation>恢复的文件</translation>
    </message>
    <message>
        <source>File</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>目录</translation>
    </message>
    <message>
        <source>Kept on</source>
        <translation>保留时间</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>打开(&amp;O)</translation>
    </message>
    <message>
        <source>Open &amp;for Another File…</source>
        <translation>为另一个文件打开(&amp;F)…</translation>
    </message>
    <message>
        <source>&amp;Discard…</source>
        <translation>丢弃(&amp;D)…</translation>
    </message>
    <message>
        <source>%1 (damaged)</source>
        <translation>%1（已损坏）</translation>
    </message>
    <message>
        <source>Nothing is kept.</source>
        <translation>没有保留任何内容。</translation>
    </message>
    <message>
        <source>Open the Copy for a File</source>
        <translation>为文件打开副本</translation>
    </message>
    <message>
        <source>Discard the changes to %1 that were kept on %2? They can&apos;t be brought back.</source>
        <translation>丢弃于 %2 保留的对 %1 的更改吗？它们将无法找回。</translation>
    </message>
</context>
<context>
    <name>Core::StartupJob</name>
    <message>
        <source>The file was changed by another program while the product was read.</source>
        <translation>读取产品期间，文件被另一个程序更改。</translation>
    </message>
    <message>
        <source>the window has no picture</source>
        <translation>窗口没有图像</translation>
    </message>
    <message>
        <source>%1 is not in the encoding of the system</source>
        <translation>%1 不是系统的编码</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>无法写入 %1：%2</translation>
    </message>
</context>
<context>
    <name>Core::UndoHistory</name>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>已撤销：%1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>已重做：%1</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>撤销(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Undo: %1</source>
        <translation>撤销(&amp;U)：%1</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>重做(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Redo: %1</source>
        <translation>重做(&amp;R)：%1</translation>
    </message>
</context>
<context>
    <name>Core::WelcomePage</name>
    <message>
        <source>Welcome</source>
        <translation>欢迎</translation>
    </message>
    <message>
        <source>ExtPoint Workbench</source>
        <translation>ExtPoint Workbench</translation>
    </message>
    <message>
        <source>Open the &quot;extension.xml&quot; of a plug-in to edit the extension points that it declares and the data that it gives to those of other plug-ins. The other plug-ins of the product are read from the directories beside it.</source>
        <translation>打开插件的“extension.xml”，编辑它声明的扩展点以及它为其他插件的扩展点提供的数据。产品的其他插件从旁边的目录读取。</translation>
    </message>
    <message>
        <source>&amp;Open a File…</source>
        <translation>打开文件(&amp;O)…</translation>
    </message>
    <message>
        <source>… or drop a file on this window.</source>
        <translation>…或将文件拖放到此窗口。</translation>
    </message>
    <message>
        <source>Recovered Files…</source>
        <translation>恢复的文件…</translation>
    </message>
    <message>
        <source>The workbench ended with unsaved changes to a file. They were kept.</source>
        <translation>工作台结束时有一个文件的更改未保存，已予保留。</translation>
    </message>
    <message>
        <source>Opened last:</source>
        <translation>上次打开：</translation>
    </message>
    <message numerus="yes">
        <source>The workbench ended with unsaved changes to files. %n copies were kept.</source>
        <translation>
            <numerusform>工作台结束时有文件的更改未保存，已保留 %n 个副本。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DefintionPageBuilder</name>
    <message>
        <source>Extension points of this plug-in</source>
        <translation>此插件的扩展点</translation>
    </message>
    <message>
        <source>Basic information</source>
        <translation>基本信息</translation>
    </message>
    <message>
        <source>Attribute</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>Add a point</source>
        <translation>添加扩展点</translation>
    </message>
    <message>
        <source>Add an attribute</source>
        <translation>添加属性</translation>
    </message>
    <message>
        <source>Delete the attribute</source>
        <translation>删除属性</translation>
    </message>
    <message>
        <source>Add an entry</source>
        <translation>添加条目</translation>
    </message>
    <message>
        <source>Delete the entry</source>
        <translation>删除条目</translation>
    </message>
    <message>
        <source>Attributes of the selected point</source>
        <translation>所选扩展点的属性</translation>
    </message>
    <message>
        <source>Entries of the enumeration</source>
        <translation>枚举的条目</translation>
    </message>
    <message>
        <source>Add Property</source>
        <translation>添加特性</translation>
    </message>
    <message>
        <source>Add a property that the selected point does not have yet</source>
        <translation>添加所选扩展点尚未具有的特性</translation>
    </message>
</context>
<context>
    <name>DropWords</name>
    <message>
        <source>Into &apos;%1&apos;, recorded in this plug-in&apos;s file</source>
        <translation>放入“%1”，记录在此插件的文件中</translation>
    </message>
    <message>
        <source>Into &apos;%1&apos;</source>
        <translation>放入“%1”</translation>
    </message>
    <message>
        <source>Before &apos;%1&apos;</source>
        <translation>放在“%1”之前</translation>
    </message>
    <message>
        <source>After &apos;%1&apos;</source>
        <translation>放在“%1”之后</translation>
    </message>
    <message>
        <source>There is no row here to drop onto</source>
        <translation>这里没有可以放置的行</translation>
    </message>
    <message>
        <source>There is no file that this could be recorded in</source>
        <translation>没有可以记录它的文件</translation>
    </message>
    <message>
        <source>What is being dragged has gone, or is no record</source>
        <translation>拖动的内容已不存在，或不是记录</translation>
    </message>
    <message>
        <source>&apos;%1&apos; takes no &apos;%2&apos;</source>
        <translation>“%1”不接受“%2”</translation>
    </message>
    <message>
        <source>&apos;%1&apos; has a &apos;%2&apos; already</source>
        <translation>“%1”已有“%2”</translation>
    </message>
    <message>
        <source>&apos;%1&apos; belongs to another plug-in</source>
        <translation>“%1”属于另一个插件</translation>
    </message>
    <message>
        <source>The entries of this format belong to other plug-ins</source>
        <translation>此格式的条目属于其他插件</translation>
    </message>
    <message>
        <source>Nothing can be placed beside an entry of another plug-in</source>
        <translation>不能在另一个插件的条目旁放置内容</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can&apos;t go to where it is itself</source>
        <translation>“%1”不能移入自身</translation>
    </message>
    <message>
        <source>&apos;%1&apos; can&apos;t be moved to there</source>
        <translation>“%1”不能移到那里</translation>
    </message>
    <message>
        <source>A new record of &apos;%1&apos;</source>
        <translation>“%1”的新记录</translation>
    </message>
    <message>
        <source>Only points and sub points become records</source>
        <translation>只有扩展点和子扩展点可以成为记录</translation>
    </message>
    <message>
        <source>The records of a point without an id are shown nowhere</source>
        <translation>没有 id 的扩展点的记录不会显示在任何地方</translation>
    </message>
</context>
<context>
    <name>ExtPointWidget</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>ExtPointEdit</source>
        <translation>扩展点编辑</translation>
    </message>
    <message>
        <source>Extension Point Tree</source>
        <translation>扩展点树</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>添加(&amp;A)</translation>
    </message>
    <message>
        <source>Basic Information</source>
        <translation>基本信息</translation>
    </message>
    <message>
        <source>Extension Information</source>
        <translation>扩展信息</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>D&amp;elete</source>
        <translation>删除(&amp;E)</translation>
    </message>
    <message>
        <source>Enum Editor</source>
        <translation>枚举编辑器</translation>
    </message>
    <message>
        <source>RealizationExit</source>
        <translation>实现编辑</translation>
    </message>
    <message>
        <source>Realization Tree</source>
        <translation>实现树</translation>
    </message>
    <message>
        <source>Add Format Tree</source>
        <translation>添加格式树</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>页面</translation>
    </message>
</context>
<context>
    <name>ExtensionFile</name>
    <message>
        <source>No backup could be made in %1: %2</source>
        <translation>无法在 %1 中创建备份：%2</translation>
    </message>
    <message>
        <source>Encoding %1 is not known.</source>
        <translation>未知的编码 %1。</translation>
    </message>
    <message>
        <source>The text is not valid %1.</source>
        <translation>文本不是有效的 %1。</translation>
    </message>
    <message>
        <source>The declared encoding is not the one of the file.</source>
        <translation>声明的编码不是文件的编码。</translation>
    </message>
    <message>
        <source>The file does not hold what was written.</source>
        <translation>文件中不是所写入的内容。</translation>
    </message>
    <message>
        <source>The file is too large to be kept while it is written.</source>
        <translation>文件太大，写入时无法保留。</translation>
    </message>
    <message>
        <source> The old contents could not be put back. They are kept in %1</source>
        <translation>无法恢复旧内容。它们保留在 %1</translation>
    </message>
    <message>
        <source>out of memory</source>
        <translation>内存不足</translation>
    </message>
    <message>
        <source>syntax error</source>
        <translation>语法错误</translation>
    </message>
    <message>
        <source>no element found</source>
        <translation>没有找到元素</translation>
    </message>
    <message>
        <source>not well-formed (invalid token)</source>
        <translation>格式不正确（无效的记号）</translation>
    </message>
    <message>
        <source>unclosed token</source>
        <translation>未结束的记号</translation>
    </message>
    <message>
        <source>partial character</source>
        <translation>不完整的字符</translation>
    </message>
    <message>
        <source>mismatched tag</source>
        <translation>标签不匹配</translation>
    </message>
    <message>
        <source>duplicate attribute</source>
        <translation>重复的属性</translation>
    </message>
    <message>
        <source>junk after document element</source>
        <translation>文档元素之后有多余内容</translation>
    </message>
    <message>
        <source>undefined entity</source>
        <translation>未定义的实体</translation>
    </message>
    <message>
        <source>recursive entity reference</source>
        <translation>递归的实体引用</translation>
    </message>
    <message>
        <source>asynchronous entity</source>
        <translation>异步实体</translation>
    </message>
    <message>
        <source>reference to invalid character number</source>
        <translation>引用了无效的字符编号</translation>
    </message>
    <message>
        <source>XML or text declaration not at start of entity</source>
        <translation>XML 或文本声明不在开头</translation>
    </message>
    <message>
        <source>XML declaration not well-formed</source>
        <translation>XML 声明格式不正确</translation>
    </message>
    <message>
        <source>unclosed CDATA section</source>
        <translation>未结束的 CDATA 段</translation>
    </message>
    <message>
        <source>illegal character(s) in public id</source>
        <translation>公共标识中有非法字符</translation>
    </message>
    <message>
        <source>limit on input amplification factor (from DTD and entities) breached</source>
        <translation>实体展开超出限度</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>没有足够的内存。</translation>
    </message>
    <message>
        <source>External entities are not read.</source>
        <translation>不读取外部实体。</translation>
    </message>
    <message>
        <source>The text is not valid UTF-8.</source>
        <translation>文本不是有效的 UTF-8。</translation>
    </message>
    <message>
        <source>XML %1 is not known.</source>
        <translation>未知的 XML %1。</translation>
    </message>
    <message>
        <source>Parameter entities are not supported.</source>
        <translation>不支持参数实体。</translation>
    </message>
    <message>
        <source>The document type has more than %1 bytes of declarations.</source>
        <translation>文档类型的声明超过 %1 字节。</translation>
    </message>
    <message>
        <source>The entity %1 is not declared in the file, and nothing else is read.</source>
        <translation>实体 %1 未在文件中声明，而其他内容不会读取。</translation>
    </message>
    <message>
        <source>Elements are nested more than %1 deep.</source>
        <translation>元素嵌套超过 %1 层。</translation>
    </message>
    <message>
        <source>There are more than %1 elements.</source>
        <translation>元素超过 %1 个。</translation>
    </message>
    <message>
        <source>An element has more than %1 attributes.</source>
        <translation>一个元素的属性超过 %1 个。</translation>
    </message>
    <message>
        <source>There are more than %1 attributes.</source>
        <translation>属性超过 %1 个。</translation>
    </message>
    <message>
        <source>The attributes have more than %1 characters.</source>
        <translation>属性超过 %1 个字符。</translation>
    </message>
    <message>
        <source>The file has more than %1 bytes.</source>
        <translation>文件超过 %1 字节。</translation>
    </message>
    <message>
        <source>Not a regular file.</source>
        <translation>不是普通文件。</translation>
    </message>
    <message>
        <source>Not a file name.</source>
        <translation>不是文件名。</translation>
    </message>
    <message>
        <source>The new contents could not be read again: %1</source>
        <translation>无法重新读取新内容：%1</translation>
    </message>
    <message>
        <source>The name of the file is not in the encoding of the system.</source>
        <translation>文件名不是系统的编码。</translation>
    </message>
    <message>
        <source>a second root element &quot;%1&quot;</source>
        <translation>第二个根元素“%1”</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no legal name for the root element</source>
        <translation>“%1”不是根元素的合法名称</translation>
    </message>
    <message>
        <source>element &quot;%1&quot; has no legal name, its children take its place</source>
        <translation>元素“%1”没有合法名称，由其子元素代替</translation>
    </message>
    <message>
        <source>elements nested more than %1 deep</source>
        <translation>元素嵌套超过 %1 层</translation>
    </message>
    <message>
        <source>more than %1 elements</source>
        <translation>超过 %1 个元素</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; outside of a start tag</source>
        <translation>属性“%1”在开始标签之外</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; has no legal name</source>
        <translation>属性“%1”没有合法名称</translation>
    </message>
    <message>
        <source>attribute &quot;%1&quot; is there already</source>
        <translation>属性“%1”已经存在</translation>
    </message>
    <message>
        <source>characters in the value of attribute &quot;%1&quot;</source>
        <translation>属性“%1”的值中的字符</translation>
    </message>
    <message>
        <source>an element with more than %1 attributes</source>
        <translation>有超过 %1 个属性的元素</translation>
    </message>
    <message>
        <source>more than %1 attributes</source>
        <translation>超过 %1 个属性</translation>
    </message>
    <message>
        <source>more than %1 characters in the attributes</source>
        <translation>属性中超过 %1 个字符</translation>
    </message>
    <message>
        <source>more than %1 bytes</source>
        <translation>超过 %1 字节</translation>
    </message>
    <message>
        <source>an element ends that was not started</source>
        <translation>结束了一个没有开始的元素</translation>
    </message>
    <message>
        <source>%1 elements are not ended</source>
        <translation>%1 个元素没有结束</translation>
    </message>
    <message>
        <source>%1: can&apos;t be written: %2</source>
        <translation>%1：无法写入：%2</translation>
    </message>
</context>
<context>
    <name>ExtensionSystem::PluginManager</name>
    <message>
        <source>&quot;%1&quot; %2 is needed, but the one found serves versions %3 to %4</source>
        <translation>需要“%1”%2，但找到的只支持版本 %3 到 %4</translation>
    </message>
    <message>
        <source>&quot;%1&quot; %2 is needed and was not found</source>
        <translation>需要“%1”%2，但没有找到</translation>
    </message>
    <message>
        <source>dependency cycle: %1</source>
        <translation>循环依赖：%1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is needed and could not be started</source>
        <translation>需要“%1”，但它无法启动</translation>
    </message>
    <message>
        <source>the metadata can&apos;t be read: %1</source>
        <translation>无法读取元数据：%1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; was found before, in %2</source>
        <translation>先前已在 %2 中找到“%1”</translation>
    </message>
    <message>
        <source>the root object is not a plug-in</source>
        <translation>根对象不是插件</translation>
    </message>
    <message>
        <source>the file was built for another machine</source>
        <translation>该文件是为另一种机器构建的</translation>
    </message>
    <message>
        <source>initializing failed for a reason that the plug-in did not tell</source>
        <translation>初始化失败，插件没有说明原因</translation>
    </message>
    <message>
        <source>initializing failed: %1</source>
        <translation>初始化失败：%1</translation>
    </message>
</context>
<context>
    <name>ExtensionSystem::PluginMetaData</name>
    <message>
        <source>the interface id is &quot;%1&quot;, not &quot;%2&quot;</source>
        <translation>接口 id 是“%1”，而不是“%2”</translation>
    </message>
    <message>
        <source>the metadata is not a JSON object</source>
        <translation>元数据不是 JSON 对象</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not a string</source>
        <translation>“%1”不是字符串</translation>
    </message>
    <message>
        <source>%1 has no &quot;%2&quot;</source>
        <translation>%1 没有“%2”</translation>
    </message>
    <message>
        <source>the &quot;%1&quot; &quot;%2&quot; of %3 is not of the form &quot;1.2.3&quot; or &quot;1.2.3_4&quot;</source>
        <translation>%3 的“%1”“%2”不是“1.2.3”或“1.2.3_4”的形式</translation>
    </message>
    <message>
        <source>the plug-in</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>&quot;CompatVersion&quot; %1 is newer than &quot;Version&quot; %2</source>
        <translation>“CompatVersion”%1 比“Version”%2 新</translation>
    </message>
    <message>
        <source>&quot;Dependencies&quot; is not an array</source>
        <translation>“Dependencies”不是数组</translation>
    </message>
    <message>
        <source>dependency %1</source>
        <translation>依赖项 %1</translation>
    </message>
    <message>
        <source>%1 is not a JSON object</source>
        <translation>%1 不是 JSON 对象</translation>
    </message>
    <message>
        <source>the &quot;Type&quot; &quot;%1&quot; of %2 is neither &quot;required&quot; nor &quot;optional&quot;</source>
        <translation>%2 的“Type”“%1”既不是“required”也不是“optional”</translation>
    </message>
    <message>
        <source>%1 is the plug-in itself</source>
        <translation>%1 是插件本身</translation>
    </message>
    <message>
        <source>%1 names &quot;%2&quot; once more</source>
        <translation>%1 再次提到“%2”</translation>
    </message>
</context>
<context>
    <name>FilterLine</name>
    <message>
        <source>Filter</source>
        <translation>筛选</translation>
    </message>
    <message>
        <source>Filter: %1</source>
        <translation>筛选：%1</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 / %2</translation>
    </message>
</context>
<context>
    <name>FindActions</name>
    <message>
        <source>Find &amp;Users</source>
        <translation>查找使用者(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Find</source>
        <translation>查找(&amp;F)</translation>
    </message>
</context>
<context>
    <name>FormatSheet</name>
    <message>
        <source>Back to the Record&apos;s</source>
        <translation>恢复为记录的值</translation>
    </message>
    <message>
        <source>Back to the Default</source>
        <translation>恢复为默认值</translation>
    </message>
    <message>
        <source>Taken over from the record</source>
        <translation>取自记录</translation>
    </message>
    <message>
        <source>The default of the attribute</source>
        <translation>属性的默认值</translation>
    </message>
</context>
<context>
    <name>FormatTree</name>
    <message>
        <source>Format Tree</source>
        <translation>格式树</translation>
    </message>
    <message>
        <source>Select a point that has formats to see this format.</source>
        <translation>选择有格式的扩展点以查看此格式。</translation>
    </message>
</context>
<context>
    <name>FoundNodes</name>
    <message>
        <source>Users of %1</source>
        <translation>%1 的使用者</translation>
    </message>
    <message>
        <source>%1, in %2</source>
        <translation>%1，在 %2 中</translation>
    </message>
    <message>
        <source>plug-in</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>point</source>
        <translation>扩展点</translation>
    </message>
    <message>
        <source>sub point</source>
        <translation>子扩展点</translation>
    </message>
    <message>
        <source>attribute</source>
        <translation>属性</translation>
    </message>
    <message>
        <source>choice</source>
        <translation>选项</translation>
    </message>
    <message>
        <source>record</source>
        <translation>记录</translation>
    </message>
    <message>
        <source>format</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>entry</source>
        <translation>条目</translation>
    </message>
</context>
<context>
    <name>GroupPropertyBrowser</name>
    <message>
        <source>Properties</source>
        <translation>特性</translation>
    </message>
</context>
<context>
    <name>MetaDialog</name>
    <message>
        <source>MetaDialog</source>
        <translation>元数据</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>添加</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Meta entry</source>
        <translation>元条目</translation>
    </message>
    <message>
        <source>Meta entries</source>
        <translation>元条目</translation>
    </message>
</context>
<context>
    <name>NodeWords</name>
    <message>
        <source>Plug-in %1</source>
        <translation>插件 %1</translation>
    </message>
    <message>
        <source>Point %1</source>
        <translation>扩展点 %1</translation>
    </message>
    <message>
        <source>Sub point %1 of %2</source>
        <translation>%2 的子扩展点 %1</translation>
    </message>
    <message>
        <source>Entry %1 of the attribute %2</source>
        <translation>属性 %2 的条目 %1</translation>
    </message>
    <message>
        <source>%1 attribute %2 of %3</source>
        <translation>%3 的 %1 属性 %2</translation>
    </message>
    <message>
        <source>Records of %1 in this plug-in</source>
        <translation>此插件中 %1 的记录</translation>
    </message>
    <message>
        <source>%1 of the tab %2</source>
        <translation>标签页 %2 的 %1</translation>
    </message>
    <message>
        <source>%1, record of %2</source>
        <translation>%1，%2 的记录</translation>
    </message>
    <message>
        <source>%1, entry of the tab %2</source>
        <translation>%1，标签页 %2 的条目</translation>
    </message>
    <message>
        <source>%1, 1 use</source>
        <translation>%1，使用 1 次</translation>
    </message>
    <message numerus="yes">
        <source>%1, %n uses</source>
        <translation>
            <numerusform>%1，使用 %n 次</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>OpenWith::Editors</name>
    <message>
        <source>ExtPoint Editor</source>
        <translation>ExtPoint 编辑器</translation>
    </message>
</context>
<context>
    <name>PageMenus</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>剪切</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>粘贴</translation>
    </message>
    <message>
        <source>Create Record</source>
        <translation>创建记录</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>PointEditor::Internal::ExtPointEditorW</name>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
</context>
<context>
    <name>ProblemMark</name>
    <message>
        <source>Attribute %1, %2</source>
        <translation>属性 %1，%2</translation>
    </message>
</context>
<context>
    <name>Problems</name>
    <message>
        <source>Must be at least %1</source>
        <translation>必须至少为 %1</translation>
    </message>
    <message>
        <source>Must be at most %1</source>
        <translation>最多为 %1</translation>
    </message>
    <message>
        <source>Must be a whole number</source>
        <translation>必须是整数</translation>
    </message>
    <message>
        <source>Must be a number</source>
        <translation>必须是数字</translation>
    </message>
    <message>
        <source>Must be one of: %1</source>
        <translation>必须是以下之一：%1</translation>
    </message>
    <message>
        <source>The file is very large: only its first %1 nodes were looked at</source>
        <translation>文件非常大：只检查了前 %1 个节点</translation>
    </message>
    <message>
        <source>Another point of this plug-in has the same id</source>
        <translation>此插件的另一个扩展点有相同的 id</translation>
    </message>
    <message>
        <source>A point of the plug-in %1 has the same id</source>
        <translation>插件 %1 的一个扩展点有相同的 id</translation>
    </message>
    <message>
        <source>Another sub point of this point has the same key</source>
        <translation>此扩展点的另一个子扩展点有相同的键</translation>
    </message>
    <message>
        <source>Another attribute beside it has the same key</source>
        <translation>旁边的另一个属性有相同的键</translation>
    </message>
    <message>
        <source>No plug-in declares the point %1</source>
        <translation>没有插件声明扩展点 %1</translation>
    </message>
    <message>
        <source>Another record of this point has the same id</source>
        <translation>此扩展点的另一条记录有相同的 id</translation>
    </message>
    <message>
        <source>No plug-in has a record %1</source>
        <translation>没有插件有记录 %1</translation>
    </message>
    <message>
        <source>Its tab has no entry %1</source>
        <translation>其标签页没有条目 %1</translation>
    </message>
    <message>
        <source>A point of %1 has the same id</source>
        <translation>%1 的一个扩展点有相同的 id</translation>
    </message>
    <message>
        <source>A record (%1) of this point has the same id</source>
        <translation>此扩展点的一条记录（%1）有相同的 id</translation>
    </message>
    <message>
        <source>%1 beside it has the same key</source>
        <translation>旁边的 %1 有相同的键</translation>
    </message>
</context>
<context>
    <name>ProjectExplorer::PluginDirectoryModel</name>
    <message>
        <source>%1 has no %2</source>
        <translation>%1 没有 %2</translation>
    </message>
    <message>
        <source>can&apos;t be read</source>
        <translation>无法读取</translation>
    </message>
    <message>
        <source>opened</source>
        <translation>已打开</translation>
    </message>
</context>
<context>
    <name>ProjectExplorer::ProductDock</name>
    <message>
        <source>Plug-ins</source>
        <translation>插件</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>筛选</translation>
    </message>
    <message>
        <source>Filter plug-ins</source>
        <translation>筛选插件</translation>
    </message>
    <message>
        <source>Plug-ins of the product</source>
        <translation>产品的插件</translation>
    </message>
    <message>
        <source>Open a file to see its product.</source>
        <translation>打开文件以查看其产品。</translation>
    </message>
    <message>
        <source>%1 of %2 directories</source>
        <translation>%1 / %2 个目录</translation>
    </message>
    <message>
        <source>1 plug-in</source>
        <translation>1 个插件</translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins, 1 other directory</source>
        <translation>
            <numerusform>%n 个插件，1 个其他目录</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins, %1 other directories</source>
        <translation>
            <numerusform>%n 个插件，%1 个其他目录</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n plug-ins</source>
        <translation>
            <numerusform>%n 个插件</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PropertyBrowser</name>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>The value is %1, which is none of the choices</source>
        <translation>值为 %1，不在选项之中</translation>
    </message>
    <message>
        <source>A colour: #rrggbb, #aarrggbb or a name</source>
        <translation>颜色：#rrggbb、#aarrggbb 或名称</translation>
    </message>
    <message>
        <source>Choose a colour</source>
        <translation>选择颜色</translation>
    </message>
    <message>
        <source>A date as yyyy-MM-dd</source>
        <translation>日期，如 yyyy-MM-dd</translation>
    </message>
    <message>
        <source>A date and time as yyyy-MM-ddTHH:mm:ss</source>
        <translation>日期和时间，如 yyyy-MM-ddTHH:mm:ss</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>选择文件</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>浏览</translation>
    </message>
    <message>
        <source>A number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>%1, at most %2 digits after the point</source>
        <translation>%1，小数点后最多 %2 位</translation>
    </message>
    <message>
        <source>A font as Family, 10 pt, bold, italic</source>
        <translation>字体，如 Family, 10 pt, bold, italic</translation>
    </message>
    <message>
        <source>Choose a font</source>
        <translation>选择字体</translation>
    </message>
    <message>
        <source>A whole number</source>
        <translation>整数</translation>
    </message>
    <message>
        <source>Choose a day</source>
        <translation>选择日期</translation>
    </message>
    <message>
        <source>The value is %1, which is no shortcut</source>
        <translation>值为 %1，不是快捷键</translation>
    </message>
    <message>
        <source>No shortcut</source>
        <translation>没有快捷键</translation>
    </message>
    <message>
        <source>%1 (Backspace)</source>
        <translation>%1（退格键）</translation>
    </message>
    <message>
        <source>%1 from %2 to %3</source>
        <translation>%1，从 %2 到 %3</translation>
    </message>
    <message>
        <source>%1, at least %2</source>
        <translation>%1，至少 %2</translation>
    </message>
    <message>
        <source>%1, at most %2</source>
        <translation>%1，最多 %2</translation>
    </message>
    <message>
        <source>A point as 10,20</source>
        <translation>点，如 10,20</translation>
    </message>
    <message>
        <source>Too long to be edited here: %1 characters, of which these are the first</source>
        <translation>太长，无法在此编辑：共 %1 个字符，这是其中的开头</translation>
    </message>
    <message>
        <source>A rectangle as 10,20 640x480: corner, size</source>
        <translation>矩形，如 10,20 640x480：角，大小</translation>
    </message>
    <message>
        <source>A size as 640x480</source>
        <translation>大小，如 640x480</translation>
    </message>
    <message>
        <source>A time of day as HH:mm:ss</source>
        <translation>时刻，如 HH:mm:ss</translation>
    </message>
</context>
<context>
    <name>PropertyEditor</name>
    <message>
        <source>%1 was not taken: %2 (%3)</source>
        <translation>未接受 %1：%2（%3）</translation>
    </message>
</context>
<context>
    <name>PropertyTree</name>
    <message>
        <source>Property</source>
        <translation>特性</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>值</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>特性</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Child Type</source>
        <translation>子类型</translation>
    </message>
    <message>
        <source>Format Tree</source>
        <translation>格式树</translation>
    </message>
    <message>
        <source>Meta</source>
        <translation>元数据</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
</context>
<context>
    <name>RealizationPageBuilder</name>
    <message>
        <source>Extension points of all plug-ins</source>
        <translation>所有插件的扩展点</translation>
    </message>
    <message>
        <source>Formats</source>
        <translation>格式</translation>
    </message>
    <message>
        <source>Records of the selected point</source>
        <translation>所选扩展点的记录</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>特性</translation>
    </message>
    <message>
        <source>The file can&apos;t hold this text as it is: &quot;tr(&apos;&quot; and &quot;&apos;)&quot; mark what is translatable.</source>
        <translation>文件无法按原样容纳此文本：“tr(&apos;”和“&apos;)”标记可翻译的内容。</translation>
    </message>
</context>
<context>
    <name>RealizationTreeWidget</name>
    <message>
        <source>Name: %1</source>
        <translation>名称：%1</translation>
    </message>
    <message>
        <source>Key: %1</source>
        <translation>键：%1</translation>
    </message>
    <message>
        <source>Point: %1</source>
        <translation>扩展点：%1</translation>
    </message>
    <message>
        <source>Id: %1</source>
        <translation>Id：%1</translation>
    </message>
    <message>
        <source>Plug-in: %1</source>
        <translation>插件：%1</translation>
    </message>
</context>
<context>
    <name>RecordSheet</name>
    <message>
        <source>The default of the attribute</source>
        <translation>属性的默认值</translation>
    </message>
    <message>
        <source>Back to the Default</source>
        <translation>恢复为默认值</translation>
    </message>
</context>
<context>
    <name>RecordTable</name>
    <message>
        <source>%1
Plug-in: %2</source>
        <translation>%1
插件：%2</translation>
    </message>
    <message>
        <source>Icon of %1</source>
        <translation>%1 的图标</translation>
    </message>
    <message>
        <source>Places in formats: %1</source>
        <translation>在格式中的位置：%1</translation>
    </message>
</context>
<context>
    <name>SaveReport</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 以及另外 %n 个</numerusform>
        </translation>
    </message>
    <message>
        <source>the point does not declare it translatable</source>
        <translation>扩展点没有声明它可翻译</translation>
    </message>
    <message>
        <source>no plug-in declares the point</source>
        <translation>没有插件声明该扩展点</translation>
    </message>
    <message>
        <source>the plug-in that may declare it could not be read: %1</source>
        <translation>可能声明它的插件无法读取：%1</translation>
    </message>
    <message>
        <source>%1: written without translation marks; %2</source>
        <translation>%1：写入时没有翻译标记；%2</translation>
    </message>
    <message>
        <source>%1: written with translation marks</source>
        <translation>%1：写入时带有翻译标记</translation>
    </message>
    <message>
        <source>%1: will be read again as &quot;%2&quot;</source>
        <translation>%1：再次读取时将成为“%2”</translation>
    </message>
    <message>
        <source>XML can&apos;t hold: %1</source>
        <translation>XML 无法容纳：%1</translation>
    </message>
    <message>
        <source>%1: not written, the format has no such attribute here</source>
        <translation>%1：未写入，格式在此没有这样的属性</translation>
    </message>
    <message>
        <source>not kept: %1</source>
        <translation>未保留：%1</translation>
    </message>
    <message>
        <source>nothing is written but the XML declaration</source>
        <translation>除 XML 声明外没有写入任何内容</translation>
    </message>
    <message>
        <source>the file looks like UTF-8, but declares another encoding and was read in that: letters beyond ASCII are written as they were read</source>
        <translation>文件看起来是 UTF-8，却声明了另一种编码并按其读取：ASCII 以外的字母按读取的样子写入</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>以及另外 %n 个</numerusform>
        </translation>
    </message>
    <message>
        <source>Everything in the file but the XML declaration would be lost, and it would not open again: it holds no &quot;ExtPointSet&quot; and no &quot;ExtDataSet&quot;.</source>
        <translation>除 XML 声明外，文件中的一切都将丢失，并且无法再次打开：它既没有“ExtPointSet”也没有“ExtDataSet”。</translation>
    </message>
    <message>
        <source>Look at the names of its elements with a text editor, or create something here first.</source>
        <translation>请用文本编辑器查看其元素的名称，或先在此创建一些内容。</translation>
    </message>
    <message>
        <source>A part of the file would be lost, since its name is not written as &quot;ExtPointSet&quot; or &quot;ExtDataSet&quot;, or it stands in the wrong place.</source>
        <translation>文件的一部分将丢失，因为其名称没有写作“ExtPointSet”或“ExtDataSet”，或位置不对。</translation>
    </message>
    <message>
        <source>Correct the name with a text editor; the file is read again here by itself once nothing is unsaved.</source>
        <translation>请用文本编辑器更正名称；没有未保存的更改时，文件会在此自动重新读取。</translation>
    </message>
    <message>
        <source>Repair the files of these plug-ins and open this one again, or wait until they have been read.</source>
        <translation>请修复这些插件的文件并重新打开此文件，或等待它们读取完毕。</translation>
    </message>
    <message>
        <source>A text would lose its translation marks, since not every plug-in could be read: %1.</source>
        <translation>有一个文本将失去翻译标记，因为并非每个插件都能读取：%1。</translation>
    </message>
    <message numerus="yes">
        <source>%n texts would lose their translation marks, since not every plug-in could be read: %1.</source>
        <translation>
            <numerusform>%n 个文本将失去翻译标记，因为并非每个插件都能读取：%1。</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>SheetHelp</name>
    <message>
        <source>Whether the records of the point can be put into formats</source>
        <translation>扩展点的记录是否可以放入格式</translation>
    </message>
    <message>
        <source>The attribute whose value labels a record in the table</source>
        <translation>其值在表格中作为记录标签的属性</translation>
    </message>
    <message>
        <source>The attribute whose value is the icon of a record in the table</source>
        <translation>其值是表格中记录图标的属性</translation>
    </message>
    <message>
        <source>What may be created under a record in a format</source>
        <translation>格式中可以在记录下创建的内容</translation>
    </message>
    <message>
        <source>Whether the values are translatable; they are saved with the mark for that</source>
        <translation>值是否可翻译；保存时会带有相应的标记</translation>
    </message>
    <message>
        <source>The regular expression that the value has to match as a whole</source>
        <translation>值整体必须匹配的正则表达式</translation>
    </message>
    <message>
        <source>The name that formats refer to the record by</source>
        <translation>格式引用记录所用的名称</translation>
    </message>
    <message>
        <source>The value of the attribute that the point names as its label</source>
        <translation>扩展点指定为标签的属性的值</translation>
    </message>
    <message>
        <source>The icon, from the attribute that the point names for it</source>
        <translation>图标，来自扩展点为此指定的属性</translation>
    </message>
    <message>
        <source>How many entries of formats in this file refer to the record</source>
        <translation>此文件中有多少格式条目引用该记录</translation>
    </message>
    <message>
        <source>Ticked when any entry of a format in this file refers to the record</source>
        <translation>此文件中有格式条目引用该记录时勾选</translation>
    </message>
    <message>
        <source>The name of the attribute in the files that use the point</source>
        <translation>使用该扩展点的文件中的属性名称</translation>
    </message>
    <message>
        <source>The name that is shown to people</source>
        <translation>显示给人看的名称</translation>
    </message>
    <message>
        <source>What kind of value it is, and so how it is edited</source>
        <translation>值的种类，也决定如何编辑</translation>
    </message>
    <message>
        <source>The default that a record gets where it says nothing</source>
        <translation>记录没有说明时得到的默认值</translation>
    </message>
    <message>
        <source>The choice as it is shown and stored</source>
        <translation>选项，按显示和存储的样子</translation>
    </message>
    <message>
        <source>The file with the icon of the choice</source>
        <translation>选项图标的文件</translation>
    </message>
</context>
<context>
    <name>SheetPane</name>
    <message>
        <source>%1; belongs to %2 and can&apos;t be changed here</source>
        <translation>%1；属于 %2，不能在此更改</translation>
    </message>
</context>
<context>
    <name>SiblingScan</name>
    <message>
        <source>%1: the directory can&apos;t be listed</source>
        <translation>%1：无法列出目录</translation>
    </message>
</context>
<context>
    <name>SourceDataManager</name>
    <message>
        <source>Defintion</source>
        <translation>定义</translation>
    </message>
    <message>
        <source>Realization</source>
        <translation>实现</translation>
    </message>
</context>
<context>
    <name>TextEntryEditor</name>
    <message>
        <source>%1 (F4)</source>
        <translation>%1 (F4)</translation>
    </message>
</context>
<context>
    <name>TextPattern</name>
    <message>
        <source>At most %1 characters</source>
        <translation>最多 %1 个字符</translation>
    </message>
    <message>
        <source>A letter first, then letters, digits, hyphens, underscores and dots; at most %1 characters</source>
        <translation>先是一个字母，然后是字母、数字、连字符、下划线和点；最多 %1 个字符</translation>
    </message>
    <message>
        <source>Letters, digits, underscores and dots; at most %1 characters</source>
        <translation>字母、数字、下划线和点；最多 %1 个字符</translation>
    </message>
    <message>
        <source>None of the characters &lt; / &gt; &apos; &amp; &quot;; at most %1 characters</source>
        <translation>不含字符 &lt; / &gt; &apos; &amp; &quot;；最多 %1 个字符</translation>
    </message>
    <message>
        <source>Must match %1</source>
        <translation>必须匹配 %1</translation>
    </message>
</context>
</TS>
