<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>PanelTexts</name>
    <message numerus="yes">
        <source>%Ln folder(s) so far: you can already search</source>
        <translation>
            <numerusform>%Ln folder so far: you can already search</numerusform>
            <numerusform>%Ln folders so far: you can already search</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s)</source>
        <translation>
            <numerusform>%Ln folder</numerusform>
            <numerusform>%Ln folders</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln search folder(s) away</source>
        <translation>
            <numerusform>%Ln search folder is away</numerusform>
            <numerusform>%Ln search folders are away</numerusform>
        </translation>
    </message>
</context>
</TS>
