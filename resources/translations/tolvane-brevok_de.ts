<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Brevok</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Another copy of Tolvane Brevok application is already running.</source>
        <translation>Eine weitere Kopie von Tolvane Brevok läuft bereits.</translation>
    </message>
    <message>
        <source>Only one copy can be run at a time. Quit running Tolvane Brevok to run this copy of Tolvane Brevok application.</source>
        <translation>Es kann nur eine Kopie gleichzeitig laufen. Beenden Sie das laufende Tolvane Brevok, um diese Kopie von Tolvane Brevok zu starten.</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot store its data</source>
        <translation>Tolvane Brevok kann seine Daten nicht speichern</translation>
    </message>
    <message>
        <source>The stored data of Tolvane Brevok was damaged</source>
        <translation>Die gespeicherten Daten von Tolvane Brevok waren beschädigt</translation>
    </message>
    <message>
        <source>Failed to update Products data</source>
        <translation>Die Produktdaten konnten nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>Failed to update Plug-Ins data</source>
        <translation>Die Plug-In-Daten konnten nicht aktualisiert werden</translation>
    </message>
    <message>
        <source>Installer detected one or more unfinished actions. Do you want to finish or discard those actions?</source>
        <translation>Das Installationsprogramm hat eine oder mehrere unvollendete Aktionen gefunden. Möchten Sie diese Aktionen abschließen oder verwerfen?</translation>
    </message>
    <message>
        <source>Tolvane Brevok application probably crashed, or was forced to quit. Unfinished install/uninstall actions are left overs from previous session.</source>
        <translation>Tolvane Brevok ist wahrscheinlich abgestürzt oder wurde zwangsweise beendet. Aus der vorherigen Sitzung sind unvollendete Installationen oder Deinstallationen übrig.</translation>
    </message>
    <message>
        <source>Discard Actions</source>
        <translation>Aktionen verwerfen</translation>
    </message>
    <message>
        <source>Finish Actions</source>
        <translation>Aktionen abschließen</translation>
    </message>
    <message>
        <source>Unable to contact the Tolvane Brevok server for %1 days.</source>
        <translation>Der Tolvane-Brevok-Server ist seit %1 Tagen nicht erreichbar.</translation>
    </message>
    <message>
        <source>You&apos;re up-to-date!</source>
        <translation>Alles ist aktuell!</translation>
    </message>
    <message>
        <source>There are no new Plug-In updates available.</source>
        <translation>Es sind keine neuen Plug-In-Updates verfügbar.</translation>
    </message>
    <message>
        <source>Plug-In update available!</source>
        <translation>Plug-In-Update verfügbar!</translation>
    </message>
    <message>
        <source>%1 Plug-In update is available.</source>
        <translation>Für das Plug-In „%1“ ist ein Update verfügbar.</translation>
    </message>
    <message>
        <source>Plug-In updates available!</source>
        <translation>Plug-In-Updates verfügbar!</translation>
    </message>
    <message>
        <source>You have %1 Plug-In updates available.</source>
        <translation>Es sind %1 Plug-In-Updates verfügbar.</translation>
    </message>
    <message>
        <source>Incorrect input to installPlugin:</source>
        <translation>Falsche Eingabe für installPlugin:</translation>
    </message>
    <message>
        <source>Incorrect input to removeItemAtPath:</source>
        <translation>Falsche Eingabe für removeItemAtPath:</translation>
    </message>
    <message>
        <source>The workspace could not be installed at %1.</source>
        <translation>Der Arbeitsbereich konnte nicht unter %1 installiert werden.</translation>
    </message>
    <message>
        <source>Failed to install &apos;%1.InDesignPlugin&apos;!</source>
        <translation>„%1.InDesignPlugin“ konnte nicht installiert werden!</translation>
    </message>
    <message>
        <source>Multiple errors have occured. Please contact Tolvane support.</source>
        <translation>Es sind mehrere Fehler aufgetreten. Bitte wenden Sie sich an den Tolvane-Support.</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>The folder %1 is not writable.</source>
        <translation>Der Ordner %1 ist nicht beschreibbar.</translation>
    </message>
    <message>
        <source>Failed to download %1, from %2</source>
        <translation>%1 konnte nicht von %2 heruntergeladen werden</translation>
    </message>
    <message>
        <source>To take advantage of newly installed Plug-Ins, restart %1.

Do you want to quit %1 now or do it yourself later?</source>
        <translation>Um die neu installierten Plug-Ins zu nutzen, starten Sie %1 neu.

Möchten Sie %1 jetzt beenden oder das später selbst tun?</translation>
    </message>
    <message>
        <source>Quit %1</source>
        <translation>%1 beenden</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>Adobe %1 %2 is running.</source>
        <translation>Adobe %1 %2 läuft.</translation>
    </message>
    <message>
        <source>Removing Plug-Ins from running Adobe %1 can lead to unexpected behaviour, you should quit %1 before proceeding.</source>
        <translation>Plug-Ins aus dem laufenden Adobe %1 zu entfernen kann zu unerwartetem Verhalten führen. Beenden Sie %1, bevor Sie fortfahren.</translation>
    </message>
    <message>
        <source>Could not create the folder &quot;%1&quot;</source>
        <translation>Der Ordner „%1“ konnte nicht angelegt werden</translation>
    </message>
    <message>
        <source>Could not remove &quot;%1&quot;</source>
        <translation>„%1“ konnte nicht entfernt werden</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot;</source>
        <translation>„%1“ konnte nicht nach „%2“ kopiert werden</translation>
    </message>
    <message>
        <source>Could not copy &quot;%1&quot; to &quot;%2&quot; (at &quot;%3&quot;)</source>
        <translation>„%1“ konnte nicht nach „%2“ kopiert werden (bei „%3“)</translation>
    </message>
    <message>
        <source>Could not open the archive &quot;%1&quot;</source>
        <translation>Das Archiv „%1“ konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Could not open the folder &quot;%1&quot;</source>
        <translation>Der Ordner „%1“ konnte nicht geöffnet werden</translation>
    </message>
    <message>
        <source>Could not change the owner and permissions of &quot;%1&quot;</source>
        <translation>Eigentümer und Zugriffsrechte von „%1“ konnten nicht geändert werden</translation>
    </message>
    <message>
        <source>Could not unpack &quot;%1&quot; into &quot;%2&quot;</source>
        <translation>„%1“ konnte nicht nach „%2“ entpackt werden</translation>
    </message>
    <message>
        <source>the process that speaks HTTP has ended</source>
        <translation>der Prozess, der HTTP spricht, wurde beendet</translation>
    </message>
    <message>
        <source>it has more than %1 entries</source>
        <translation>es hat mehr als %1 Einträge</translation>
    </message>
    <message>
        <source>an entry has no name</source>
        <translation>ein Eintrag hat keinen Namen</translation>
    </message>
    <message>
        <source>the name of the entry is not relative</source>
        <translation>der Name des Eintrags ist nicht relativ</translation>
    </message>
    <message>
        <source>the name of the entry is too long</source>
        <translation>der Name des Eintrags ist zu lang</translation>
    </message>
    <message>
        <source>the entry is encrypted</source>
        <translation>der Eintrag ist verschlüsselt</translation>
    </message>
    <message>
        <source>it has too many links</source>
        <translation>es hat zu viele Verweise</translation>
    </message>
    <message>
        <source>the entry is neither a file nor a folder</source>
        <translation>der Eintrag ist weder Datei noch Ordner</translation>
    </message>
    <message>
        <source>no space left on the disk</source>
        <translation>kein Platz mehr auf dem Datenträger</translation>
    </message>
    <message>
        <source>no permission to change the folder</source>
        <translation>keine Berechtigung, den Ordner zu ändern</translation>
    </message>
    <message>
        <source>the disk is write-protected</source>
        <translation>der Datenträger ist schreibgeschützt</translation>
    </message>
    <message>
        <source>the disk reports an error</source>
        <translation>der Datenträger meldet einen Fehler</translation>
    </message>
    <message>
        <source>the archive cannot be read</source>
        <translation>das Archiv kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>the archive is refused: %1</source>
        <translation>das Archiv wird abgelehnt: %1</translation>
    </message>
    <message>
        <source>the archive is damaged</source>
        <translation>das Archiv ist beschädigt</translation>
    </message>
    <message>
        <source>the entry occurs twice</source>
        <translation>der Eintrag kommt zweimal vor</translation>
    </message>
    <message>
        <source>The downloaded file cannot be saved: %1</source>
        <translation>Die heruntergeladene Datei kann nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Server responded with HTTP code: %1.</source>
        <translation>Der Server antwortete mit HTTP-Code: %1.</translation>
    </message>
    <message>
        <source>The download is longer than the expected %1 bytes.</source>
        <translation>Der Download ist länger als die erwarteten %1 Bytes.</translation>
    </message>
    <message>
        <source>The download has %1 of the expected %2 bytes.</source>
        <translation>Der Download hat %1 der erwarteten %2 Bytes.</translation>
    </message>
    <message>
        <source>Network is unreachable. Is your internet connection down?</source>
        <translation>Das Netzwerk ist nicht erreichbar. Ist Ihre Internetverbindung unterbrochen?</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Authentication Error</source>
        <translation>Anmeldefehler</translation>
    </message>
    <message>
        <source>There is critical update of Tolvane Brevok application.</source>
        <translation>Es gibt ein kritisches Update für Tolvane Brevok.</translation>
    </message>
    <message>
        <source>Unexpected server response.</source>
        <translation>Unerwartete Antwort des Servers.</translation>
    </message>
    <message>
        <source>The server redirected the request to another server.</source>
        <translation>Der Server hat die Anfrage an einen anderen Server umgeleitet.</translation>
    </message>
    <message>
        <source>The server redirected the request in a way that would lose it.</source>
        <translation>Der Server hat die Anfrage so umgeleitet, dass sie verloren ginge.</translation>
    </message>
    <message>
        <source>The server redirected the request to an address that is not secure.</source>
        <translation>Der Server hat die Anfrage an eine Adresse umgeleitet, die nicht sicher ist.</translation>
    </message>
    <message>
        <source>The server sent more data than expected.</source>
        <translation>Der Server hat mehr Daten als erwartet gesendet.</translation>
    </message>
    <message>
        <source>Wrong user name or password.</source>
        <translation>Falscher Benutzername oder falsches Passwort.</translation>
    </message>
    <message>
        <source>Insufficient rights to access Tolvane Brevok verification server.</source>
        <translation>Keine ausreichenden Rechte für den Zugriff auf den Tolvane-Brevok-Prüfserver.</translation>
    </message>
    <message>
        <source>The requested resource could not be found.
Server might be temporarily inaccessible.</source>
        <translation>Die angeforderte Ressource wurde nicht gefunden.
Der Server ist möglicherweise vorübergehend nicht erreichbar.</translation>
    </message>
    <message>
        <source>continue</source>
        <translation>fortfahren</translation>
    </message>
    <message>
        <source>switching protocols</source>
        <translation>Protokoll wird gewechselt</translation>
    </message>
    <message>
        <source>no error</source>
        <translation>kein Fehler</translation>
    </message>
    <message>
        <source>created</source>
        <translation>angelegt</translation>
    </message>
    <message>
        <source>accepted</source>
        <translation>angenommen</translation>
    </message>
    <message>
        <source>non-authoritative information</source>
        <translation>nicht maßgebliche Information</translation>
    </message>
    <message>
        <source>no content</source>
        <translation>kein Inhalt</translation>
    </message>
    <message>
        <source>reset content</source>
        <translation>Inhalt zurücksetzen</translation>
    </message>
    <message>
        <source>partial content</source>
        <translation>Teilinhalt</translation>
    </message>
    <message>
        <source>multiple choices</source>
        <translation>mehrere Möglichkeiten</translation>
    </message>
    <message>
        <source>moved permanently</source>
        <translation>dauerhaft verschoben</translation>
    </message>
    <message>
        <source>found</source>
        <translation>gefunden</translation>
    </message>
    <message>
        <source>see other</source>
        <translation>siehe andere Adresse</translation>
    </message>
    <message>
        <source>not modified</source>
        <translation>nicht geändert</translation>
    </message>
    <message>
        <source>needs proxy</source>
        <translation>Proxy nötig</translation>
    </message>
    <message>
        <source>temporarily redirected</source>
        <translation>vorübergehend umgeleitet</translation>
    </message>
    <message>
        <source>bad request</source>
        <translation>fehlerhafte Anfrage</translation>
    </message>
    <message>
        <source>unauthorized</source>
        <translation>nicht angemeldet</translation>
    </message>
    <message>
        <source>payment required</source>
        <translation>Zahlung erforderlich</translation>
    </message>
    <message>
        <source>forbidden</source>
        <translation>verboten</translation>
    </message>
    <message>
        <source>not found</source>
        <translation>nicht gefunden</translation>
    </message>
    <message>
        <source>method not allowed</source>
        <translation>Methode nicht erlaubt</translation>
    </message>
    <message>
        <source>unacceptable</source>
        <translation>nicht annehmbar</translation>
    </message>
    <message>
        <source>proxy authentication required</source>
        <translation>Anmeldung am Proxy nötig</translation>
    </message>
    <message>
        <source>request timed out</source>
        <translation>Zeitüberschreitung der Anfrage</translation>
    </message>
    <message>
        <source>conflict</source>
        <translation>Konflikt</translation>
    </message>
    <message>
        <source>no longer exists</source>
        <translation>nicht mehr vorhanden</translation>
    </message>
    <message>
        <source>length required</source>
        <translation>Länge erforderlich</translation>
    </message>
    <message>
        <source>precondition failed</source>
        <translation>Vorbedingung nicht erfüllt</translation>
    </message>
    <message>
        <source>request too large</source>
        <translation>Anfrage zu groß</translation>
    </message>
    <message>
        <source>requested URL too long</source>
        <translation>angeforderte URL zu lang</translation>
    </message>
    <message>
        <source>unsupported media type</source>
        <translation>Medientyp nicht unterstützt</translation>
    </message>
    <message>
        <source>requested range not satisfiable</source>
        <translation>angeforderter Bereich nicht erfüllbar</translation>
    </message>
    <message>
        <source>expectation failed</source>
        <translation>Erwartung nicht erfüllt</translation>
    </message>
    <message>
        <source>internal server error</source>
        <translation>interner Serverfehler</translation>
    </message>
    <message>
        <source>unimplemented</source>
        <translation>nicht umgesetzt</translation>
    </message>
    <message>
        <source>bad gateway</source>
        <translation>fehlerhaftes Gateway</translation>
    </message>
    <message>
        <source>service unavailable</source>
        <translation>Dienst nicht verfügbar</translation>
    </message>
    <message>
        <source>gateway timed out</source>
        <translation>Zeitüberschreitung des Gateways</translation>
    </message>
    <message>
        <source>unsupported version</source>
        <translation>Version nicht unterstützt</translation>
    </message>
    <message>
        <source>informational</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>success</source>
        <translation>Erfolg</translation>
    </message>
    <message>
        <source>redirected</source>
        <translation>umgeleitet</translation>
    </message>
    <message>
        <source>client error</source>
        <translation>Fehler des Clients</translation>
    </message>
    <message>
        <source>server error</source>
        <translation>Fehler des Servers</translation>
    </message>
    <message>
        <source>Invalid session Id. You have been logged out!
Please try to sign-in again.</source>
        <translation>Ungültige Sitzungskennung. Sie wurden abgemeldet!
Bitte melden Sie sich erneut an.</translation>
    </message>
    <message>
        <source>Security Violation Error. You have been logged out!
Please try to sign-in again.</source>
        <translation>Sicherheitsverletzung. Sie wurden abgemeldet!
Bitte melden Sie sich erneut an.</translation>
    </message>
    <message>
        <source>Internal Server Error. Please contact Tolvane support.</source>
        <translation>Interner Serverfehler. Bitte wenden Sie sich an den Tolvane-Support.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Zeitüberschreitung der Anfrage.</translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation>Es wurde kein Server mit diesem Namen gefunden.</translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation>Es konnte keine Verbindung zum Server aufgebaut werden.</translation>
    </message>
    <message>
        <source>Could not connect to the proxy server.</source>
        <translation>Es konnte keine Verbindung zum Proxyserver aufgebaut werden.</translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation>Die Netzwerkverbindung wurde unterbrochen.</translation>
    </message>
    <message>
        <source>Too many HTTP redirects.</source>
        <translation>Zu viele HTTP-Umleitungen.</translation>
    </message>
    <message>
        <source>The transfer failed: %1</source>
        <translation>Die Übertragung ist fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Version %1 (%2, %3)</source>
        <translation>Version %1 (%2, %3)</translation>
    </message>
    <message>
        <source>About %1</source>
        <translation>Über %1</translation>
    </message>
    <message>
        <source>1 update available</source>
        <translation>1 Update verfügbar</translation>
    </message>
    <message>
        <source>%1 updates available</source>
        <translation>%1 Updates verfügbar</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>More about this Plug-In</source>
        <translation>Mehr über dieses Plug-In</translation>
    </message>
    <message>
        <source>%1 is in progress</source>
        <translation>%1 wird bearbeitet</translation>
    </message>
    <message>
        <source>Download of %1</source>
        <translation>Download von %1</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Check for Plug-In Updates</source>
        <translation>Nach Plug-In-Updates suchen</translation>
    </message>
    <message>
        <source>Check for Application Update…</source>
        <translation>Nach Programm-Update suchen …</translation>
    </message>
    <message>
        <source>My Account</source>
        <translation>Mein Konto</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Report a Bug…</source>
        <translation>Fehler melden …</translation>
    </message>
    <message>
        <source>About Tolvane Brevok</source>
        <translation>Über Tolvane Brevok</translation>
    </message>
    <message>
        <source>Quit…</source>
        <translation>Beenden …</translation>
    </message>
    <message>
        <source>Tolvane Brevok</source>
        <translation>Tolvane Brevok</translation>
    </message>
    <message>
        <source>Are you sure you want to quit</source>
        <translation>Möchten Sie Tolvane Brevok wirklich beenden?</translation>
    </message>
    <message>
        <source>Tolvane Brevok needs to be running to keep the Plug-Ins active.</source>
        <translation>Tolvane Brevok muss laufen, damit die Plug-Ins aktiv bleiben.</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Konto</translation>
    </message>
    <message>
        <source>Targets</source>
        <translation>Ziele</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Passwort:</translation>
    </message>
    <message>
        <source>Create Account…</source>
        <translation>Konto erstellen …</translation>
    </message>
    <message>
        <source>Start at &amp;login</source>
        <translation>Beim &amp;Anmelden am Computer starten</translation>
    </message>
    <message>
        <source>Show &amp;notifications</source>
        <translation>&amp;Benachrichtigungen anzeigen</translation>
    </message>
    <message>
        <source>&amp;Check for new versions of this application</source>
        <translation>Nach neuen &amp;Versionen dieses Programms suchen</translation>
    </message>
    <message>
        <source>Write a &amp;detailed log</source>
        <translation>Ausführliches &amp;Protokoll schreiben</translation>
    </message>
    <message>
        <source>&amp;Add…</source>
        <translation>&amp;Hinzufügen …</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>Add Target</source>
        <translation>Ziel hinzufügen</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder.</source>
        <translation>Wählen Sie den Plug-Ins-Ordner im Programmordner von Adobe InCopy/InDesign.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Ordner:</translation>
    </message>
    <message>
        <source>&amp;Browse…</source>
        <translation>&amp;Durchsuchen …</translation>
    </message>
    <message>
        <source>&amp;Application:</source>
        <translation>&amp;Programm:</translation>
    </message>
    <message>
        <source>&amp;Version:</source>
        <translation>&amp;Version:</translation>
    </message>
    <message>
        <source>Sign Out</source>
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>Contacting the service…</source>
        <translation>Verbindung zum Dienst wird aufgebaut …</translation>
    </message>
    <message>
        <source>Signed in as %1.</source>
        <translation>Angemeldet als %1.</translation>
    </message>
    <message>
        <source>Not signed in.</source>
        <translation>Nicht angemeldet.</translation>
    </message>
    <message>
        <source>Checking for Updates</source>
        <translation>Suche nach Updates</translation>
    </message>
    <message>
        <source>Checking for updates…</source>
        <translation>Suche nach Updates …</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 GB</source>
        <translation>Download: %1 von %2 GB</translation>
    </message>
    <message>
        <source>Downloading %1 GB</source>
        <translation>Download: %1 GB</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 MB</source>
        <translation>Download: %1 von %2 MB</translation>
    </message>
    <message>
        <source>Downloading %1 MB</source>
        <translation>Download: %1 MB</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Up To Date</source>
        <translation>Aktuell</translation>
    </message>
    <message>
        <source>Partly installed</source>
        <translation>Teilweise installiert</translation>
    </message>
    <message>
        <source>Partly outdated</source>
        <translation>Teilweise veraltet</translation>
    </message>
    <message>
        <source>Working…</source>
        <translation>In Arbeit …</translation>
    </message>
    <message>
        <source>Installing…</source>
        <translation>Wird installiert …</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Passwort</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Contacting the service</source>
        <translation>Verbindung zum Dienst wird aufgebaut</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Plug-Ins</source>
        <translation>Plug-Ins</translation>
    </message>
    <message>
        <source>You are signed out</source>
        <translation>Sie sind abgemeldet</translation>
    </message>
    <message>
        <source>Sign In…</source>
        <translation>Anmelden …</translation>
    </message>
    <message>
        <source>No network connection</source>
        <translation>Keine Netzwerkverbindung</translation>
    </message>
    <message>
        <source>Connect to the internet to install and update Plug-Ins.</source>
        <translation>Verbinden Sie sich mit dem Internet, um Plug-Ins zu installieren und zu aktualisieren.</translation>
    </message>
    <message>
        <source>Try Again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Choose Applications…</source>
        <translation>Programme wählen …</translation>
    </message>
    <message>
        <source>Loading Plug-Ins…</source>
        <translation>Plug-Ins werden geladen …</translation>
    </message>
    <message>
        <source>No Plug-Ins yet</source>
        <translation>Noch keine Plug-Ins</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Erneut prüfen</translation>
    </message>
    <message>
        <source>Not signed in</source>
        <translation>Nicht angemeldet</translation>
    </message>
    <message>
        <source>Signed in</source>
        <translation>Angemeldet</translation>
    </message>
    <message>
        <source>1 update</source>
        <translation>1 Update</translation>
    </message>
    <message>
        <source>%1 updates</source>
        <translation>%1 Updates</translation>
    </message>
    <message>
        <source>Other…</source>
        <translation>Anderer …</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Chose Plug-Ins directory</source>
        <translation>Plug-Ins-Ordner wählen</translation>
    </message>
    <message>
        <source>There is no folder &apos;%1&apos;.</source>
        <translation>Es gibt keinen Ordner „%1“.</translation>
    </message>
    <message>
        <source>Checking the folder…</source>
        <translation>Ordner wird geprüft …</translation>
    </message>
    <message>
        <source>Invalid Plug-Ins path selected!</source>
        <translation>Ungültiger Plug-Ins-Pfad gewählt!</translation>
    </message>
    <message>
        <source>The path you specified doesn&apos;t look like a valid Adobe InDesign Plug-Ins folder. Do you want to use it anyway?</source>
        <translation>Der angegebene Pfad sieht nicht wie ein gültiger Plug-Ins-Ordner von Adobe InDesign aus. Möchten Sie ihn trotzdem verwenden?</translation>
    </message>
    <message>
        <source>Enable %1</source>
        <translation>%1 aktivieren</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>Plug-Ins folder</source>
        <translation>Plug-Ins-Ordner</translation>
    </message>
    <message>
        <source>Checking the connection…</source>
        <translation>Verbindung wird geprüft …</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Failed to send error report</source>
        <translation>Der Fehlerbericht konnte nicht gesendet werden</translation>
    </message>
    <message>
        <source>Gathering the report…</source>
        <translation>Bericht wird zusammengestellt …</translation>
    </message>
    <message>
        <source>Invalid email address!</source>
        <translation>Ungültige E-Mail-Adresse!</translation>
    </message>
    <message>
        <source>Missing email address!</source>
        <translation>Die E-Mail-Adresse fehlt!</translation>
    </message>
    <message>
        <source>Missing problem description!</source>
        <translation>Die Beschreibung des Problems fehlt!</translation>
    </message>
    <message>
        <source>Please contact Tolvane support.</source>
        <translation>Bitte wenden Sie sich an den Tolvane-Support.</translation>
    </message>
    <message>
        <source>Please describe the problem and what were you doing when the problem came up.</source>
        <translation>Bitte beschreiben Sie das Problem und was Sie gerade taten, als es auftrat.</translation>
    </message>
    <message>
        <source>Please enter a valid email address so we can respond to your message.</source>
        <translation>Bitte geben Sie eine gültige E-Mail-Adresse ein, damit wir Ihnen antworten können.</translation>
    </message>
    <message>
        <source>Received %1 bytes (%2)

%3</source>
        <translation>%1 Bytes empfangen (%2)

%3</translation>
    </message>
    <message>
        <source>Report a Bug</source>
        <translation>Fehler melden</translation>
    </message>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Sending the report…</source>
        <translation>Bericht wird gesendet …</translation>
    </message>
    <message>
        <source>Server response: %1

%2</source>
        <translation>Antwort des Servers: %1

%2</translation>
    </message>
    <message>
        <source>Show what will be sent</source>
        <translation>Anzeigen, was gesendet wird</translation>
    </message>
    <message>
        <source>Thank you for reporting this issue.</source>
        <translation>Vielen Dank, dass Sie dieses Problem gemeldet haben.</translation>
    </message>
    <message>
        <source>Tolvane Brevok servers are unreachable.</source>
        <translation>Die Server von Tolvane Brevok sind nicht erreichbar.</translation>
    </message>
    <message>
        <source>Tolvane support team will contact you shortly.</source>
        <translation>Das Support-Team von Tolvane wird sich in Kürze bei Ihnen melden.</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Unknown connection error.</source>
        <translation>Unbekannter Verbindungsfehler.</translation>
    </message>
    <message>
        <source>What went &amp;wrong, and what were you doing when the problem came up?</source>
        <translation>&amp;Was ging schief, und was taten Sie, als das Problem auftrat?</translation>
    </message>
    <message>
        <source>What will be sent</source>
        <translation>Was gesendet wird</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Softwareupdate</translation>
    </message>
    <message>
        <source>Release notes</source>
        <translation>Versionshinweise</translation>
    </message>
    <message>
        <source>A new version of Tolvane Brevok is available.</source>
        <translation>Eine neue Version von Tolvane Brevok ist verfügbar.</translation>
    </message>
    <message>
        <source>Version %1 is available; you have version %2. Would you like to install it now?</source>
        <translation>Version %1 ist verfügbar, Sie haben Version %2. Möchten Sie sie jetzt installieren?</translation>
    </message>
    <message>
        <source>Install Update</source>
        <translation>Update installieren</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Downloading version %1…</source>
        <translation>Version %1 wird heruntergeladen …</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>Verifying version %1…</source>
        <translation>Version %1 wird geprüft …</translation>
    </message>
    <message>
        <source>Installing version %1…</source>
        <translation>Version %1 wird installiert …</translation>
    </message>
    <message>
        <source>The system may ask for an administrator's password.</source>
        <translation>Das System fragt möglicherweise nach dem Passwort eines Administrators.</translation>
    </message>
    <message>
        <source>Version %1 is installed.</source>
        <translation>Version %1 ist installiert.</translation>
    </message>
    <message>
        <source>It will be used the next time Tolvane Brevok starts.</source>
        <translation>Sie wird beim nächsten Start von Tolvane Brevok verwendet.</translation>
    </message>
    <message>
        <source>Version %1 was not installed.</source>
        <translation>Version %1 wurde nicht installiert.</translation>
    </message>
    <message>
        <source>Tolvane Brevok is up to date.</source>
        <translation>Tolvane Brevok ist auf dem neuesten Stand.</translation>
    </message>
    <message>
        <source>The description of available updates cannot be read.</source>
        <translation>Die Beschreibung der verfügbaren Updates kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Version %1 is offered at an address that is not secure. It cannot be installed.</source>
        <translation>Version %1 wird unter einer Adresse angeboten, die nicht sicher ist. Sie kann nicht installiert werden.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid signature. It cannot be installed.</source>
        <translation>Version %1 wird ohne gültige Signatur angeboten. Sie kann nicht installiert werden.</translation>
    </message>
    <message>
        <source>Version %1 is offered without a valid size. It cannot be installed.</source>
        <translation>Version %1 wird ohne gültige Größenangabe angeboten. Sie kann nicht installiert werden.</translation>
    </message>
    <message>
        <source>The folder for the update cannot be used: %1</source>
        <translation>Der Ordner für das Update kann nicht verwendet werden: %1</translation>
    </message>
    <message>
        <source>The downloaded file cannot be read: %1</source>
        <translation>Die heruntergeladene Datei kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The downloaded update is not version %1 of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>Das heruntergeladene Update ist nicht die Version %1 von Tolvane Brevok. Es wurde nicht installiert, und die Datei wurde gelöscht.</translation>
    </message>
    <message>
        <source>This copy cannot update itself. You can get the new version at %1.</source>
        <translation>Diese Kopie kann sich nicht selbst aktualisieren. Die neue Version erhalten Sie unter %1.</translation>
    </message>
    <message>
        <source>The downloaded update is not signed by the maker of Tolvane Brevok. It was not installed, and the file was removed.</source>
        <translation>Das heruntergeladene Update ist nicht vom Hersteller von Tolvane Brevok signiert. Es wurde nicht installiert, und die Datei wurde gelöscht.</translation>
    </message>
    <message>
        <source>The installation was cancelled.</source>
        <translation>Die Installation wurde abgebrochen.</translation>
    </message>
    <message>
        <source>Could not write &quot;%1&quot;</source>
        <translation>„%1“ konnte nicht geschrieben werden</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (und %2 weitere)</translation>
    </message>
    <message>
        <source>%1 is running</source>
        <translation>%1 läuft gerade</translation>
    </message>
    <message>
        <source>another package needs it</source>
        <translation>ein anderes Paket benötigt es</translation>
    </message>
    <message>
        <source>it is up to date</source>
        <translation>es ist aktuell</translation>
    </message>
    <message>
        <source>Tolvane Brevok cannot read its stored data.</source>
        <translation>Tolvane Brevok kann seine gespeicherten Daten nicht lesen.</translation>
    </message>
    <message>
        <source>The check for Plug-In updates failed</source>
        <translation>Die Suche nach Plug-In-Updates ist fehlgeschlagen</translation>
    </message>
    <message>
        <source>Web Page</source>
        <translation>Webseite</translation>
    </message>
    <message>
        <source>No browser could be started. This is the address of the page:</source>
        <translation>Es konnte kein Browser gestartet werden. Dies ist die Adresse der Seite:</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Tolvane Brevok installs your Plug-Ins in InDesign and InCopy and keeps them up to date: sign in with your account to begin.</source>
        <translation>Tolvane Brevok installiert Ihre Plug-Ins in InDesign und InCopy und hält sie aktuell: Melden Sie sich mit Ihrem Konto an, um zu beginnen.</translation>
    </message>
    <message>
        <source>The setting could not be changed</source>
        <translation>Die Einstellung konnte nicht geändert werden</translation>
    </message>
    <message>
        <source>not installed</source>
        <translation>nicht installiert</translation>
    </message>
    <message>
        <source>update available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>up to date</source>
        <translation>aktuell</translation>
    </message>
    <message>
        <source>Remove %1?</source>
        <translation>%1 entfernen?</translation>
    </message>
    <message>
        <source>It is removed from all your applications.</source>
        <translation>Es wird aus allen Ihren Programmen entfernt.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Anhalten</translation>
    </message>
    <message>
        <source>Update All</source>
        <translation>Alle aktualisieren</translation>
    </message>
    <message>
        <source>Stop after the current Plug-In</source>
        <translation>Nach dem aktuellen Plug-In anhalten</translation>
    </message>
    <message>
        <source>Stopping after the current Plug-In…</source>
        <translation>Wird nach dem aktuellen Plug-In angehalten …</translation>
    </message>
    <message>
        <source>Updating %1 of %2…</source>
        <translation>%1 von %2 wird aktualisiert …</translation>
    </message>
    <message>
        <source>Search Plug-Ins</source>
        <translation>Plug-Ins suchen</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>No Plug-In has such a name.</source>
        <translation>Kein Plug-In heißt so.</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>Removed %1.</source>
        <translation>%1 wurde entfernt.</translation>
    </message>
    <message>
        <source>Removed %1 targets.</source>
        <translation>%1 Ziele wurden entfernt.</translation>
    </message>
    <message>
        <source>'%1' is already in the list.</source>
        <translation>„%1“ steht bereits in der Liste.</translation>
    </message>
    <message>
        <source>No known version of InDesign or InCopy stands beside this folder. Choose the application and its version.</source>
        <translation>Neben diesem Ordner liegt keine bekannte Version von InDesign oder InCopy. Wählen Sie das Programm und seine Version.</translation>
    </message>
    <message>
        <source>Used by scheduled updates, which are not set up on this computer.</source>
        <translation>Für geplante Updates, die auf diesem Computer nicht eingerichtet sind.</translation>
    </message>
    <message>
        <source>Changes are kept in memory and stored as soon as possible. Reason: %1</source>
        <translation>Änderungen bleiben im Arbeitsspeicher und werden gespeichert, sobald es möglich ist. Grund: %1</translation>
    </message>
    <message>
        <source>Everything that could be read is in use. The damaged file was kept as %1.</source>
        <translation>Alles, was noch lesbar war, wird verwendet. Die beschädigte Datei wurde als %1 aufbewahrt.</translation>
    </message>
    <message>
        <source>The folder %1 could not be created.</source>
        <translation>Der Ordner %1 konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>The plug-in name &quot;%1&quot; cannot be used as a file name.</source>
        <translation>Der Plug-In-Name „%1“ kann nicht als Dateiname verwendet werden.</translation>
    </message>
    <message>
        <source>an entry is larger than its stated size (%1)</source>
        <translation>ein Eintrag ist größer als angegeben (%1)</translation>
    </message>
    <message>
        <source>it is not a zip archive</source>
        <translation>es ist kein Zip-Archiv</translation>
    </message>
    <message>
        <source>the library for archives is missing</source>
        <translation>die Bibliothek für Archive fehlt</translation>
    </message>
    <message>
        <source>the process that speaks HTTP cannot be started</source>
        <translation>der Prozess für HTTP kann nicht gestartet werden</translation>
    </message>
    <message>
        <source>the entry points outside the folder</source>
        <translation>der Eintrag führt aus dem Ordner heraus</translation>
    </message>
    <message>
        <source>the entry is nested too deeply</source>
        <translation>der Eintrag ist zu tief verschachtelt</translation>
    </message>
    <message>
        <source>the entry would run with another user&apos;s rights</source>
        <translation>der Eintrag würde mit den Rechten eines anderen Benutzers laufen</translation>
    </message>
    <message>
        <source>the entry is a link that points outside the folder</source>
        <translation>der Eintrag ist ein Verweis, der aus dem Ordner herausführt</translation>
    </message>
    <message>
        <source>its unpacked contents are too large</source>
        <translation>der entpackte Inhalt ist zu groß</translation>
    </message>
    <message>
        <source>the folder no longer exists</source>
        <translation>den Ordner gibt es nicht mehr</translation>
    </message>
    <message>
        <source>the archive contains no %1</source>
        <translation>das Archiv enthält kein %1</translation>
    </message>
    <message>
        <source>the archive does not match the catalogue</source>
        <translation>das Archiv passt nicht zum Katalog</translation>
    </message>
    <message>
        <source>its unpacked contents are too large for the size of the archive</source>
        <translation>der entpackte Inhalt ist im Verhältnis zur Größe des Archivs zu groß</translation>
    </message>
    <message>
        <source>the entry is inside something that is not a folder</source>
        <translation>der Eintrag liegt in etwas, das kein Ordner ist</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be established: %1</source>
        <translation>Es konnte keine sichere Verbindung zum Server aufgebaut werden: %1</translation>
    </message>
    <message>
        <source>The server&apos;s certificate is not trusted: %1</source>
        <translation>Dem Zertifikat des Servers wird nicht vertraut: %1</translation>
    </message>
    <message>
        <source>Reload Icons</source>
        <translation>Symbole neu laden</translation>
    </message>
    <message>
        <source>Sign in to install Plug-Ins with this account and to keep them up to date.</source>
        <translation>Melden Sie sich an, um Plug-Ins mit diesem Konto zu installieren und aktuell zu halten.</translation>
    </message>
    <message>
        <source>&amp;Email:</source>
        <translation>&amp;E-Mail:</translation>
    </message>
    <message>
        <source>&amp;Update Plug-Ins automatically</source>
        <translation>Plug-Ins automatisch akt&amp;ualisieren</translation>
    </message>
    <message>
        <source>This setting is managed by your administrator.</source>
        <translation>Diese Einstellung wird von Ihrem Administrator verwaltet.</translation>
    </message>
    <message>
        <source>Plug-Ins are installed into the enabled folders.</source>
        <translation>Plug-Ins werden in die aktivierten Ordner installiert.</translation>
    </message>
    <message>
        <source>Neither InDesign nor InCopy was found. Add the Plug-Ins folder of the application.</source>
        <translation>Weder InDesign noch InCopy wurde gefunden. Fügen Sie den Plug-Ins-Ordner des Programms hinzu.</translation>
    </message>
    <message>
        <source>Downloading %1 of %2 kB</source>
        <translation>Download: %1 von %2 kB</translation>
    </message>
    <message>
        <source>Downloading %1 kB</source>
        <translation>Download: %1 kB</translation>
    </message>
    <message>
        <source>Not available for your applications</source>
        <translation>Keine Version für Ihre Programme</translation>
    </message>
    <message>
        <source>&amp;Email address</source>
        <translation>&amp;E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Sign in to install your Plug-Ins and keep them up to date.</source>
        <translation>Melden Sie sich an, um Ihre Plug-Ins zu installieren und aktuell zu halten.</translation>
    </message>
    <message>
        <source>The service is not responding</source>
        <translation>Der Dienst antwortet nicht</translation>
    </message>
    <message>
        <source>No response since %1. Your installed Plug-Ins keep working.</source>
        <translation>Keine Antwort seit %1. Ihre installierten Plug-Ins funktionieren weiter.</translation>
    </message>
    <message>
        <source>InDesign and InCopy not found</source>
        <translation>Weder InDesign noch InCopy gefunden</translation>
    </message>
    <message>
        <source>Choose the applications to install Plug-Ins into.</source>
        <translation>Wählen Sie die Programme für Ihre Plug-Ins.</translation>
    </message>
    <message>
        <source>The list is being loaded from the service.</source>
        <translation>Die Liste wird vom Dienst geladen.</translation>
    </message>
    <message>
        <source>No Plug-Ins are available for this account.</source>
        <translation>Für dieses Konto sind keine Plug-Ins verfügbar.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not an absolute path.</source>
        <translation>„%1“ ist kein absoluter Pfad.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a version: enter the application&apos;s version times ten, from %2 to %3, such as 140 for 14.0.</source>
        <translation>„%1“ ist keine Version: Geben Sie die Version des Programms mal zehn an, von %2 bis %3, zum Beispiel 140 für 14.0.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not responding. Try again when its disk or server responds.</source>
        <translation>„%1“ antwortet nicht. Versuchen Sie es erneut, wenn der Datenträger oder Server wieder antwortet.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a folder.</source>
        <translation>„%1“ ist kein Ordner.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is the root of the file system, which cannot be used as a Plug-Ins folder.</source>
        <translation>„%1“ ist die Wurzel des Dateisystems und kann nicht als Plug-Ins-Ordner verwendet werden.</translation>
    </message>
    <message>
        <source>The application&apos;s state, its logs and its latest crash reports are included.</source>
        <translation>Der Zustand, die Protokolle und die neuesten Absturzberichte dieses Programms werden mitgesendet.</translation>
    </message>
    <message>
        <source>This is everything that is sent if you send the report now (%1 bytes).</source>
        <translation>Dies ist alles, was gesendet wird, wenn Sie den Bericht jetzt senden (%1 Bytes).</translation>
    </message>
    <message>
        <source>Your &amp;email address:</source>
        <translation>Ihre &amp;E-Mail-Adresse:</translation>
    </message>
    <message>
        <source>Could not check for updates to Tolvane Brevok.</source>
        <translation>Es konnte nicht nach Updates für Tolvane Brevok gesucht werden.</translation>
    </message>
    <message>
        <source>Version %1 is the latest version.</source>
        <translation>Version %1 ist die neueste Version.</translation>
    </message>
    <message>
        <source>This version cannot check for updates.</source>
        <translation>Diese Version kann nicht nach Updates suchen.</translation>
    </message>
    <message>
        <source>The system&apos;s software service (PackageKit) is not available.</source>
        <translation>Der Softwaredienst des Systems (PackageKit) ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>The system&apos;s software service did not install the package: %1</source>
        <translation>Der Softwaredienst des Systems hat das Paket nicht installiert: %1</translation>
    </message>
    <message>
        <source>The system&apos;s software service stopped before the package was installed.</source>
        <translation>Der Softwaredienst des Systems wurde beendet, bevor das Paket installiert war.</translation>
    </message>
    <message>
        <source>Could not read the file &quot;%1&quot;</source>
        <translation>Die Datei „%1“ konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>The privileged helper is not responding.</source>
        <translation>Das Hilfsprogramm mit Systemrechten antwortet nicht.</translation>
    </message>
    <message>
        <source>Administrator approval is required and was not given.</source>
        <translation>Die Zustimmung eines Administrators ist erforderlich und wurde nicht erteilt.</translation>
    </message>
    <message>
        <source>Setting up the privileged helper ended without a result.</source>
        <translation>Die Einrichtung des Hilfsprogramms mit Systemrechten endete ohne Ergebnis.</translation>
    </message>
    <message>
        <source>The privileged helper was installed but does not start.</source>
        <translation>Das Hilfsprogramm mit Systemrechten wurde installiert, startet aber nicht.</translation>
    </message>
    <message>
        <source>The checksum in the catalogue cannot be read.</source>
        <translation>Die Prüfsumme im Katalog ist nicht lesbar.</translation>
    </message>
    <message>
        <source>The download does not match the catalogue.</source>
        <translation>Der Download passt nicht zum Katalog.</translation>
    </message>
    <message>
        <source>the reason is not known</source>
        <translation>der Grund ist nicht bekannt</translation>
    </message>
    <message>
        <source>something else has taken the folder&apos;s place</source>
        <translation>an der Stelle des Ordners steht etwas anderes</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>what failed, and why</comment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>why something failed, and the details</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>InDesign&apos;s latest crash report is included too.</source>
        <translation>Der neueste Absturzbericht von InDesign wird ebenfalls mitgesendet.</translation>
    </message>
    <message>
        <source>What you wrote</source>
        <translation>Was Sie geschrieben haben</translation>
    </message>
    <message>
        <source>The application</source>
        <translation>Das Programm</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Crash reports</source>
        <translation>Absturzberichte</translation>
    </message>
    <message>
        <source>Your Plug-Ins were changed</source>
        <translation>Ihre Plug-Ins wurden geändert</translation>
    </message>
    <message>
        <source>Installed: %1</source>
        <translation>Installiert: %1</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Entfernt: %1</translation>
    </message>
    <message>
        <source>Waiting for an update: %1</source>
        <translation>Update verfügbar: %1</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Used by scheduled updates. Next: %1.</source>
        <translation>Für geplante Updates. Nächster Lauf: %1.</translation>
    </message>
    <message>
        <source>Clear Search</source>
        <translation>Suche leeren</translation>
    </message>
</context>
</TS>
