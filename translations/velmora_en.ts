<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>velmora::ClientListModel</name>
    <message numerus="yes">
        <source>%n request(s) in the last %1 minutes, one is under way</source>
        <translation>
            <numerusform>%n request in the last %1 minutes, one is under way</numerusform>
            <numerusform>%n requests in the last %1 minutes, one is under way</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n request(s) in the last %1 minutes, the last at %2</source>
        <translation>
            <numerusform>%n request in the last %1 minutes, the last at %2</numerusform>
            <numerusform>%n requests in the last %1 minutes, the last at %2</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmora::NowViewModel</name>
    <message numerus="yes">
        <source>since %1, and %n more request(s)</source>
        <translation>
            <numerusform>since %1, and %n more request</numerusform>
            <numerusform>since %1, and %n more requests</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmora::PrivacySettingsViewModel</name>
    <message numerus="yes">
        <source>Make the %n known session(s) read-only now</source>
        <translation>
            <numerusform>Make the %n known session read-only now</numerusform>
            <numerusform>Make the %n known sessions read-only now</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>velmora::SessionsViewModel</name>
    <message numerus="yes">
        <source>%n session(s) are hidden by the filters.</source>
        <translation>
            <numerusform>%n session is hidden by the filters.</numerusform>
            <numerusform>%n sessions are hidden by the filters.</numerusform>
        </translation>
    </message>
</context>
</TS>
