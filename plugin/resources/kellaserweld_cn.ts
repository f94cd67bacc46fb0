<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>ButtonMonitorPage</name>
    <message>
        <source>Monitor</source>
        <translation>监控</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>ParameterName</source>
        <translation>参数名称</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>数值</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>功率</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>频率</translation>
    </message>
    <message>
        <source>Duty (%)</source>
        <translation>占空比 (%)</translation>
    </message>
    <message>
        <source>Wire Speed</source>
        <translation>送丝速度</translation>
    </message>
    <message>
        <source>Weld speed (mm/s)</source>
        <translation>焊接速度 (mm/s)</translation>
    </message>
    <message>
        <source>Welds...</source>
        <translation>焊缝记录...</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>空闲</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>起始</translation>
    </message>
    <message>
        <source>Weld</source>
        <translation>焊接</translation>
    </message>
    <message>
        <source>End</source>
        <translation>结束</translation>
    </message>
    <message>
        <source>Wire</source>
        <translation>焊丝</translation>
    </message>
    <message>
        <source>Motion</source>
        <translation>运动</translation>
    </message>
    <message>
        <source>Line %1</source>
        <translation>第 %1 行</translation>
    </message>
    <message>
        <source>No program running</source>
        <translation>无程序运行</translation>
    </message>
    <message>
        <source>Laser on</source>
        <translation>激光开</translation>
    </message>
    <message>
        <source>Laser SIMULATED</source>
        <translation>激光 虚拟</translation>
    </message>
    <message>
        <source>Laser off</source>
        <translation>激光关</translation>
    </message>
</context>
<context>
    <name>CharacteristicsCurvePage</name>
    <message>
        <source>Laser Power</source>
        <translation>激光功率</translation>
    </message>
    <message>
        <source>Node Number:</source>
        <translation>节点数：</translation>
    </message>
    <message>
        <source>Node</source>
        <translation>节点</translation>
    </message>
    <message>
        <source>GO/AO/Reg</source>
        <translation>GO/AO/寄存器</translation>
    </message>
    <message>
        <source>Power(W)</source>
        <translation>功率 (W)</translation>
    </message>
    <message>
        <source>Compute</source>
        <translation>计算</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Feeding Speed</source>
        <translation>送丝速度</translation>
    </message>
    <message>
        <source> Feed Speed(mm/s)</source>
        <translation> 送丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>PWM Frequency</source>
        <translation>PWM 频率</translation>
    </message>
    <message>
        <source>Frequency(Hz)</source>
        <translation>频率 (Hz)</translation>
    </message>
    <message>
        <source>PWM Duty Cycle</source>
        <translation>PWM 占空比</translation>
    </message>
    <message>
        <source>DutyCycle(%)</source>
        <translation>占空比 (%)</translation>
    </message>
    <message>
        <source>Saved successfully</source>
        <translation>保存成功</translation>
    </message>
    <message>
        <source>Save failed. Please check the parameter configuration.</source>
        <translation>保存失败，请检查参数配置。</translation>
    </message>
    <message>
        <source>Validation failed,The table requires at least two rows of data!</source>
        <translation>校验失败，表格至少需要两行数据！</translation>
    </message>
    <message>
        <source>The data in line %1 must be greater than the data in row %2!</source>
        <translation>第 %1 行的数据必须大于第 %2 行的数据！</translation>
    </message>
    <message>
        <source>Power W</source>
        <translation>功率 W</translation>
    </message>
    <message>
        <source>Feedspeed mm/s</source>
        <translation>送丝速度 mm/s</translation>
    </message>
    <message>
        <source>Frequency Hz</source>
        <translation>频率 Hz</translation>
    </message>
    <message>
        <source>Dutycycle %</source>
        <translation>占空比 %</translation>
    </message>
    <message>
        <source>Cancel successful</source>
        <translation>取消成功</translation>
    </message>
    <message>
        <source>Not configured</source>
        <translation>未配置</translation>
    </message>
    <message>
        <source>Deviation (%1)</source>
        <translation>偏差（%1）</translation>
    </message>
    <message>
        <source>line at 0</source>
        <translation>直线为 0</translation>
    </message>
    <message>
        <source>%1 · every node lies on the line</source>
        <translation>%1 · 所有节点都在直线上</translation>
    </message>
    <message>
        <source>%1 · stands out most: node %2, %3 off the line through the others</source>
        <translation>%1 · 最突出：节点 %2，偏离其余节点的直线 %3</translation>
    </message>
    <message>
        <source>No fitted line: the nodes&apos; deviations cannot be shown.</source>
        <translation>没有拟合直线：无法显示各节点的偏差。</translation>
    </message>
    <message>
        <source>R² cannot be computed: all values are equal</source>
        <translation>无法计算 R²：所有数值相同</translation>
    </message>
    <message>
        <source>R² = %1</source>
        <translation>R² = %1</translation>
    </message>
    <message>
        <source>%1 · largest deviation: node %2, %3</source>
        <translation>%1 · 最大偏差：节点 %2，%3</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>At least two nodes</source>
        <translation>至少需要两个节点</translation>
    </message>
    <message>
        <source>%1 must be greater than in node %2</source>
        <translation>%1 必须大于节点 %2 的值</translation>
    </message>
    <message>
        <source>the characteristic curves (%1)</source>
        <translation>特性曲线（%1）</translation>
    </message>
    <message>
        <source>Node %1 output value</source>
        <translation>节点 %1 输出值</translation>
    </message>
    <message>
        <source>Node %1 %2</source>
        <translation>节点 %1 %2</translation>
    </message>
</context>
<context>
    <name>ConfigBackup</name>
    <message>
        <source>%1: &quot;%2&quot; has the wrong type</source>
        <translation>%1：“%2”的类型错误</translation>
    </message>
    <message>
        <source>%1: unknown key &quot;%2&quot;</source>
        <translation>%1：未知的键“%2”</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is not a set name</source>
        <translation>%1：“%2”不是有效的数据组名称</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>The file is too large for a backup.</source>
        <translation>文件过大，不是备份文件。</translation>
    </message>
    <message>
        <source>The file is damaged: it is not a JSON object.</source>
        <translation>文件已损坏：不是 JSON 对象。</translation>
    </message>
    <message>
        <source>The file is no laser welding backup.</source>
        <translation>该文件不是激光焊接备份。</translation>
    </message>
    <message>
        <source>The file is damaged: its version is not a number.</source>
        <translation>文件已损坏：版本号不是数字。</translation>
    </message>
    <message>
        <source>The backup was made by a newer version (%1); this one reads up to %2.</source>
        <translation>该备份由更新的版本（%1）生成；本版本最高只能读取版本 %2。</translation>
    </message>
    <message>
        <source>The file is damaged: unknown entry &quot;%1&quot;.</source>
        <translation>文件已损坏：未知条目“%1”。</translation>
    </message>
    <message>
        <source>The file is damaged: records, controller or time are missing.</source>
        <translation>文件已损坏：缺少记录、控制器或时间。</translation>
    </message>
    <message>
        <source>The file is damaged: unknown record &quot;%1&quot;.</source>
        <translation>文件已损坏：未知记录“%1”。</translation>
    </message>
    <message>
        <source>The file is damaged: %1 is not an object.</source>
        <translation>文件已损坏：%1 不是对象。</translation>
    </message>
</context>
<context>
    <name>ConfigRestore</name>
    <message>
        <source>the controller did not give the record %1</source>
        <translation>控制器没有提供记录 %1</translation>
    </message>
    <message>
        <source>the controller did not give its own record to compare with</source>
        <translation>控制器没有提供可供比较的当前记录</translation>
    </message>
    <message>
        <source>%1: the controller did not answer.</source>
        <translation>%1：控制器没有应答。</translation>
    </message>
    <message>
        <source>%1: the controller refused it (code %2).</source>
        <translation>%1：控制器拒绝（代码 %2）。</translation>
    </message>
    <message>
        <source>Welding is switched on: nothing was restored.</source>
        <translation>焊接已开启：未恢复任何内容。</translation>
    </message>
    <message>
        <source>Restored.</source>
        <translation>已恢复。</translation>
    </message>
</context>
<context>
    <name>CustomChart</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
</context>
<context>
    <name>EditedForm</name>
    <message>
        <source>Unsaved changes</source>
        <translation>未保存的修改</translation>
    </message>
    <message>
        <source>There are unsaved changes in %1.</source>
        <translation>%1 有未保存的修改。</translation>
    </message>
    <message>
        <source>Save them to the controller, discard them, or stay and go on editing?</source>
        <translation>保存到控制器、放弃修改，还是留下继续编辑？</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>放弃</translation>
    </message>
    <message>
        <source>Stay</source>
        <translation>留下</translation>
    </message>
</context>
<context>
    <name>EditorPreviews</name>
    <message>
        <source>Laser power</source>
        <translation>激光功率</translation>
    </message>
    <message>
        <source>Wire speed</source>
        <translation>送丝速度</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>起始</translation>
    </message>
    <message>
        <source>Weld</source>
        <translation>焊接</translation>
    </message>
    <message>
        <source>End</source>
        <translation>结束</translation>
    </message>
    <message>
        <source>Wire end</source>
        <translation>结束送丝</translation>
    </message>
    <message>
        <source>Feed</source>
        <translation>送丝</translation>
    </message>
    <message>
        <source>Retract</source>
        <translation>退丝</translation>
    </message>
    <message>
        <source>Compensation</source>
        <translation>补偿</translation>
    </message>
    <message>
        <source>Motion</source>
        <translation>运动</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>功率</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>频率</translation>
    </message>
    <message>
        <source>Duty cycle</source>
        <translation>占空比</translation>
    </message>
    <message>
        <source>Switch on power, frequency or duty cycle matching to see how it follows the welding speed.</source>
        <translation>打开功率、频率或占空比匹配，即可查看其随焊接速度的变化。</translation>
    </message>
</context>
<context>
    <name>FieldGuard</name>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>No negative values: %1</source>
        <translation>不允许负值：%1</translation>
    </message>
    <message>
        <source>%1 is above the maximum %2</source>
        <translation>%1 超过最大值 %2</translation>
    </message>
    <message>
        <source>%1 is below the minimum %2</source>
        <translation>%1 低于最小值 %2</translation>
    </message>
    <message>
        <source>%1; the field keeps %2</source>
        <translation>%1；该字段保持 %2</translation>
    </message>
</context>
<context>
    <name>LaserTrackingPage</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
</context>
<context>
    <name>LaserWeldPage</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>标题</translation>
    </message>
    <message>
        <source>Parmeter Setting</source>
        <translation>参数设置</translation>
    </message>
    <message>
        <source>Weld Setup</source>
        <translation>焊接设置</translation>
    </message>
    <message>
        <source>Soldering I/O</source>
        <translation>焊接 I/O</translation>
    </message>
    <message>
        <source>Weld I/O</source>
        <translation>焊接 I/O</translation>
    </message>
    <message>
        <source>Characteristic curves</source>
        <translation>特性曲线</translation>
    </message>
    <message>
        <source>Char. Curve</source>
        <translation>特性曲线</translation>
    </message>
    <message>
        <source>Welding Parameters</source>
        <translation>焊接参数</translation>
    </message>
    <message>
        <source>Weld Data</source>
        <translation>焊接数据</translation>
    </message>
    <message>
        <source>Laser Tracking</source>
        <translation>激光跟踪</translation>
    </message>
    <message>
        <source>Monitor</source>
        <translation>监控</translation>
    </message>
    <message>
        <source>Backup...</source>
        <translation>备份...</translation>
    </message>
    <message>
        <source>Restore...</source>
        <translation>恢复...</translation>
    </message>
    <message>
        <source>Back up the configuration</source>
        <translation>备份配置</translation>
    </message>
    <message>
        <source>Backups (*.json)</source>
        <translation>备份文件 (*.json)</translation>
    </message>
    <message>
        <source>Restore the configuration</source>
        <translation>恢复配置</translation>
    </message>
    <message>
        <source>Configuration backed up to %1</source>
        <translation>配置已备份到 %1</translation>
    </message>
    <message>
        <source>Backup failed: %1</source>
        <translation>备份失败：%1</translation>
    </message>
    <message>
        <source>Connected to the controller again. The page keeps your unsaved changes; Cancel shows the controller&apos;s values.</source>
        <translation>已重新连接控制器。页面保留您未保存的更改；点击取消可显示控制器中的值。</translation>
    </message>
</context>
<context>
    <name>MotionParameters</name>
    <message>
        <source>Speed:</source>
        <translation>速度：</translation>
    </message>
    <message>
        <source>Zone:</source>
        <translation>转弯区：</translation>
    </message>
    <message>
        <source>Tool:</source>
        <translation>工具：</translation>
    </message>
    <message>
        <source>Work object:</source>
        <translation>工件坐标：</translation>
    </message>
</context>
<context>
    <name>PageSave</name>
    <message>
        <source>The controller&apos;s values could not be read; nothing can be saved until they are</source>
        <translation>无法读取控制器中的值；读取成功之前无法保存</translation>
    </message>
    <message>
        <source>Level %1 is needed to change the welding equipment; you are logged in at level %2</source>
        <translation>修改焊接设备需要 %1 级权限；您当前以 %2 级登录</translation>
    </message>
    <message>
        <source>Locked while welding is enabled</source>
        <translation>焊接使能期间已锁定</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Changed on another pendant since you opened it: reload?</source>
        <translation>打开后已在其他示教器上被修改：是否重新加载？</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>重新加载</translation>
    </message>
    <message>
        <source>Overwrite</source>
        <translation>覆盖</translation>
    </message>
</context>
<context>
    <name>RLParaSetInsertWidget</name>
    <message>
        <source>Weld data:</source>
        <translation>焊接数据：</translation>
    </message>
</context>
<context>
    <name>RestoreDialog</name>
    <message>
        <source>Restore configuration</source>
        <translation>恢复配置</translation>
    </message>
    <message>
        <source>Record / key</source>
        <translation>记录 / 键</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>当前值</translation>
    </message>
    <message>
        <source>In the backup</source>
        <translation>备份中的值</translation>
    </message>
    <message>
        <source>Restore selected</source>
        <translation>恢复所选</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>The file cannot be read: %1</source>
        <translation>无法读取文件：%1</translation>
    </message>
    <message>
        <source>Backup of %1, made %2. Tick the records to restore.</source>
        <translation>%1 的备份，生成于 %2。请勾选要恢复的记录。</translation>
    </message>
    <message>
        <source>an unknown controller</source>
        <translation>未知控制器</translation>
    </message>
    <message>
        <source>Cannot be restored: %1</source>
        <translation>无法恢复：%1</translation>
    </message>
    <message>
        <source>No changes</source>
        <translation>无更改</translation>
    </message>
    <message>
        <source>%1 (added)</source>
        <translation>%1（新增）</translation>
    </message>
    <message>
        <source>%1 (kept: not in the backup)</source>
        <translation>%1（保留：备份中没有）</translation>
    </message>
    <message>
        <source>No record was selected.</source>
        <translation>未选择任何记录。</translation>
    </message>
    <message>
        <source>Changes: %1</source>
        <translation>更改：%1</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>Nothing was restored.</source>
        <translation>未恢复任何内容。</translation>
    </message>
</context>
<context>
    <name>RlLaserWeldDefine</name>
    <message>
        <source>Laser Weld Ins</source>
        <translation>激光焊接指令</translation>
    </message>
    <message>
        <source>Sched:</source>
        <translation>焊接数据:</translation>
    </message>
    <message>
        <source>LaserOn Perform a weld start</source>
        <translation>LaserOn 开始激光焊接</translation>
    </message>
    <message>
        <source>Perform LaserOff welding shutdown</source>
        <translation>LaserOff 结束激光焊接</translation>
    </message>
    <message>
        <source>Perform LsParaSet switching welding parameters during welding</source>
        <translation>LsParaSet 焊接过程中切换焊接参数</translation>
    </message>
    <message>
        <source>Wire feed speed [1-100](mm/s):</source>
        <translation>送丝速度 [1-100](mm/s):</translation>
    </message>
    <message>
        <source>Wire feed time [1-10000](ms):</source>
        <translation>送丝时间 [1-10000](ms):</translation>
    </message>
    <message>
        <source>Feed the wire forward at the specified speed for the specified duration.</source>
        <translation>按指定速度向前送丝指定时长。</translation>
    </message>
    <message>
        <source>Wire feed back speed [1-100](mm/s):</source>
        <translation>退丝速度 [1-100](mm/s):</translation>
    </message>
    <message>
        <source>Wire feed back time [1-10000](ms):</source>
        <translation>退丝时间 [1-10000](ms):</translation>
    </message>
    <message>
        <source>Retract the wire backward at the specified speed for the specified duration.</source>
        <translation>按指定速度向后退丝指定时长。</translation>
    </message>
    <message>
        <source>Parameter matching function enabled.</source>
        <translation>开启参数匹配功能。</translation>
    </message>
    <message>
        <source>Parameter matching function is turned off.</source>
        <translation>关闭参数匹配功能。</translation>
    </message>
    <message>
        <source>Laser welding motion instruction</source>
        <translation>激光焊接运动指令</translation>
    </message>
</context>
<context>
    <name>ShowStatusBar</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
</context>
<context>
    <name>TargetPointChooser</name>
    <message>
        <source>Point:</source>
        <translation>点位：</translation>
    </message>
    <message>
        <source>Add current position</source>
        <translation>添加当前位置</translation>
    </message>
    <message>
        <source>Offset:</source>
        <translation>偏移：</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
</context>
<context>
    <name>TrendChart</name>
    <message>
        <source>Power</source>
        <translation>功率</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>频率</translation>
    </message>
    <message>
        <source>Duty cycle</source>
        <translation>占空比</translation>
    </message>
    <message>
        <source>Wire speed</source>
        <translation>送丝速度</translation>
    </message>
    <message>
        <source>Weld speed</source>
        <translation>焊接速度</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>No values yet</source>
        <translation>暂无数据</translation>
    </message>
</context>
<context>
    <name>WMoveCFInsertWidget</name>
    <message>
        <source>Circle point</source>
        <translation>圆弧中间点</translation>
    </message>
    <message>
        <source>End point</source>
        <translation>终点</translation>
    </message>
    <message>
        <source>Motion</source>
        <translation>运动参数</translation>
    </message>
</context>
<context>
    <name>WMoveCInsertWidget</name>
    <message>
        <source>Circle point</source>
        <translation>圆弧中间点</translation>
    </message>
    <message>
        <source>End point</source>
        <translation>终点</translation>
    </message>
    <message>
        <source>Motion</source>
        <translation>运动参数</translation>
    </message>
</context>
<context>
    <name>WMoveLInsertWidget</name>
    <message>
        <source>Target point</source>
        <translation>目标点</translation>
    </message>
    <message>
        <source>Motion</source>
        <translation>运动参数</translation>
    </message>
</context>
<context>
    <name>WeldParameterPage</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>Process Number:</source>
        <translation>工艺号：</translation>
    </message>
    <message>
        <source>Detailed</source>
        <translation>详细</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Weld data sets</source>
        <translation>焊接数据</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Weld speed (mm/s)</source>
        <translation>焊接速度 (mm/s)</translation>
    </message>
    <message>
        <source>Laser power (W)</source>
        <translation>激光功率 (W)</translation>
    </message>
    <message>
        <source>Wire feed speed (mm/s)</source>
        <translation>送丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>注释</translation>
    </message>
    <message>
        <source>Parameter matching</source>
        <translation>参数匹配</translation>
    </message>
    <message>
        <source>Welding Speed (mm/s)</source>
        <translation>焊接速度 (mm/s)</translation>
    </message>
    <message>
        <source>Power (W)</source>
        <translation>功率 (W)</translation>
    </message>
    <message>
        <source>Frequency (Hz)</source>
        <translation>频率 (Hz)</translation>
    </message>
    <message>
        <source>Duty Cycle (%)</source>
        <translation>占空比 (%)</translation>
    </message>
    <message>
        <source>Comment:</source>
        <translation>注释：</translation>
    </message>
    <message>
        <source>Weld Mode:</source>
        <translation>焊接模式：</translation>
    </message>
    <message>
        <source>Laser welding</source>
        <translation>激光焊接</translation>
    </message>
    <message>
        <source>Laser welding with filler wire</source>
        <translation>激光填丝焊接</translation>
    </message>
    <message>
        <source>Laser on</source>
        <translation>开光</translation>
    </message>
    <message>
        <source>PWM frequency (Hz)</source>
        <translation>PWM 频率 (Hz)</translation>
    </message>
    <message>
        <source>PWM duty cycle (%)</source>
        <translation>PWM 占空比 (%)</translation>
    </message>
    <message>
        <source>Ramp up mode</source>
        <translation>缓升模式</translation>
    </message>
    <message>
        <source>No ramp</source>
        <translation>无缓变</translation>
    </message>
    <message>
        <source>Step</source>
        <translation>阶梯</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>线性</translation>
    </message>
    <message>
        <source>Ramp up time (ms)</source>
        <translation>缓升时间 (ms)</translation>
    </message>
    <message>
        <source>Motion delay time (ms)</source>
        <translation>运动延迟时间 (ms)</translation>
    </message>
    <message>
        <source>Wire start</source>
        <translation>起始送丝</translation>
    </message>
    <message>
        <source>Wire feed enable</source>
        <translation>送丝使能</translation>
    </message>
    <message>
        <source>Wire feed speed(mm/s)</source>
        <translation>送丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Wire mode</source>
        <translation>送丝时机</translation>
    </message>
    <message>
        <source>With laser on</source>
        <translation>与开光同时</translation>
    </message>
    <message>
        <source>Before laser on</source>
        <translation>开光前</translation>
    </message>
    <message>
        <source>After laser on</source>
        <translation>开光后</translation>
    </message>
    <message>
        <source>Wire feed time(ms)</source>
        <translation>送丝时间 (ms)</translation>
    </message>
    <message>
        <source>Welding</source>
        <translation>焊接中</translation>
    </message>
    <message>
        <source>Welding speed(mm/s)</source>
        <translation>焊接速度 (mm/s)</translation>
    </message>
    <message>
        <source>Wire while welding</source>
        <translation>焊接中送丝</translation>
    </message>
    <message>
        <source>Laser off</source>
        <translation>关光</translation>
    </message>
    <message>
        <source>Ramp down mode</source>
        <translation>缓降模式</translation>
    </message>
    <message>
        <source>Ramp down time (ms)</source>
        <translation>缓降时间 (ms)</translation>
    </message>
    <message>
        <source>Laser off delay time (ms)</source>
        <translation>关光延迟时间 (ms)</translation>
    </message>
    <message>
        <source>Wire end</source>
        <translation>结束送丝</translation>
    </message>
    <message>
        <source>Wire enable</source>
        <translation>送丝使能</translation>
    </message>
    <message>
        <source>Wire speed(mm/s)</source>
        <translation>送丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Wire close mode</source>
        <translation>停丝时机</translation>
    </message>
    <message>
        <source>With laser off</source>
        <translation>与关光同时</translation>
    </message>
    <message>
        <source>Before laser off</source>
        <translation>关光前</translation>
    </message>
    <message>
        <source>After laser off</source>
        <translation>关光后</translation>
    </message>
    <message>
        <source>Wire close time(ms)</source>
        <translation>停丝时间 (ms)</translation>
    </message>
    <message>
        <source>Wire stick detect</source>
        <translation>粘丝检测</translation>
    </message>
    <message>
        <source>Wire retrack</source>
        <translation>退丝</translation>
    </message>
    <message>
        <source>Retrack speed(mm/s)</source>
        <translation>退丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Retrack time(ms)</source>
        <translation>退丝时间 (ms)</translation>
    </message>
    <message>
        <source>Wire compensation</source>
        <translation>填丝补偿</translation>
    </message>
    <message>
        <source>Delay time(ms)</source>
        <translation>延迟时间 (ms)</translation>
    </message>
    <message>
        <source>Feed time(ms)</source>
        <translation>送丝时间 (ms)</translation>
    </message>
    <message>
        <source>Please select a row of data in the table first</source>
        <translation>请先在表格中选择一行数据</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>Saved successfully</source>
        <translation>保存成功</translation>
    </message>
    <message>
        <source>Save failed. Please check the parameter configuration.</source>
        <translation>保存失败，请检查参数配置。</translation>
    </message>
    <message>
        <source>Nodes</source>
        <translation>节点</translation>
    </message>
    <message>
        <source>Node %1</source>
        <translation>节点 %1</translation>
    </message>
    <message>
        <source>Power parameter validation failed at row %1. Previous row value must be less than current row value.</source>
        <translation>功率参数校验失败，第 %1 行：上一行的值必须小于当前行的值。</translation>
    </message>
    <message>
        <source>Frequency parameter validation failed at row %1. Previous row value must be less than current row value.</source>
        <translation>频率参数校验失败，第 %1 行：上一行的值必须小于当前行的值。</translation>
    </message>
    <message>
        <source>Duty Cycle parameter validation failed at row %1. Previous row value must be less than current row value.</source>
        <translation>占空比参数校验失败，第 %1 行：上一行的值必须小于当前行的值。</translation>
    </message>
    <message>
        <source>Speed parameter validation failed at row %1. Previous row value must be less than current row value.</source>
        <translation>速度参数校验失败，第 %1 行：上一行的值必须小于当前行的值。</translation>
    </message>
    <message>
        <source>%1: %2 W is above the laser unit&apos;s maximum power of %3 W (device settings). Nothing was saved.</source>
        <translation>%1：%2 W 超过激光器最大功率 %3 W（设备设置）。未保存任何内容。</translation>
    </message>
    <message>
        <source>%1: %2 mm/s is above the wire feeder&apos;s maximum speed of %3 mm/s (device settings). Nothing was saved.</source>
        <translation>%1：%2 mm/s 超过送丝机最大速度 %3 mm/s（设备设置）。未保存任何内容。</translation>
    </message>
    <message>
        <source>At most %1 W: the laser unit&apos;s maximum</source>
        <translation>最大 %1 W：激光器的最大功率</translation>
    </message>
    <message>
        <source>At most %1 mm/s: the feeder&apos;s maximum</source>
        <translation>最大 %1 mm/s：送丝机的最大速度</translation>
    </message>
    <message>
        <source>%1 must be greater than in node %2</source>
        <translation>%1 必须大于节点 %2 的值</translation>
    </message>
</context>
<context>
    <name>WeldProfile</name>
    <message>
        <source>%1 is missing or not a number: drawn as 0</source>
        <translation>%1 缺失或不是数字：按 0 绘制</translation>
    </message>
    <message>
        <source>The start power is above the weld power</source>
        <translation>起始功率高于焊接功率</translation>
    </message>
    <message>
        <source>The end power is above the weld power</source>
        <translation>结束功率高于焊接功率</translation>
    </message>
    <message>
        <source>The ramp down outlasts the laser off delay: cut at laser off</source>
        <translation>缓降时间长于关光延迟时间：关光时被截断</translation>
    </message>
    <message>
        <source>The start wire is switched on with zero speed or time</source>
        <translation>起始送丝已开启，但速度或时间为零</translation>
    </message>
    <message>
        <source>The end wire is switched on with zero speed or time</source>
        <translation>结束送丝已开启，但速度或时间为零</translation>
    </message>
    <message>
        <source>The retract is switched on with zero speed or time</source>
        <translation>退丝已开启，但速度或时间为零</translation>
    </message>
    <message>
        <source>The wire compensation is switched on with zero speed or time</source>
        <translation>填丝补偿已开启，但速度或时间为零</translation>
    </message>
    <message>
        <source>%1 is %2 in the set: the form holds whole numbers %3..%4 only</source>
        <translation>%1 在数据集中为 %2：表单只能显示 %3..%4 的整数</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1（另有 %2 项）</translation>
    </message>
</context>
<context>
    <name>WeldRecordsDialog</name>
    <message>
        <source>Welds</source>
        <translation>焊缝记录</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>开始时间</translation>
    </message>
    <message>
        <source>Program</source>
        <translation>程序</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>行</translation>
    </message>
    <message>
        <source>Data set</source>
        <translation>焊接数据</translation>
    </message>
    <message>
        <source>Matching set</source>
        <translation>参数匹配</translation>
    </message>
    <message>
        <source>Duration
(s)</source>
        <translation>时长
(s)</translation>
    </message>
    <message>
        <source>Length
(mm)</source>
        <translation>长度
(mm)</translation>
    </message>
    <message>
        <source>Laser on
(s)</source>
        <translation>出光时间
(s)</translation>
    </message>
    <message>
        <source>Wire
(mm)</source>
        <translation>送丝量
(mm)</translation>
    </message>
    <message>
        <source>Marks</source>
        <translation>标记</translation>
    </message>
    <message>
        <source>Export selected...</source>
        <translation>导出所选...</translation>
    </message>
    <message>
        <source>Export all...</source>
        <translation>全部导出...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Export failed: %1 could not be written (%2). Nothing was changed.</source>
        <translation>导出失败：无法写入 %1（%2）。原文件未作任何改动。</translation>
    </message>
    <message>
        <source>The controller no longer keeps weld %1; the export leaves it out.</source>
        <translation>控制器已不再保存焊缝 %1，导出时已略过。</translation>
    </message>
    <message>
        <source>Welds exported to %1</source>
        <translation>焊缝记录已导出到 %1</translation>
    </message>
    <message>
        <source>simulated</source>
        <translation>虚拟</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>已停止</translation>
    </message>
    <message>
        <source>Export welds</source>
        <translation>导出焊缝记录</translation>
    </message>
    <message>
        <source>CSV files (*.csv)</source>
        <translation>CSV 文件 (*.csv)</translation>
    </message>
    <message>
        <source>Welds: %1</source>
        <translation>焊缝数：%1</translation>
    </message>
    <message>
        <source>Laser on: %1 s</source>
        <translation>出光时间：%1 s</translation>
    </message>
    <message>
        <source>Wire used: %1 mm</source>
        <translation>送丝用量：%1 mm</translation>
    </message>
</context>
<context>
    <name>WeldSettingPage</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>Enable:</source>
        <translation>启用：</translation>
    </message>
    <message>
        <source>Laser unit</source>
        <translation>激光器</translation>
    </message>
    <message>
        <source>Communication mode</source>
        <translation>通信方式</translation>
    </message>
    <message>
        <source>Analogue</source>
        <translation>模拟量</translation>
    </message>
    <message>
        <source>Bus</source>
        <translation>总线</translation>
    </message>
    <message>
        <source>Laser power (W)</source>
        <translation>激光功率 (W)</translation>
    </message>
    <message>
        <source>Laser detect time (ms)</source>
        <translation>出光检测时间 (ms)</translation>
    </message>
    <message>
        <source>Laser check out time (ms)</source>
        <translation>出光检查时间 (ms)</translation>
    </message>
    <message>
        <source>Assist Gas</source>
        <translation>保护气</translation>
    </message>
    <message>
        <source>Gas on advance time (ms)</source>
        <translation>提前送气时间 (ms)</translation>
    </message>
    <message>
        <source>Gas off delay time (ms)</source>
        <translation>滞后关气时间 (ms)</translation>
    </message>
    <message>
        <source>Gas detect  time (ms)</source>
        <translation>气体检测时间 (ms)</translation>
    </message>
    <message>
        <source>Gas purge time (ms)</source>
        <translation>吹气时间 (ms)</translation>
    </message>
    <message>
        <source>Restart function</source>
        <translation>重启功能</translation>
    </message>
    <message>
        <source>Overlap Distance (mm)</source>
        <translation>搭接距离 (mm)</translation>
    </message>
    <message>
        <source>Return speed (mm/s)</source>
        <translation>回退速度 (mm/s)</translation>
    </message>
    <message>
        <source>Wire Feeder</source>
        <translation>送丝机</translation>
    </message>
    <message>
        <source>ProcessID</source>
        <translation>工艺号</translation>
    </message>
    <message>
        <source>Feeding mode</source>
        <translation>送丝方式</translation>
    </message>
    <message>
        <source>Wire Feeding + Retraction</source>
        <translation>送丝 + 退丝</translation>
    </message>
    <message>
        <source>Wire Feeding + Direction</source>
        <translation>送丝 + 方向</translation>
    </message>
    <message>
        <source>Max. speed (mm/s)</source>
        <translation>最大速度 (mm/s)</translation>
    </message>
    <message>
        <source>Manual feed forward speed (mm/s)</source>
        <translation>手动送丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Manual feed backward speed (mm/s)</source>
        <translation>手动退丝速度 (mm/s)</translation>
    </message>
    <message>
        <source>Wire feed check time (ms)</source>
        <translation>送丝检测时间 (ms)</translation>
    </message>
    <message>
        <source>Wire stick detect function</source>
        <translation>粘丝检测功能</translation>
    </message>
    <message>
        <source>Detect duration (ms)</source>
        <translation>检测时长 (ms)</translation>
    </message>
    <message>
        <source>Trigger signal | DO</source>
        <translation>触发信号 | DO</translation>
    </message>
    <message>
        <source>Wire stick FBK| DI</source>
        <translation>粘丝反馈 | DI</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Saved successfully</source>
        <translation>保存成功</translation>
    </message>
    <message>
        <source>Save failed. Please check the parameter configuration.</source>
        <translation>保存失败，请检查参数配置。</translation>
    </message>
    <message>
        <source>The detected time of the light output is later than the light output inspection time; saving failed!</source>
        <translation>出光检测时间小于出光检查时间，保存失败！</translation>
    </message>
    <message>
        <source>Cancel successful</source>
        <translation>取消成功</translation>
    </message>
    <message>
        <source>Do not modify while powered on!</source>
        <translation>上电状态下禁止修改！</translation>
    </message>
    <message>
        <source>Laser weld startup faild!</source>
        <translation>激光焊接启动失败！</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>the device settings</source>
        <translation>设备设置</translation>
    </message>
    <message>
        <source>%1 must not be less than %2</source>
        <translation>%1 不得小于 %2</translation>
    </message>
</context>
<context>
    <name>WeldioPage</name>
    <message>
        <source>Form</source>
        <translation>窗体</translation>
    </message>
    <message>
        <source>I/O output</source>
        <translation>I/O 输出</translation>
    </message>
    <message>
        <source>NO.</source>
        <translation>序号</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Assign</source>
        <translation>分配端口</translation>
    </message>
    <message>
        <source>ENB/DIS</source>
        <translation>启用/禁用</translation>
    </message>
    <message>
        <source>Laser on</source>
        <translation>激光开启</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>功率</translation>
    </message>
    <message>
        <source>Frequency</source>
        <translation>频率</translation>
    </message>
    <message>
        <source>Duty</source>
        <translation>占空比</translation>
    </message>
    <message>
        <source>Guide laser</source>
        <translation>指示光</translation>
    </message>
    <message>
        <source>Assist Gas</source>
        <translation>保护气</translation>
    </message>
    <message>
        <source>Wire speed</source>
        <translation>送丝速度</translation>
    </message>
    <message>
        <source>Wire feed on</source>
        <translation>送丝开启</translation>
    </message>
    <message>
        <source>Wire back feed</source>
        <translation>退丝</translation>
    </message>
    <message>
        <source>Manual feed on</source>
        <translation>手动送丝</translation>
    </message>
    <message>
        <source>Manual feed BWD</source>
        <translation>手动退丝</translation>
    </message>
    <message>
        <source>Adhesion Detection Enable</source>
        <translation>粘丝检测使能</translation>
    </message>
    <message>
        <source>Descent signal</source>
        <translation>下降信号</translation>
    </message>
    <message>
        <source>I/O Input</source>
        <translation>I/O 输入</translation>
    </message>
    <message>
        <source>Laser power</source>
        <translation>激光功率</translation>
    </message>
    <message>
        <source>Laser feedback</source>
        <translation>出光反馈</translation>
    </message>
    <message>
        <source>Laser alarm</source>
        <translation>激光器报警</translation>
    </message>
    <message>
        <source>Gas detect</source>
        <translation>保护气检测</translation>
    </message>
    <message>
        <source>Wire speed feedback</source>
        <translation>送丝速度反馈</translation>
    </message>
    <message>
        <source>Wire feedback</source>
        <translation>送丝反馈</translation>
    </message>
    <message>
        <source>Wire feeder alarm</source>
        <translation>送丝机报警</translation>
    </message>
    <message>
        <source>Adhesion Detection Feedback</source>
        <translation>粘丝检测反馈</translation>
    </message>
    <message>
        <source>Welder Ready</source>
        <translation>焊机就绪</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Saved successfully</source>
        <translation>保存成功</translation>
    </message>
    <message>
        <source>Save failed. Please check the parameter configuration.</source>
        <translation>保存失败，请检查参数配置。</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>退丝方向</translation>
    </message>
    <message>
        <source>Retract</source>
        <translation>退丝</translation>
    </message>
    <message>
        <source>Port %1 is already in use, save failed!</source>
        <translation>端口 %1 已被占用，保存失败！</translation>
    </message>
    <message>
        <source>There is an empty port. Please check and reconfigure!</source>
        <translation>存在未分配的端口，请检查后重新配置！</translation>
    </message>
    <message>
        <source>Cancel successful</source>
        <translation>取消成功</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>%1: no port assigned</source>
        <translation>%1：未分配端口</translation>
    </message>
    <message>
        <source>%1: port %2 is already in use above</source>
        <translation>%1：端口 %2 已在上方使用</translation>
    </message>
    <message>
        <source>the I/O assignment</source>
        <translation>I/O 分配</translation>
    </message>
</context>
<context>
    <name>kelplugin::TargetPointChooser</name>
    <message>
        <source>Failed to add the current position.</source>
        <translation>添加当前位置失败。</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
</context>
<context>
    <name>kelplugin::kelLaserWeld</name>
    <message>
        <source>Laser Welding</source>
        <translation>激光焊接</translation>
    </message>
    <message>
        <source>Insufficient user permissions!</source>
        <translation>用户权限不足！</translation>
    </message>
    <message>
        <source>Work mode</source>
        <translation>工作模式</translation>
    </message>
    <message>
        <source>Wiring</source>
        <translation>送丝</translation>
    </message>
    <message>
        <source>ProtectGas</source>
        <translation>保护气</translation>
    </message>
    <message>
        <source>Retract Wire</source>
        <translation>退丝</translation>
    </message>
    <message>
        <source>Red Light</source>
        <translation>红光</translation>
    </message>
    <message>
        <source>Open gas successfully</source>
        <translation>开气成功</translation>
    </message>
    <message>
        <source>Open gas failed. Please check logs.</source>
        <translation>开气失败，请查看日志。</translation>
    </message>
    <message>
        <source>Feed wire successfully</source>
        <translation>送丝成功</translation>
    </message>
    <message>
        <source>Feed wire failed. Please check logs.</source>
        <translation>送丝失败，请查看日志。</translation>
    </message>
    <message>
        <source>Retract wire successfully</source>
        <translation>退丝成功</translation>
    </message>
    <message>
        <source>Retract wire failed. Please check logs.</source>
        <translation>退丝失败，请查看日志。</translation>
    </message>
    <message>
        <source>Switch work mode failed</source>
        <translation>切换工作模式失败</translation>
    </message>
    <message>
        <source>Switch to VirtualWelding</source>
        <translation>已切换到虚拟焊接</translation>
    </message>
    <message>
        <source>Switch to RealWdlding</source>
        <translation>已切换到实际焊接</translation>
    </message>
</context>
</TS>
