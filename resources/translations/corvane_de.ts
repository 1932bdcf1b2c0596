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
</context>
</TS>
