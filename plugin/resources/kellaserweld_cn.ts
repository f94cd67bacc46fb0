<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>kelplugin::kelLaserWeld</name>
    <message>
        <source>Laser Welding</source>
        <translation>激光焊接</translation>
    </message>
</context>
</TS>
