<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- SPDX-License-Identifier: GPL-3.0-or-later -->
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Breaks</name>
    <message>
        <source>Take a break for</source>
        <translation>Machen Sie eine Pause von</translation>
    </message>
    <message>
        <source>mins</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Take a break for 00:00 mins</source>
        <translation>Machen Sie eine Pause von 00:00 Minuten</translation>
    </message>
    <message>
        <source>Next break at: </source>
        <translation>Nächste Pause um: </translation>
    </message>
    <message>
        <source>in</source>
        <translation>in</translation>
    </message>
    <message>
        <source>minute.</source>
        <translation>Minute.</translation>
    </message>
    <message>
        <source>minutes.</source>
        <translation>Minuten.</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Break until: </source>
        <translation>Pause bis: </translation>
    </message>
    <message>
        <source>Next break: </source>
        <translation>Nächste Pause: </translation>
    </message>
    <message>
        <source>when you are back</source>
        <translation>sobald Sie zurück sind</translation>
    </message>
    <message>
        <source>Break now for:</source>
        <translation>Jetzt Pause für:</translation>
    </message>
    <message>
        <source>mins and </source>
        <translation>Minuten und </translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
</context>
<context>
    <name>CustomModalWindowController</name>
    <message>
        <source>Time for a break</source>
        <translation>Zeit für eine Pause</translation>
    </message>
    <message>
        <source>&amp;Preferences...</source>
        <translation>&amp;Einstellungen...</translation>
    </message>
    <message>
        <source>Ends this break and opens the settings of the breaks</source>
        <translation>Beendet diese Pause und öffnet die Einstellungen der Pausen</translation>
    </message>
    <message>
        <source>&amp;Stop Respito</source>
        <translation>Respito &amp;anhalten</translation>
    </message>
    <message>
        <source>Ends this break and calls for no more</source>
        <translation>Beendet diese Pause und ruft zu keiner weiteren</translation>
    </message>
    <message>
        <source>&amp;In 5 minutes</source>
        <translation>&amp;In 5 Minuten</translation>
    </message>
    <message>
        <source>Puts this break off; each can be put off twice</source>
        <translation>Verschiebt diese Pause; jede lässt sich zweimal verschieben</translation>
    </message>
    <message>
        <source>&amp;Done</source>
        <translation>&amp;Fertig</translation>
    </message>
    <message>
        <source>Ends this break; the next one comes in its time</source>
        <translation>Beendet diese Pause; die nächste kommt zu ihrer Zeit</translation>
    </message>
</context>
<context>
    <name>MoveApplication</name>
    <message>
        <source>Move to Applications folder?</source>
        <translation>In den Ordner für Programme umziehen?</translation>
    </message>
    <message>
        <source>I can move myself to the Applications folder if you'd like.</source>
        <translation>Wenn Sie möchten, ziehe ich in den Ordner für Programme um.</translation>
    </message>
    <message>
        <source>Note that this will require an administrator password.</source>
        <translation>Dafür wird das Passwort eines Administrators gebraucht.</translation>
    </message>
    <message>
        <source>This will keep your Downloads folder uncluttered.</source>
        <translation>So bleibt Ihr Ordner für Downloads aufgeräumt.</translation>
    </message>
    <message>
        <source>The folder is %1.</source>
        <translation>Der Ordner ist %1.</translation>
    </message>
    <message>
        <source>Move to Applications Folder</source>
        <translation>Umziehen</translation>
    </message>
    <message>
        <source>Do Not Move</source>
        <translation>Nicht umziehen</translation>
    </message>
    <message>
        <source>Do not show this message again</source>
        <translation>Nicht mehr fragen</translation>
    </message>
    <message>
        <source>Could not move to Applications folder</source>
        <translation>Der Umzug in den Ordner für Programme ist nicht gelungen</translation>
    </message>
</context>
</TS>
