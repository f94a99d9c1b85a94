<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>quillon::Window</name>
    <message>
        <source>Old text</source>
        <translation>Alter Text</translation>
    </message>
    <message>
        <source>Unfinished text</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %1</translation>
    </message>
    <message numerus="yes">
        <source>%n folder(s)</source>
        <translation>
            <numerusform>Ein Ordner</numerusform>
            <numerusform>Ordner</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Show in Finder</source>
        <translation>Im Finder zeigen</translation>
    </message>
</context>
</TS>
