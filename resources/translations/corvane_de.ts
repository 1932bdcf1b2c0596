<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>GPU</source>
        <translation>GPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>Sensoren</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Batterie</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>Umgebung</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>Erhöht</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>Kritisch</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ U/min</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>Softwareaktualisierung</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 ist verfügbar – Sie haben %2</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>Versionshinweise lesen</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>Diese Version überspringen</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>Später erinnern</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>Installieren und neu starten</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Corvane %1 wird geladen …</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Corvane %1 wird installiert …</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>Sie sind auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 ist die neueste verfügbare Version.</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>Die Aktualisierung konnte nicht abgeschlossen werden.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>%@ free</source>
        <translation>%@ frei</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ von %@</translation>
    </message>
    <message>
        <source>1 min</source>
        <translation>1 Min.</translation>
    </message>
    <message>
        <source>15 min</source>
        <translation>15 Min.</translation>
    </message>
    <message>
        <source>5 min</source>
        <translation>5 Min.</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>Aktiv</translation>
    </message>
    <message>
        <source>App Memory</source>
        <translation>App-Speicher</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>Verfügbar</translation>
    </message>
    <message>
        <source>BATTERY</source>
        <translation>BATTERIE</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Cache</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>Kapazität</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>Ladung</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>Wird geladen</translation>
    </message>
    <message>
        <source>Compressed</source>
        <translation>Komprimiert</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>Kerne</translation>
    </message>
    <message>
        <source>Cycles</source>
        <translation>Zyklen</translation>
    </message>
    <message>
        <source>DISK</source>
        <translation>FESTPLATTE</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>Gerät</translation>
    </message>
    <message>
        <source>Discharging</source>
        <translation>Wird entladen</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>Verbrauch</translation>
    </message>
    <message>
        <source>FANS</source>
        <translation>LÜFTER</translation>
    </message>
    <message>
        <source>Fan %lld</source>
        <translation>Lüfter %lld</translation>
    </message>
    <message>
        <source>Fully Charged</source>
        <translation>Vollständig geladen</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>Leerlauf</translation>
    </message>
    <message>
        <source>LOAD AVERAGE</source>
        <translation>DURCHSCHNITTLICHE LAST</translation>
    </message>
    <message>
        <source>MEMORY</source>
        <translation>ARBEITSSPEICHER</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>Belegter Speicher</translation>
    </message>
    <message>
        <source>Memory in use</source>
        <translation>Belegter Speicher</translation>
    </message>
    <message>
        <source>No readable hwmon, thermal zone or applesmc sensors</source>
        <translation>Keine lesbaren Sensoren in hwmon, Thermal Zones oder applesmc</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>PAGES</source>
        <translation>SEITEN</translation>
    </message>
    <message>
        <source>POWER</source>
        <translation>STROM</translation>
    </message>
    <message>
        <source>PRESSURE</source>
        <translation>DRUCK</translation>
    </message>
    <message>
        <source>PROCESSES</source>
        <translation>PROZESSE</translation>
    </message>
    <message>
        <source>Page Ins</source>
        <translation>Eingelagert</translation>
    </message>
    <message>
        <source>Page Outs</source>
        <translation>Ausgelagert</translation>
    </message>
    <message>
        <source>Peak %@ of %@ cores</source>
        <translation>Spitze %@ von %@ Kernen</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>Leistung</translation>
    </message>
    <message>
        <source>Power Adapter</source>
        <translation>Netzteil</translation>
    </message>
    <message>
        <source>Pressure</source>
        <translation>Druck</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>Renderer</source>
        <translation>Renderer</translation>
    </message>
    <message>
        <source>SWAP MEMORY</source>
        <translation>AUSLAGERUNG</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>TEMPERATURES</source>
        <translation>TEMPERATUREN</translation>
    </message>
    <message>
        <source>THERMAL STATE</source>
        <translation>THERMISCHER ZUSTAND</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Tiler</source>
        <translation>Tiler</translation>
    </message>
    <message>
        <source>Time Left</source>
        <translation>Restzeit</translation>
    </message>
    <message>
        <source>USAGE</source>
        <translation>AUSLASTUNG</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>Betriebszeit</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>Belegt</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Benutzer</translation>
    </message>
    <message>
        <source>Voltage</source>
        <translation>Spannung</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Wired</source>
        <translation>Fest</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <source>Corvane Settings</source>
        <translation>Corvane-Einstellungen</translation>
    </message>
    <message>
        <source>Meters</source>
        <translation>Anzeigen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Updates</source>
        <translation>Updates</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Corvane could not save your last change. It stays here and is saved with the next change that goes through.</source>
        <translation>Corvane konnte die letzte Änderung nicht sichern. Sie bleibt hier stehen und wird mit der nächsten Änderung gesichert, die gelingt.</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Menüleiste</translation>
    </message>
    <message>
        <source>Drag, or press Alt+Up or Alt+Down, to reorder. Hidden meters keep their places.</source>
        <translation>Zum Umordnen ziehen oder Alt+Nach-oben bzw. Alt+Nach-unten drücken. Ausgeblendete Anzeigen behalten ihren Platz.</translation>
    </message>
    <message>
        <source>Readouts</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>CPU graph</source>
        <translation>CPU-Grafik</translation>
    </message>
    <message>
        <source>Shape</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <source>Accents</source>
        <translation>Akzente</translation>
    </message>
    <message>
        <source>CPU fast cores</source>
        <translation>CPU, schnelle Kerne</translation>
    </message>
    <message>
        <source>Custom…</source>
        <translation>Eigene…</translation>
    </message>
    <message>
        <source>Accent</source>
        <translation>Akzent</translation>
    </message>
    <message>
        <source>Corvane</source>
        <translation>Corvane</translation>
    </message>
    <message>
        <source>Show Corvane in the menu bar</source>
        <translation>Corvane in der Menüleiste zeigen</translation>
    </message>
    <message>
        <source>Login</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Start Corvane at login</source>
        <translation>Corvane bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Refresh every</source>
        <translation>Aktualisieren alle</translation>
    </message>
    <message>
        <source>Temperatures</source>
        <translation>Temperaturen</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
    <message>
        <source>Panel appearance</source>
        <translation>Darstellung der Tafeln</translation>
    </message>
    <message>
        <source>Translucent</source>
        <translation>Durchscheinend</translation>
    </message>
    <message>
        <source>Opaque</source>
        <translation>Deckend</translation>
    </message>
    <message>
        <source>Panel background</source>
        <translation>Hintergrund der Tafeln</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Corvane restarts in the new language.</source>
        <translation>Corvane startet in der neuen Sprache neu.</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Check Now</source>
        <translation>Jetzt suchen</translation>
    </message>
    <message>
        <source>Corvane checks for updates while it runs from its bundle.</source>
        <translation>Corvane sucht nach Updates, wenn es aus seinem Paket läuft.</translation>
    </message>
    <message>
        <source>This version</source>
        <translation>Diese Version</translation>
    </message>
    <message>
        <source>Corvane %1</source>
        <translation>Corvane %1</translation>
    </message>
    <message>
        <source>No update offered</source>
        <translation>Kein Update angeboten</translation>
    </message>
    <message>
        <source>A system monitor for the menu bar.</source>
        <translation>Eine Systemüberwachung für die Menüleiste.</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Build</translation>
    </message>
    <message>
        <source>Settings file</source>
        <translation>Einstellungsdatei</translation>
    </message>
    <message>
        <source>Documentation</source>
        <translation>Dokumentation</translation>
    </message>
    <message>
        <source>Read me</source>
        <translation>Lies mich</translation>
    </message>
    <message>
        <source>How readings are made on Linux</source>
        <translation>Wie die Werte unter Linux entstehen</translation>
    </message>
    <message>
        <source>Not saved</source>
        <translation>Nicht gesichert</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Usage</source>
        <translation>Auslastung</translation>
    </message>
    <message>
        <source>Swap Used</source>
        <translation>Belegter Auslagerungsspeicher</translation>
    </message>
    <message>
        <source>Free Space</source>
        <translation>Freier Speicher</translation>
    </message>
    <message>
        <source>Hottest Sensor</source>
        <translation>Heißester Sensor</translation>
    </message>
    <message>
        <source>GPU Temperature</source>
        <translation>GPU-Temperatur</translation>
    </message>
    <message>
        <source>Fan Speed</source>
        <translation>Lüftergeschwindigkeit</translation>
    </message>
    <message>
        <source>Bars</source>
        <translation>Balken</translation>
    </message>
    <message>
        <source>Wave</source>
        <translation>Welle</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>Kompakt</translation>
    </message>
    <message>
        <source>Pill</source>
        <translation>Pille</translation>
    </message>
    <message>
        <source>Square</source>
        <translation>Eckig</translation>
    </message>
    <message>
        <source>Icons</source>
        <translation>Symbole</translation>
    </message>
    <message>
        <source>Letters</source>
        <translation>Buchstaben</translation>
    </message>
    <message>
        <source>Signal</source>
        <translation>Signal</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>Blau</translation>
    </message>
    <message>
        <source>Indigo</source>
        <translation>Indigo</translation>
    </message>
    <message>
        <source>Purple</source>
        <translation>Violett</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>Blaugrün</translation>
    </message>
    <message>
        <source>Pine</source>
        <translation>Kiefer</translation>
    </message>
    <message>
        <source>Amber</source>
        <translation>Bernstein</translation>
    </message>
    <message>
        <source>Graphite</source>
        <translation>Graphit</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Eigene</translation>
    </message>
    <message>
        <source>Celsius</source>
        <translation>Celsius</translation>
    </message>
    <message>
        <source>Fahrenheit</source>
        <translation>Fahrenheit</translation>
    </message>
</context>
</TS>
