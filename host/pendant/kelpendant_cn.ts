<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>ControlPanel</name>
    <message>
        <source>Robot powered</source>
        <translation>机器人上电</translation>
    </message>
    <message>
        <source>Controller connected</source>
        <translation>控制器已连接</translation>
    </message>
    <message>
        <source>Cell</source>
        <translation>工作站</translation>
    </message>
    <message>
        <source>User level</source>
        <translation>用户等级</translation>
    </message>
    <message>
        <source>Next reply</source>
        <translation>下一条应答</translation>
    </message>
    <message>
        <source>Fail with code</source>
        <translation>返回错误码</translation>
    </message>
    <message>
        <source>Empty reply</source>
        <translation>空应答</translation>
    </message>
    <message>
        <source>Malformed reply</source>
        <translation>格式错误的应答</translation>
    </message>
    <message>
        <source>Controller state</source>
        <translation>控制器状态</translation>
    </message>
    <message>
        <source>Outputs</source>
        <translation>输出</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>信号</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>端口</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Commands</source>
        <translation>命令</translation>
    </message>
    <message>
        <source>Change history</source>
        <translation>更改历史</translation>
    </message>
    <message>
        <source>All records</source>
        <translation>全部记录</translation>
    </message>
    <message>
        <source>Export CSV...</source>
        <translation>导出 CSV...</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>等级</translation>
    </message>
    <message>
        <source>Command</source>
        <translation>命令</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>键</translation>
    </message>
    <message>
        <source>Old</source>
        <translation>原值</translation>
    </message>
    <message>
        <source>New</source>
        <translation>新值</translation>
    </message>
    <message>
        <source>Client</source>
        <translation>客户端</translation>
    </message>
    <message>
        <source>Export the change history</source>
        <translation>导出更改历史</translation>
    </message>
    <message>
        <source>CSV (*.csv)</source>
        <translation>CSV 文件 (*.csv)</translation>
    </message>
    <message>
        <source>The controller is not reachable.</source>
        <translation>无法连接控制器。</translation>
    </message>
    <message>
        <source>on</source>
        <translation>开</translation>
    </message>
    <message>
        <source>off</source>
        <translation>关</translation>
    </message>
    <message>
        <source>idle</source>
        <translation>空闲</translation>
    </message>
    <message>
        <source>feeding</source>
        <translation>送丝中</translation>
    </message>
    <message>
        <source>retracting</source>
        <translation>退丝中</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>未连接</translation>
    </message>
    <message>
        <source>Work mode: %1</source>
        <translation>工作模式：%1</translation>
    </message>
    <message>
        <source>virtual welding</source>
        <translation>虚拟焊接</translation>
    </message>
    <message>
        <source>real welding</source>
        <translation>实际焊接</translation>
    </message>
    <message>
        <source>Laser welding enabled: %1</source>
        <translation>激光焊接使能：%1</translation>
    </message>
    <message>
        <source>Guide laser: %1</source>
        <translation>指示光：%1</translation>
    </message>
    <message>
        <source>Assist gas: %1</source>
        <translation>保护气：%1</translation>
    </message>
    <message>
        <source>open</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>closed</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Wire feeder: %1</source>
        <translation>送丝机：%1</translation>
    </message>
    <message>
        <source>Monitor stream: %1</source>
        <translation>监控数据流：%1</translation>
    </message>
    <message>
        <source>Program: idle</source>
        <translation>程序：空闲</translation>
    </message>
    <message>
        <source>Program: running, line %1</source>
        <translation>程序：运行中，第 %1 行</translation>
    </message>
    <message>
        <source>Program: stepping, line %1</source>
        <translation>程序：单步执行，第 %1 行</translation>
    </message>
    <message>
        <source>Data file: %1</source>
        <translation>数据文件：%1</translation>
    </message>
</context>
<context>
    <name>LineValidator</name>
    <message>
        <source>The pattern of %1 cannot be used: %2</source>
        <translation>%1 的格式模板无法使用：%2</translation>
    </message>
    <message>
        <source>This line does not have the form %1 expects.</source>
        <translation>此行不符合 %1 要求的格式。</translation>
    </message>
</context>
<context>
    <name>LocalCell</name>
    <message>
        <source>Controller: simulated in this pendant</source>
        <translation>控制器：在本示教器中模拟</translation>
    </message>
</context>
<context>
    <name>MessageList</name>
    <message>
        <source>Time</source>
        <translation>时间</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>级别</translation>
    </message>
    <message>
        <source>Source</source>
        <translation>来源</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>消息</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>信息</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
</context>
<context>
    <name>PendantWindow</name>
    <message>
        <source>kelpendant — teach pendant simulator</source>
        <translation>kelpendant — 示教器模拟器</translation>
    </message>
    <message>
        <source>Cell and controller</source>
        <translation>工作站与控制器</translation>
    </message>
    <message>
        <source>%1: modal window open</source>
        <translation>%1：模态窗口已打开</translation>
    </message>
</context>
<context>
    <name>PluginHost</name>
    <message>
        <source>Plug-in folder %1 does not exist.</source>
        <translation>插件文件夹 %1 不存在。</translation>
    </message>
    <message>
        <source>%1 cannot be loaded: %2</source>
        <translation>无法加载 %1：%2</translation>
    </message>
    <message>
        <source>%1 is not a pendant plug-in: it does not export the plug-in interface or registers no plug-in.</source>
        <translation>%1 不是示教器插件：它没有导出插件接口，或没有注册任何插件。</translation>
    </message>
    <message>
        <source>Plug-in %1 could not be created.</source>
        <translation>无法创建插件 %1。</translation>
    </message>
</context>
<context>
    <name>ProgramEditor</name>
    <message>
        <source>Run</source>
        <translation>运行</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>单步</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>停止</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>速度</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>打开...</translation>
    </message>
    <message>
        <source>Save...</source>
        <translation>保存...</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>编辑</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Insert...</source>
        <translation>插入...</translation>
    </message>
    <message>
        <source>Insert default</source>
        <translation>插入默认</translation>
    </message>
    <message>
        <source>×1 (real time)</source>
        <translation>×1 (实时)</translation>
    </message>
    <message>
        <source>×%1</source>
        <translation>×%1</translation>
    </message>
    <message>
        <source>Cannot open %1: %2</source>
        <translation>无法打开 %1：%2</translation>
    </message>
    <message>
        <source>%1 is too large for a program.</source>
        <translation>%1 太大，不是程序文件。</translation>
    </message>
    <message>
        <source>Opened %1</source>
        <translation>已打开 %1</translation>
    </message>
    <message>
        <source>Saved %1</source>
        <translation>已保存 %1</translation>
    </message>
    <message>
        <source>Cannot save %1: %2</source>
        <translation>无法保存 %1：%2</translation>
    </message>
    <message>
        <source>Insert %1</source>
        <translation>插入 %1</translation>
    </message>
    <message>
        <source>Edit %1</source>
        <translation>编辑 %1</translation>
    </message>
    <message>
        <source>The line could not be read into the form; it shows the defaults.</source>
        <translation>无法将此行读入表单，表单显示的是默认值。</translation>
    </message>
    <message>
        <source>Open program</source>
        <translation>打开程序</translation>
    </message>
    <message>
        <source>Programs (*.prg *.txt);;All files (*)</source>
        <translation>程序 (*.prg *.txt);;所有文件 (*)</translation>
    </message>
    <message>
        <source>Save program</source>
        <translation>保存程序</translation>
    </message>
</context>
<context>
    <name>RemoteCell</name>
    <message>
        <source>Controller at %1 connected</source>
        <translation>已连接 %1 处的控制器</translation>
    </message>
    <message>
        <source>%1 (run of %2)</source>
        <translation>%1（%2 的运行）</translation>
    </message>
    <message>
        <source>on the controller</source>
        <translation>在控制器上</translation>
    </message>
    <message>
        <source>%1 on the controller</source>
        <translation>控制器上的 %1</translation>
    </message>
    <message>
        <source>Controller: %1, not reachable</source>
        <translation>控制器：%1，无法连接</translation>
    </message>
    <message>
        <source>Controller: %1, round trip %2 ms</source>
        <translation>控制器：%1，往返 %2 ms</translation>
    </message>
    <message>
        <source>The controller reports: %1</source>
        <translation>控制器报告：%1</translation>
    </message>
</context>
<context>
    <name>RunLink</name>
    <message>
        <source>controller</source>
        <translation>控制器</translation>
    </message>
</context>
<context>
    <name>kelpendant</name>
    <message>
        <source>No translation %1 for language %2.</source>
        <translation>没有语言 %2 的翻译 %1。</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>程序</translation>
    </message>
</context>
<context>
    <name>kelplugin::NetworkController</name>
    <message>
        <source>no answer within %1 s</source>
        <translation>%1 秒内没有应答</translation>
    </message>
    <message>
        <source>the connection was closed</source>
        <translation>连接已关闭</translation>
    </message>
    <message>
        <source>its answer was unreadable (%1)</source>
        <translation>其应答无法读取（%1）</translation>
    </message>
    <message>
        <source>it refused this pendant (%1)</source>
        <translation>它拒绝了本示教器（%1）</translation>
    </message>
    <message>
        <source>Controller not reachable at %1: %2. Reconnecting…</source>
        <translation>无法连接 %1 处的控制器：%2。正在重新连接…</translation>
    </message>
    <message>
        <source>controller not reachable</source>
        <translation>无法连接控制器</translation>
    </message>
    <message>
        <source>The controller reports: %1</source>
        <translation>控制器报告：%1</translation>
    </message>
</context>
</TS>
