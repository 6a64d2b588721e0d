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
    <message>
        <source>time.</source>
        <translation>Mal.</translation>
    </message>
    <message>
        <source>times.</source>
        <translation>Mal.</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>at least %1</source>
        <translation>mindestens %1</translation>
    </message>
    <message>
        <source>at most %1</source>
        <translation>höchstens %1</translation>
    </message>
    <message>
        <source>not %1: %2</source>
        <translation>nicht %1: %2</translation>
    </message>
    <message>
        <source>Respito is Off</source>
        <translation>Respito ist aus</translation>
    </message>
    <message>
        <source>Nothing here tells whether you are away: only the computer's sleep counts.</source>
        <translation>Hier ist nicht zu erfahren, ob Sie weg sind: Es zählt nur, dass der Computer schläft.</translation>
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
<context>
    <name>PendixRespitoWindowsController</name>
    <message>
        <source>When to take breaks, and what they sound like</source>
        <translation>Wann Pausen kommen und wie sie klingen</translation>
    </message>
    <message>
        <source>Break now</source>
        <translation>Jetzt Pause</translation>
    </message>
    <message>
        <source>S&amp;tart</source>
        <translation>&amp;Starten</translation>
    </message>
    <message>
        <source>Starts the break reminder</source>
        <translation>Beginnt, an Pausen zu erinnern</translation>
    </message>
    <message>
        <source>Sto&amp;p</source>
        <translation>An&amp;halten</translation>
    </message>
    <message>
        <source>Stops the break reminder</source>
        <translation>Erinnert an keine Pausen mehr</translation>
    </message>
    <message>
        <source>S&amp;kip</source>
        <translation>Übers&amp;pringen</translation>
    </message>
    <message>
        <source>Begins the working time anew</source>
        <translation>Beginnt die Arbeitszeit von neuem</translation>
    </message>
    <message>
        <source>Take a break &amp;every:</source>
        <translation>Pause &amp;alle:</translation>
    </message>
    <message>
        <source>Minutes between breaks</source>
        <translation>Minuten zwischen den Pausen</translation>
    </message>
    <message>
        <source>minutes.</source>
        <translation>Minuten.</translation>
    </message>
    <message>
        <source>A break &amp;lasts:</source>
        <translation>Eine Pause &amp;dauert:</translation>
    </message>
    <message>
        <source>Minutes of a break</source>
        <translation>Minuten einer Pause</translation>
    </message>
    <message>
        <source>&amp;Repeat:</source>
        <translation>&amp;Wiederholen:</translation>
    </message>
    <message>
        <source>Number of breaks</source>
        <translation>Zahl der Pausen</translation>
    </message>
    <message>
        <source>Pause while I am &amp;away</source>
        <translation>Aussetzen, solange ich nicht da &amp;bin</translation>
    </message>
    <message>
        <source>Whoever was away for as long as a break lasts has had one; a break that is due waits until you are back</source>
        <translation>Wer so lange weg war, wie eine Pause dauert, hatte eine; eine fällige Pause wartet, bis Sie zurück sind</translation>
    </message>
    <message>
        <source>&amp;Break Start Sound</source>
        <translation>Klang am Be&amp;ginn</translation>
    </message>
    <message>
        <source>The sound below is the one at the start of a break</source>
        <translation>Darunter steht der Klang am Beginn einer Pause</translation>
    </message>
    <message>
        <source>Break St&amp;op Sound</source>
        <translation>Klang am &amp;Ende</translation>
    </message>
    <message>
        <source>The sound below is the one at the end of a break</source>
        <translation>Darunter steht der Klang am Ende einer Pause</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Klang</translation>
    </message>
    <message>
        <source>The sound at the start or at the end of a break</source>
        <translation>Der Klang am Beginn oder am Ende einer Pause</translation>
    </message>
    <message>
        <source>Plays the chosen sound</source>
        <translation>Spielt den gewählten Klang</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Anhören</translation>
    </message>
    <message>
        <source>Drop sound files here to add them</source>
        <translation>Klangdateien hierher ziehen, um sie hinzuzufügen</translation>
    </message>
    <message>
        <source>Choose &amp;File...</source>
        <translation>Da&amp;tei wählen...</translation>
    </message>
    <message>
        <source>Adds sound files to those that can be chosen</source>
        <translation>Fügt Klangdateien zu denen hinzu, die sich wählen lassen</translation>
    </message>
    <message>
        <source>S&amp;how Respito</source>
        <translation>&amp;Respito zeigen</translation>
    </message>
    <message>
        <source>Whether the menu has the entry Respito...; without it the preferences open this window</source>
        <translation>Ob das Menü den Eintrag Respito... hat; sonst öffnen die Einstellungen dieses Fenster</translation>
    </message>
    <message>
        <source>The entry Respito... in the menu. Without it, the preferences open this window.</source>
        <translation>Der Eintrag Respito... im Menü. Ohne ihn öffnen die Einstellungen dieses Fenster.</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
</context>
<context>
    <name>RespitoAudioPlayer</name>
    <message>
        <source>Playing</source>
        <translation>Es wird gespielt</translation>
    </message>
    <message>
        <source>Quiet music for a break</source>
        <translation>Ruhige Musik für eine Pause</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Stelle</translation>
    </message>
    <message>
        <source>Where in the music, in milliseconds</source>
        <translation>Die Stelle in der Musik, in Millisekunden</translation>
    </message>
    <message>
        <source>Time played</source>
        <translation>Gespielte Zeit</translation>
    </message>
    <message>
        <source>Time left</source>
        <translation>Verbleibende Zeit</translation>
    </message>
    <message>
        <source>Play (Space)</source>
        <translation>Abspielen (Leertaste)</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Plays the music, or goes on with it</source>
        <translation>Spielt die Musik oder fährt fort</translation>
    </message>
    <message>
        <source>Pause (Space)</source>
        <translation>Unterbrechen (Leertaste)</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Unterbrechen</translation>
    </message>
    <message>
        <source>Pauses the music</source>
        <translation>Unterbricht die Musik</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Ends the music and goes back to its beginning</source>
        <translation>Beendet die Musik und geht an ihren Anfang zurück</translation>
    </message>
</context>
</TS>
